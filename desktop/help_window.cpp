#include "desktop/help_window.h"

#include <QApplication>
#include <QFileInfo>
#include <QImage>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>
#include <QTextBrowser>
#include <algorithm>

#include "desktop/dialog_parts.h"
#include "desktop/event_filter.h"
#include "desktop/markdown_look.h"
#include "desktop/modality.h"

// Takes the pages in, which a static library does not do of itself; no namespace may stand around
// it.
static void take_pages_in() {  // NOLINT(misc-use-anonymous-namespace)
    Q_INIT_RESOURCE(manual);
}

namespace kelvane {

namespace {

constexpr QSize help_window_size(860, 700);
constexpr int widest_picture = 760;
/// Frame, bar and margins beside a picture.
constexpr int beside_picture = 100;

QUrl page_address(const std::string& page) {
    return {"qrc:/manual/" + to_screen(page) + ".md"};
}

/// Pictures are made to fit the window as it is first shown on its screen.
class Manual_pages : public QTextBrowser {
  protected:
    QVariant loadResource(int type, const QUrl& name) override {
        const QVariant resource = QTextBrowser::loadResource(type, name);
        const QImage picture = type == QTextDocument::ImageResource
                                   ? QImage::fromData(resource.toByteArray())
                                   : QImage();
        const int room =
            std::min(widest_picture, screen()->availableSize().width() - beside_picture);
        return picture.width() > room ? picture.scaledToWidth(room, Qt::SmoothTransformation)
                                      : resource;
    }
};

QTextBrowser* pages_of(Help_form& form) {
    auto* browser = new Manual_pages;
    browser->setObjectName(to_screen(form.page.name()));
    browser->setAccessibleName("Manual");
    QObject::connect(browser, &QTextBrowser::sourceChanged, [&form, browser](const QUrl& shown) {
        give_room(*browser->document());
        form.page.set_caption(QFileInfo(shown.path()).completeBaseName().toStdString());
    });
    const auto refresh = [&form, browser] {
        const QUrl wanted = page_address(form.page.caption());
        if (browser->source() != wanted) {
            browser->setSource(wanted);
        }
    };
    refresh();
    form.page.observe(refresh);
    QObject::connect(browser, &QObject::destroyed, [&form] { form.page.observe({}); });
    return browser;
}

QPushButton* push_button(const QString& caption) {
    auto* made = new QPushButton(caption);
    made->setAutoDefault(false);
    return made;
}

}  // namespace

std::unique_ptr<QDialog> make_help_window(Help_form& form) {
    take_pages_in();
    auto window = std::make_unique<QDialog>();
    window->setWindowFlags(Qt::Window);
    Modality::keep_live(*window);
    auto* pages = pages_of(form);
    auto* back = push_button("&Back");
    auto* forward = push_button("&Forward");
    auto* contents = push_button("&Contents");
    contents->setObjectName("contents");
    auto* close = push_button("Close");
    back->setEnabled(false);
    forward->setEnabled(false);
    QObject::connect(pages, &QTextBrowser::backwardAvailable, back, &QWidget::setEnabled);
    QObject::connect(pages, &QTextBrowser::forwardAvailable, forward, &QWidget::setEnabled);
    QObject::connect(back, &QPushButton::clicked, pages, &QTextBrowser::backward);
    QObject::connect(forward, &QPushButton::clicked, pages, &QTextBrowser::forward);
    QObject::connect(contents, &QPushButton::clicked,
                     [&form] { form.page.set_caption(std::string(help_contents)); });
    QObject::connect(close, &QPushButton::clicked, [&form] { form.close(); });
    auto* column = new QVBoxLayout(window.get());
    auto* row = new QHBoxLayout;
    for (QPushButton* shown : {contents, back, forward}) {
        row->addWidget(shown);
    }
    row->addStretch();
    row->addWidget(close);
    column->addLayout(row);
    column->addWidget(pages, 1);
    window->resize(help_window_size);
    pages->setFocus();
    return window;
}

void add_help_key(QObject& owner, Help_form& form) {
    Event_filter::install(*QApplication::instance(), owner, [&form](QEvent& event) {
        if (event.type() != QEvent::KeyPress ||
            static_cast<const QKeyEvent&>(event).key() != Qt::Key_F1) {
            return false;
        }
        std::string_view page;
        for (const QWidget* window = QApplication::activeWindow();
             window != nullptr && page.empty(); window = window->parentWidget()) {
            page = help_page_of(window->objectName().toStdString());
        }
        form.show_page(page.empty() ? help_contents : page);
        return true;
    });
}

}  // namespace kelvane
