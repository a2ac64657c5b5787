#include "desktop/main_window.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>
#include <algorithm>

#include "desktop/bindings.h"
#include "desktop/event_filter.h"
#include "desktop/modality.h"
#include "desktop/program_view.h"
#include "frame/resize_layout.h"

namespace kelvane {

namespace {

constexpr QSize first_size(900, 640);
constexpr QSize least_size(420, 240);

}  // namespace

Main_window::Main_window(Kelvane_lite_form& form) : inner_(new QWidget(this)) {
    setCentralWidget(inner_);
    make_menus(form);
    make_controls(form);
    make_status_bar(form);
    Event_filter::install(*inner_, [this](QEvent& event) {
        if (event.type() == QEvent::Resize || event.type() == QEvent::FontChange) {
            place_controls();
        }
        return false;
    });
    setMinimumSize(least_size);
    resize(first_size);
    view_->setFocus();
}

/// All that is painted, and put on the screen, is painted here.
bool Main_window::event(QEvent* event) {
    if (event->type() != QEvent::UpdateRequest) {
        return QMainWindow::event(event);
    }
    QElapsedTimer painting;
    painting.start();
    const bool handled = QMainWindow::event(event);
    view_->add_cost(painting.nsecsElapsed());
    return handled;
}

void Main_window::make_menus(Kelvane_lite_form& form) {
    for (const Menu& menu : form.menus()) {
        QMenu* shown = menuBar()->addMenu(to_screen(menu.caption));
        shown->setObjectName(to_screen(menu.name));
        for (Button& item : menu.items) {
            bind(item, *shown->addAction(QString()));
        }
    }
}

void Main_window::make_controls(Kelvane_lite_form& form) {
    view_ = new Program_view(form.Text1);
    view_->setParent(inner_);
    progress_ = new QProgressBar(inner_);
    send_ = new QPushButton(inner_);
    stop_ = new QPushButton(inner_);
    bind(form.ProgressBar1, *progress_);
    bind(form.Send_button, *send_);
    bind(form.Stop_button, *stop_);
    Modality::keep_live(*send_);
    Modality::keep_live(*stop_);
}

void Main_window::make_status_bar(Kelvane_lite_form& form) {
    auto* status = new QLabel;
    auto* part = new QLabel;
    // A long text must not widen the window.
    status->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    // No accessible name: it would hide the text, which is what is to be read out.
    status->setTextInteractionFlags(Qt::TextSelectableByMouse);
    bind(form.status_label, *status);
    statusBar()->addWidget(status, 1);
    statusBar()->addPermanentWidget(part);
    const auto show_part = [this, part] {
        part->setText(view_->part_text());
        part->setVisible(!part->text().isEmpty());
    };
    view_->on_part_changed = show_part;
    show_part();
}

void Main_window::place_controls() {
    const int bar_height = std::max(send_->sizeHint().height(), progress_->sizeHint().height());
    const Main_window_layout layout = resize_layout(inner_->width(), inner_->height(), bar_height);
    const int button_width = std::max(send_->sizeHint().width(), stop_->sizeHint().width());
    const int gap = bar_height / 4;
    const int stop_left = layout.text_width - gap - button_width;
    const int send_left = stop_left - gap - button_width;
    view_->setGeometry(0, 0, layout.text_width, layout.text_height);
    progress_->setGeometry(gap, layout.row_top, send_left - 2 * gap, bar_height);
    send_->setGeometry(send_left, layout.row_top, button_width, bar_height);
    stop_->setGeometry(stop_left, layout.row_top, button_width, bar_height);
}

std::unique_ptr<Main_window> make_main_window(Kelvane_lite_form& form) {
    return std::make_unique<Main_window>(form);
}

}  // namespace kelvane
