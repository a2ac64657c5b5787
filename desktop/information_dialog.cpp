#include "desktop/information_dialog.h"

#include <QFileInfo>
#include <QPushButton>
#include <QTextBrowser>

#include "desktop/dialog_parts.h"
#include "desktop/markdown_look.h"

namespace kelvane {

namespace {

QTextBrowser* text_of(Thank_you_form_lite& form) {
    Label& control = form.text;
    auto* browser = new QTextBrowser;
    browser->setObjectName(to_screen(control.name()));
    browser->setAccessibleName("Information");
    browser->setOpenLinks(false);
    QObject::connect(browser, &QTextBrowser::anchorClicked, [&form](const QUrl& link) {
        form.on_link(QFileInfo(link.path()).completeBaseName().toStdString());
    });
    const auto refresh = [&control, browser] {
        browser->setMarkdown(to_screen(control.caption()));
        give_room(*browser->document());
        browser->moveCursor(QTextCursor::Start);
    };
    refresh();
    control.observe(refresh);
    QObject::connect(browser, &QObject::destroyed, [&control] { control.observe({}); });
    return browser;
}

}  // namespace

std::unique_ptr<QDialog> make_information_dialog(Thank_you_form_lite& form) {
    auto dialog = std::make_unique<QDialog>();
    auto* column = new QVBoxLayout(dialog.get());
    column->addWidget(text_of(form), 1);
    column->addWidget(foot_of({button_of(form.OK_button)}));
    const QFontMetrics metrics = dialog->fontMetrics();
    dialog->resize(metrics.horizontalAdvance(QString(80, '0')), metrics.lineSpacing() * 34);
    finish_dialog(*dialog);
    return dialog;
}

}  // namespace kelvane
