#include "desktop/bindings.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QRadioButton>
#include <QSignalBlocker>
#include <algorithm>
#include <functional>
#include <memory>
#include <utility>

#include "desktop/event_filter.h"
#include "desktop/paced_refresh.h"

namespace kelvane {

namespace {

using Refresh = std::function<void()>;

/// Runs `refresh` now and after every change of the control, as long as `target` exists.
void keep_fresh(Control& control, QObject& target, const Refresh& refresh) {
    target.setObjectName(to_screen(control.name()));
    refresh();
    control.observe(refresh);
    QObject::connect(&target, &QObject::destroyed, [&control] { control.observe({}); });
}

/// A widget that has not been put in its window yet must not be told to show itself: it would
/// become a window of its own. So only a difference is told.
void refresh_visible(const Control& control, QWidget& widget) {
    const bool hidden = widget.isHidden() && widget.testAttribute(Qt::WA_WState_ExplicitShowHide);
    if (hidden == control.visible()) {
        widget.setVisible(control.visible());
    }
}

/// Binds what all controls show, and what `refresh_more` adds to it. The widget's own signals are
/// silent meanwhile, so that they report only what the operator does, by hand or through an
/// assistive program. The function that is returned makes the widget show the control's values
/// again.
Refresh bind_widget(Control& control, QWidget& widget, Refresh refresh_more) {
    Refresh refresh = [&control, &widget, more = std::move(refresh_more)] {
        const QSignalBlocker silent(widget);
        refresh_visible(control, widget);
        widget.setEnabled(control.enabled());
        more();
    };
    keep_fresh(control, widget, refresh);
    return refresh;
}

/// A menu is as wide as its longest item, and a path may be wider than the screen. The tool tip of
/// an item that is not cut is not touched.
void refresh_text(const QString& caption, QAction& item) {
    constexpr int longest = 80;
    const QString plain = without_access_key(caption);
    const bool cut = plain.size() > longest;
    item.setText(cut ? cut_in_middle(plain, longest).replace("&", "&&") : caption);
    if (cut || item.data().toBool()) {
        item.setToolTip(cut ? tool_tip_of(plain) : QString());
        item.setData(cut);
    }
}

void refresh_caption(const Control& control, QAbstractButton& widget) {
    const QString caption = to_screen(control.caption());
    const QString shown = without_access_key(widget.text());
    const bool named_after_caption =
        widget.accessibleName().isEmpty() || widget.accessibleName() == shown;
    // A widget that shows the caption already may have an access key of its own in it.
    if (!caption.isEmpty() && shown != without_access_key(caption)) {
        widget.setText(caption);
    }
    if (named_after_caption) {
        widget.setAccessibleName(without_access_key(widget.text()));
    }
}

bool is_enter(const QEvent& event) {
    if (event.type() != QEvent::KeyPress) {
        return false;
    }
    const int key = static_cast<const QKeyEvent&>(event).key();
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

/// True for a key press that types a character which the control refuses, or which it cannot hold.
bool is_refused_key(const Text_box& control, const QEvent& event, Text_form form) {
    if (event.type() != QEvent::KeyPress) {
        return false;
    }
    const QString typed = static_cast<const QKeyEvent&>(event).text();
    if (typed.isEmpty() || !typed.at(0).isPrint()) {
        return false;
    }
    const std::string keys = from_screen(typed, form);
    const bool refused =
        control.accepts_key &&
        !std::all_of(keys.begin(), keys.end(), [&](char key) { return control.accepts_key(key); });
    return refused || to_screen(keys, form) != typed;
}

/// A field holds one line: the lines of a pasted text are joined.
QString one_line(QString text) {
    return text.remove('\r').remove('\n');
}

void refresh_text(const Text_box& control, QLineEdit& widget, Text_form form) {
    const QString text = to_screen(control.text(), form);
    if (widget.text() != text) {
        const int cursor = widget.cursorPosition();
        widget.setText(text);
        widget.setCursorPosition(cursor);
    }
}

/// Fills `widget` with the control's items when they are not those it was filled with.
template <typename List>
void refresh_items(const List_box& control, List& widget, unsigned& filled_with) {
    if (filled_with == control.revision()) {
        return;
    }
    filled_with = control.revision();
    widget.clear();
    for (const std::string& item : control.items()) {
        widget.addItem(to_screen(item));
    }
}

void refresh_selection(const List_box& control, QListWidget& widget) {
    if (widget.currentRow() != control.selected()) {
        widget.setCurrentRow(control.selected());
    }
    if (control.selected() < 0) {
        widget.clearSelection();
    } else {
        widget.item(control.selected())->setSelected(true);
    }
}

/// The row that the operator has selected, -1 for none. (The current row alone is no choice: a list
/// that gets the focus has one.)
int selected_row(const QListWidget& widget) {
    const auto selected = widget.selectedItems();
    return selected.isEmpty() ? -1 : widget.row(selected.first());
}

/// An item of the folded list that an assistive program selects is a choice. (In an open list the
/// selection only follows the pointer.)
void choose_in_folded_list(QComboBox& widget) {
    QAbstractItemView* list = widget.view();
    QObject::connect(list->selectionModel(), &QItemSelectionModel::selectionChanged, &widget,
                     [&widget, list](const QItemSelection& selected) {
                         if (!list->isVisible() && !selected.isEmpty()) {
                             widget.setCurrentIndex(selected.first().top());
                         }
                     });
}

}  // namespace

void take_enter(QWidget& widget, std::function<void()> pressed) {
    Event_filter::install(widget, [pressed = std::move(pressed)](QEvent& event) {
        if (!is_enter(event)) {
            return false;
        }
        pressed();
        return true;
    });
}

void bind(Button& control, QAbstractButton& widget) {
    bind_widget(control, widget, [&control, &widget] { refresh_caption(control, widget); });
    QObject::connect(&widget, &QAbstractButton::clicked, [&control] { control.click(); });
}

void bind(Button& control, QAction& item) {
    keep_fresh(control, item, [&control, &item] {
        refresh_text(to_screen(control.caption()), item);
        item.setEnabled(control.enabled());
        item.setVisible(control.visible());
    });
    item.setShortcut(QKeySequence(to_screen(control.shortcut)));
    QObject::connect(&item, &QAction::triggered, [&control] { control.click(); });
}

void bind(Check_box& control, QCheckBox& widget) {
    const Refresh refresh = bind_widget(control, widget, [&control, &widget] {
        constexpr Qt::CheckState states[] = {Qt::Unchecked, Qt::Checked, Qt::PartiallyChecked};
        refresh_caption(control, widget);
        widget.setCheckState(states[control.value()]);
        widget.setTristate(control.value() == 2);
    });
    QObject::connect(&widget, &QCheckBox::stateChanged, [&control, refresh] {
        control.click();
        refresh();
    });
    take_enter(widget, [] {});
}

void bind(Option_button& control, QRadioButton& widget) {
    const Refresh refresh = bind_widget(control, widget, [&control, &widget] {
        refresh_caption(control, widget);
        // Within a group Qt would not let the last checked option go.
        widget.setAutoExclusive(false);
        widget.setChecked(control.value());
        widget.setAutoExclusive(true);
    });
    // One that is cleared is told by the one that has been chosen in its place.
    QObject::connect(&widget, &QRadioButton::toggled, [&control, refresh](bool chosen) {
        if (chosen) {
            control.click();
            refresh();
        }
    });
    take_enter(widget, [] {});
}

void bind(Text_box& control, QLineEdit& widget, Text_form form) {
    const Refresh refresh = bind_widget(
        control, widget, [&control, &widget, form] { refresh_text(control, widget, form); });
    QObject::connect(&widget, &QLineEdit::textChanged,
                     [&control, form, refresh](const QString& text) {
                         if (control.enabled()) {
                             control.set_text(from_screen(one_line(text), form));
                         }
                         refresh();
                     });
    Event_filter::install(widget, [&control, &widget, form](QEvent& event) {
        if (event.type() == QEvent::FocusIn && control.selects_all_on_focus) {
            // A mouse press sets its caret only after the focus has come. What is typed comes soon.
            const bool by_mouse =
                static_cast<const QFocusEvent&>(event).reason() == Qt::MouseFocusReason;
            QMetaObject::invokeMethod(&widget, "selectAll",
                                      by_mouse ? Qt::QueuedConnection : Qt::DirectConnection);
        }
        return is_refused_key(control, event, form);
    });
    take_enter(widget, [&control] { control.press_enter(); });
}

void bind(Text_box& control, QPlainTextEdit& widget) {
    bind_widget(control, widget, [&control, &widget] {
        const QString text = to_screen(control.text(), Text_form::latin1);
        if (widget.toPlainText() != text) {
            widget.setPlainText(text);
        }
    });
    QObject::connect(&widget, &QPlainTextEdit::textChanged, [&control, &widget] {
        control.set_text(from_screen(widget.toPlainText(), Text_form::latin1));
    });
}

void bind(List_box& control, QListWidget& widget) {
    const auto filled_with = std::make_shared<unsigned>(control.revision() - 1);
    const auto choosing = std::make_shared<bool>(false);
    const Refresh refresh =
        bind_widget(control, widget, [&control, &widget, filled_with, choosing] {
            const bool has_new_items = *filled_with != control.revision();
            refresh_items(control, widget, *filled_with);
            if (has_new_items || !*choosing) {
                refresh_selection(control, widget);
            }
        });
    // A press on another row reports the selection and then the press; it is one choice.
    const auto chosen = std::make_shared<bool>(false);
    const auto choose = [&control, &widget, chosen, choosing, refresh] {
        *chosen = true;
        const int row = selected_row(widget);
        if (row >= 0) {
            *choosing = true;
            control.choose(row);
            *choosing = false;
        }
        if (row >= 0 && control.selected() == row) {
            refresh();
        } else {
            // Nothing is a choice only until the new row follows; else the old one stays. A choice
            // that is taken back would be made again by the rest of the key's work.
            QMetaObject::invokeMethod(&widget, refresh, Qt::QueuedConnection);
        }
    };
    QObject::connect(&widget, &QListWidget::itemSelectionChanged, choose);
    QObject::connect(&widget, &QListWidget::itemPressed, [chosen, choose] {
        if (!*chosen) {
            choose();
        }
    });
    QObject::connect(&widget, &QListWidget::itemDoubleClicked,
                     [&control] { control.double_click(); });
    Event_filter::install(*widget.viewport(), [chosen](QEvent& event) {
        *chosen = *chosen && event.type() != QEvent::MouseButtonPress;
        return false;
    });
    take_enter(widget, [&control] { control.double_click(); });
}

void bind(List_box& control, QComboBox& widget) {
    const auto filled_with = std::make_shared<unsigned>(control.revision() - 1);
    const Refresh refresh = bind_widget(control, widget, [&control, &widget, filled_with] {
        refresh_items(control, widget, *filled_with);
        widget.setCurrentIndex(control.selected());
    });
    QObject::connect(&widget, &QComboBox::currentIndexChanged, [&control, refresh](int row) {
        control.choose(row);
        refresh();
    });
    choose_in_folded_list(widget);
    take_enter(widget, [] {});
}

void bind(Label& control, QLabel& widget) {
    widget.setTextFormat(Qt::PlainText);
    bind_widget(control, widget, [&control, &widget] {
        QString text = to_screen(control.caption());
        const bool marks_shown = widget.buddy() != nullptr;
        if (marks_shown && control.plain) {
            text.replace("&", "&&");
        } else if (!marks_shown && !control.plain) {
            text = without_access_key(text);
        }
        widget.setText(text);
    });
}

void bind(Scroll_bar& control, QAbstractSlider& widget) {
    widget.setRange(control.minimum(), control.maximum());
    const Refresh refresh =
        bind_widget(control, widget, [&control, &widget] { widget.setValue(control.value()); });
    QObject::connect(&widget, &QAbstractSlider::valueChanged, [&control, refresh](int value) {
        if (control.enabled()) {
            control.set_value(value);
        }
        refresh();
    });
    take_enter(widget, [] {});
}

void bind(Progress_bar& control, QProgressBar& widget) {
    widget.setRange(0, 100);
    widget.setAccessibleName(without_access_key(to_screen(control.caption())));
    // The widget paints at once, for longer than a fast line has characters to go on with.
    const auto pace = std::make_shared<Paced_refresh>([&control, &widget] {
        widget.setRange(0, control.busy() ? 0 : 100);
        widget.setValue(control.value());
    });
    bind_widget(control, widget, [pace] { pace->request(); });
}

void bind_frame(Control& control, QWidget& widget) {
    bind_widget(control, widget, [&control, &widget] {
        auto* group = qobject_cast<QGroupBox*>(&widget);
        if (group != nullptr && !control.caption().empty()) {
            group->setTitle(to_screen(control.caption()));
        }
    });
}

void finish_dialog(QWidget& dialog) {
    for (const QLabel* label : dialog.findChildren<QLabel*>()) {
        QWidget* buddy = label->buddy();
        if (buddy != nullptr && buddy->accessibleName().isEmpty()) {
            QString name = without_access_key(label->text());
            buddy->setAccessibleName(name.remove(':').trimmed());
        }
    }
    for (QAbstractButton* button : dialog.findChildren<QAbstractButton*>()) {
        if (button->accessibleName().isEmpty()) {
            button->setAccessibleName(without_access_key(button->text()));
        }
    }
}

}  // namespace kelvane
