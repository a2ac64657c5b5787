#include "desktop/information_dialog.h"

#include <QPushButton>
#include <QTextBrowser>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextTable>

#include "desktop/dialog_parts.h"

namespace kelvane {

namespace {

/// Markdown has no room around texts and in cells.
void give_room(QTextDocument& document) {
    const QFontMetricsF metrics(document.defaultFont());
    document.setDocumentMargin(metrics.lineSpacing());
    for (QTextFrame* frame : document.rootFrame()->childFrames()) {
        if (auto* table = qobject_cast<QTextTable*>(frame)) {
            QTextTableFormat format = table->format();
            format.setCellPadding(metrics.lineSpacing() / 4);
            format.setCellSpacing(0);
            format.setBorderCollapse(true);
            table->setFormat(format);
        }
    }
}

QTextBrowser* text_of(Label& control) {
    auto* browser = new QTextBrowser;
    browser->setObjectName(to_screen(control.name()));
    browser->setAccessibleName("Information");
    browser->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    const auto refresh = [&control, browser] {
        browser->setMarkdown(to_screen(control.caption()));
        give_room(*browser->document());
        browser->moveCursor(QTextCursor::Start);
    };
    refresh();
    control.observe(refresh);
    QObject::connect(browser, &QObject::destroyed, [&control] { control.observe({}); });
    const QFontMetrics metrics = browser->fontMetrics();
    browser->setMinimumSize(metrics.horizontalAdvance(QString(72, '0')),
                            metrics.lineSpacing() * 30);
    return browser;
}

}  // namespace

std::unique_ptr<QDialog> make_information_dialog(Thank_you_form_lite& form) {
    auto dialog = std::make_unique<QDialog>();
    auto* column = new QVBoxLayout(dialog.get());
    column->addWidget(text_of(form.text), 1);
    column->addWidget(foot_of({button_of(form.OK_button)}));
    finish_dialog(*dialog);
    return dialog;
}

}  // namespace kelvane
