#include "desktop/main_window.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>
#include <QStyle>
#include <QToolBar>
#include <algorithm>
#include <utility>

#include "desktop/bindings.h"
#include "desktop/event_filter.h"
#include "desktop/find_bars.h"
#include "desktop/modality.h"
#include "desktop/pane_view.h"
#include "editing/edit_commands.h"
#include "frame/resize_layout.h"

namespace kelvane {

namespace {

constexpr QSize first_size(900, 640);
constexpr QSize least_size(420, 240);

void fill_menu(QMenu& shown, const Menu& menu) {
    shown.setObjectName(to_screen(menu.name));
    bool submenus_added = false;
    for (Button& item : menu.items) {
        if (item.begins_group) {
            if (!std::exchange(submenus_added, true)) {
                for (const Menu& submenu : menu.submenus) {
                    fill_menu(*shown.addMenu(to_screen(submenu.caption)), submenu);
                }
            }
            shown.addSeparator();
        }
        bind(item, *shown.addAction(QString()));
    }
}

}  // namespace

Main_window::Main_window(Kelvane_lite_form& form, Editor_parts parts) : inner_(new QWidget(this)) {
    setCentralWidget(inner_);
    make_menus(form);
    make_controls(form, parts);
    make_tool_bar(parts);
    make_status_bar(form, parts);
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
        fill_menu(*menuBar()->addMenu(to_screen(menu.caption)), menu);
    }
}

/// What is done most with a program, as the Edit menu has it; and the pane's context menu.
void Main_window::make_tool_bar(Editor_parts& parts) {
    struct Tool {
        Edit_commands::Item item;
        QStyle::StandardPixmap picture;
    };
    constexpr Tool tools[] = {
        {Edit_commands::new_program, QStyle::SP_FileIcon},
        {Edit_commands::open, QStyle::SP_DialogOpenButton},
        {Edit_commands::save, QStyle::SP_DialogSaveButton},
        {Edit_commands::undo, QStyle::SP_ArrowBack},
        {Edit_commands::redo, QStyle::SP_ArrowForward},
        {Edit_commands::find, QStyle::SP_FileDialogContentsView},
    };
    QToolBar* bar = addToolBar("Program");
    bar->setObjectName("tool_bar");
    bar->setMovable(false);
    bar->toggleViewAction()->setVisible(false);
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    const auto action_of = [&](Edit_commands::Item item) {
        return findChild<QAction*>(to_screen(parts.commands.EditMenuItem[item].name()));
    };
    for (const Tool& tool : tools) {
        QAction* action = action_of(tool.item);
        action->setIcon(style()->standardIcon(tool.picture));
        action->setIconVisibleInMenu(false);
        bar->addAction(action);
    }
    for (int item = Edit_commands::undo; item <= Edit_commands::select_all; ++item) {
        view_->addAction(action_of(static_cast<Edit_commands::Item>(item)));
    }
}

void Main_window::make_controls(Kelvane_lite_form& form, Editor_parts& parts) {
    view_ = new Pane_view(parts.pane);
    view_->setParent(inner_);
    view_->on_drop = [&parts = parts.commands](const std::string& path) { parts.open_file(path); };
    find_bars_ = make_find_bars(parts.find_bar, *view_);
    find_bars_->setParent(inner_);
    find_bars_->hide();
    Event_filter::install(*find_bars_, [this](QEvent& event) {
        if (event.type() == QEvent::ShowToParent || event.type() == QEvent::HideToParent ||
            event.type() == QEvent::LayoutRequest) {
            place_controls();
        }
        return false;
    });
    progress_ = new QProgressBar(inner_);
    send_ = new QPushButton(inner_);
    stop_ = new QPushButton(inner_);
    bind(form.ProgressBar1, *progress_);
    bind(form.Send_button, *send_);
    bind(form.Stop_button, *stop_);
    Modality::keep_live(*send_);
    Modality::keep_live(*stop_);
}

void Main_window::make_status_bar(Kelvane_lite_form& form, Editor_parts parts) {
    auto* status = new QLabel;
    auto* part = new QLabel;
    // A long text must not widen the window.
    status->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    // No accessible name: it would hide the text, which is what is to be read out.
    status->setTextInteractionFlags(Qt::TextSelectableByMouse);
    bind(form.status_label, *status);
    statusBar()->addWidget(status, 1);
    statusBar()->addPermanentWidget(part);
    part->setAccessibleName("Program shown");
    part->setTextFormat(Qt::PlainText);
    const auto show_note = [part, &pane = parts.pane, &commands = parts.commands] {
        part->setText(to_screen(pane.note()));
        commands.refresh();
    };
    view_->on_shown = show_note;
    show_note();
}

void Main_window::place_controls() {
    const int bar_height = std::max(send_->sizeHint().height(), progress_->sizeHint().height());
    const Main_window_layout layout = resize_layout(inner_->width(), inner_->height(), bar_height);
    const int button_width = std::max(send_->sizeHint().width(), stop_->sizeHint().width());
    const int gap = bar_height / 4;
    const int stop_left = layout.text_width - gap - button_width;
    const int send_left = stop_left - gap - button_width;
    const int bars = find_bars_->isVisibleTo(inner_)
                         ? std::min(find_bars_->sizeHint().height(), layout.text_height)
                         : 0;
    find_bars_->setGeometry(0, layout.text_height - bars, layout.text_width, bars);
    view_->setGeometry(0, 0, layout.text_width, layout.text_height - bars);
    progress_->setGeometry(gap, layout.row_top, send_left - 2 * gap, bar_height);
    send_->setGeometry(send_left, layout.row_top, button_width, bar_height);
    stop_->setGeometry(stop_left, layout.row_top, button_width, bar_height);
}

std::unique_ptr<Main_window> make_main_window(Kelvane_lite_form& form, Editor_parts parts) {
    return std::make_unique<Main_window>(form, parts);
}

}  // namespace kelvane
