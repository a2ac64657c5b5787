#include "desktop/markdown_look.h"

#include <QFontMetricsF>
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

}  // namespace kelvane
