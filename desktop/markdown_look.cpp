#include "desktop/markdown_look.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QPalette>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextTable>

namespace kelvane {

void give_room(QTextDocument& document) {
    const QFontMetricsF metrics(document.defaultFont());
    document.setDocumentMargin(metrics.lineSpacing());
    for (QTextFrame* frame : document.rootFrame()->childFrames()) {
        if (auto* table = qobject_cast<QTextTable*>(frame)) {
            QTextTableFormat format = table->format();
            format.setCellPadding(metrics.lineSpacing() / 4);
            format.setCellSpacing(0);
            format.setBorderCollapse(true);
            format.setTopMargin(metrics.lineSpacing() / 2);
            format.setBottomMargin(metrics.lineSpacing() / 2);
            table->setFormat(format);
        }
    }
}

void make_links_readable() {
    constexpr int middle = 128;
    QPalette palette;
    if (palette.color(QPalette::Base).lightness() < middle &&
        qGray(palette.color(QPalette::Link).rgb()) < middle) {
        palette.setColor(QPalette::Link, QColor(0x8A, 0xC4, 0xFF));
        palette.setColor(QPalette::LinkVisited, QColor(0xC9, 0xA7, 0xFF));
        QApplication::setPalette(palette);
    }
}

}  // namespace kelvane
