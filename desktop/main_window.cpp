#include "desktop/main_window.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QShortcut>
#include <QStatusBar>
#include <QToolBar>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "desktop/bindings.h"
#include "desktop/busy_bar.h"
#include "desktop/drawn_icons.h"
#include "desktop/elided_label.h"
#include "desktop/event_filter.h"
#include "desktop/find_bars.h"
#include "desktop/modality.h"
#include "desktop/pane_view.h"
#include "desktop/state_banner.h"
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
                    QMenu* const within = shown.addMenu(to_screen(submenu.caption));
                    within->setToolTipsVisible(true);  // of what is cut short
                    fill_menu(*within, submenu);
                }
            }
            shown.addSeparator();
        }
        bind(item, *shown.addAction(QString()));
    }
}

/// As large as there is room for, clear of the caret's line and of the line numbers.
void fit_text(QLabel& label, QFont letters, const QRect& room) {
    const qreal usual = letters.pointSizeF();
    letters.setFamilies(letters.families());  // whatever font is around it
    for (const qreal enlargement : {1.3, 1.15, 1.0}) {
        letters.setPointSizeF(usual * enlargement);
        label.setFont(letters);
        const int margin = label.fontMetrics().lineSpacing() * 3 / 2;
        label.setMargin(margin);
        label.setIndent(margin);
        if (label.heightForWidth(room.width()) <= room.height()) {
            break;
        }
    }
    label.setGeometry(room);
}

}  // namespace

Main_window::Main_window(Kelvane_lite_form& form, Editor_parts parts)
    : inner_(new QWidget), banner_(new State_banner(form.state_field)) {
    auto* centre = new QWidget;
    auto* column = new QVBoxLayout(centre);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(banner_);
    column->addWidget(inner_, 1);
    setCentralWidget(centre);
    make_menus(form);
    make_controls(form, parts);
    make_first_steps(form, parts.pane);
    make_tool_bar(form, parts);
    make_status_bar(form, parts);
    make_shortcuts(form);
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
    banner_->add_cost(painting.nsecsElapsed());
    return handled;
}

void Main_window::make_menus(Kelvane_lite_form& form) {
    for (const Menu& menu : form.menus()) {
        fill_menu(*menuBar()->addMenu(to_screen(menu.caption)), menu);
    }
}

/// What is done most; and the pane's context menu.
void Main_window::make_tool_bar(Kelvane_lite_form& form, Editor_parts& parts) {
    const auto& edit = parts.commands.EditMenuItem;
    const struct {
        const Button* item;
        Drawing drawing;
        const char* tip;
    } tools[] = {
        {&form.FileMenuItem.front(), Drawing::send, "Choose a program and send it to the machine"},
        {&form.FileMenuItem[1], Drawing::receive, "Save what the machine punches out"},
        {nullptr, {}, {}},
        {&edit[Edit_commands::new_program], Drawing::new_program, "Begin an empty program"},
        {&edit[Edit_commands::open], Drawing::open, "Open a program in the editor"},
        {&edit[Edit_commands::save], Drawing::save, "Save the program in the editor"},
        {&edit[Edit_commands::undo], Drawing::undo, "Take back the last change"},
        {&edit[Edit_commands::redo], Drawing::redo, "Make the change again"},
        {&edit[Edit_commands::find], Drawing::find, "Find and replace text"},
        {nullptr, {}, {}},
        {&form.ToolsMenuItem.front(), Drawing::monitor, "See what crosses the line"},
    };
    QToolBar* bar = addToolBar("Tools");
    bar->setObjectName("tool_bar");
    bar->setMovable(false);
    bar->toggleViewAction()->setVisible(false);
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    for (const auto& [item, drawing, tip] : tools) {
        if (item == nullptr) {
            bar->addSeparator();
            continue;
        }
        auto* action = findChild<QAction*>(to_screen(item->name()));
        action->setIcon(icon_of(drawing));
        action->setIconVisibleInMenu(false);
        const QString key = action->shortcut().toString(QKeySequence::NativeText);
        action->setToolTip(tip + (key.isEmpty() ? "" : " (" + key + ")"));
        bar->addAction(action);
    }
    for (int item = Edit_commands::undo; item <= Edit_commands::select_all; ++item) {
        view_->addAction(
            findChild<QAction*>(to_screen(edit[static_cast<std::size_t>(item)].name())));
    }
}

/// Over the empty pane; gone as soon as there is something in it, or has been sent.
void Main_window::make_first_steps(Kelvane_lite_form& form, const Program_pane& pane) {
    first_steps_ = new QLabel(view_->viewport());
    first_steps_->setWordWrap(true);
    first_steps_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    first_steps_->setAttribute(Qt::WA_TransparentForMouseEvents);
    bind(form.first_steps, *first_steps_);
    show_first_steps_ = [this, &form, &pane] {
        first_steps_->setVisible(form.first_steps.visible() && pane.text().bytes.empty());
        fit_text(*first_steps_, font(), view_->viewport()->rect());
    };
    Event_filter::install(*view_->viewport(), [this](QEvent& event) {
        if (event.type() == QEvent::Resize) {
            show_first_steps_();
        }
        return false;
    });
}

/// The buttons' keys work in the program's other windows, too, beside a question as well.
void Main_window::make_shortcuts(Kelvane_lite_form& form) {
    const auto on = [this](const QKeySequence& key, auto pressed) {
        auto* shortcut = new QShortcut(key, this);
        shortcut->setContext(Qt::ApplicationShortcut);
        QObject::connect(shortcut, &QShortcut::activated, this, pressed);
        return shortcut;
    };
    Modality::keep_live(*on(Qt::Key_F9, [&form] { form.Send_button.click(); }));
    Modality::keep_live(*on(Qt::Key_F10, [&form] { form.Stop_button.click(); }));
    on(Qt::CTRL | Qt::Key_Q, [this] { close(); });
    send_->setToolTip("Start or resume sending (F9)");
    stop_->setToolTip("Pause or end what is sent or received (F10)");
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
    progress_ = new Busy_bar(inner_);
    send_ = new QPushButton(inner_);
    stop_ = new QPushButton(inner_);
    bind(form.ProgressBar1, *progress_);
    bind(form.Send_button, *send_);
    bind(form.Stop_button, *stop_);
    Modality::keep_live(*send_);
    Modality::keep_live(*stop_);
}

void Main_window::make_status_bar(Kelvane_lite_form& form, Editor_parts parts) {
    auto* status = new Elided_label;
    constexpr int longest_note = 56;  // leaves room for the transfer
    auto* part = new Elided_label(longest_note);
    bind(form.status_label, *status);
    statusBar()->addWidget(status, 1);
    auto* open = new QPushButton;
    bind(form.Open_file_button, *open);
    statusBar()->addPermanentWidget(open);
    statusBar()->addPermanentWidget(part);
    part->setTextFormat(Qt::PlainText);
    const auto show_note = [this, part, &pane = parts.pane, &commands = parts.commands] {
        part->setText(to_screen(pane.note()));
        commands.refresh();
        show_first_steps_();
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
