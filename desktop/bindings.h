#pragma once

#include <functional>

#include "desktop/qt_text.h"
#include "platform/controls.h"

class QAbstractButton;
class QAbstractSlider;
class QAction;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QProgressBar;
class QRadioButton;
class QWidget;

namespace kelvane {

// How a dialog is written. Its file offers one function,
//
//     std::unique_ptr<QDialog> make_select_device_dialog(select_device_form_lite& form);
//
// which makes a QDialog without a parent, lays widgets out (layouts, no pixels), binds each to its
// control with one of the functions below, gives every label its buddy, and ends with
// `finish_dialog`. Nothing else: no logic, no exec(), no accept() or reject(), no values copied.
// Values go from a control to its widget whenever the control changes, and what the operator does,
// by hand or through an assistive program, goes to the control, whose handlers do the work. Title,
// Escape, close button and showing are `Qt_windows`'s affair; it learns of the window by
//
//     windows.add(form, make_select_device_dialog);
//
// A binding lasts as long as its widget, and the control must live at least as long. A widget gets
// the control's name as its object name, by which tests find it.

/// A push button; its caption (with access key) is the control's.
void bind(Button& control, QAbstractButton& widget);
/// A menu item.
void bind(Button& control, QAction& item);
void bind(Check_box& control, QCheckBox& widget);
/// The options of one group share a parent widget of their own (a QGroupBox), so that the arrow
/// keys go from one to the other.
void bind(Option_button& control, QRadioButton& widget);
/// Typed characters are filtered by `accepts_key`, text that comes as a whole is not. Enter is for
/// the control's `on_enter` alone: in fields and lists it never presses the dialog's default
/// button.
void bind(Text_box& control, QLineEdit& widget, Text_form form = Text_form::latin1);
/// A text of several lines, which end with LF; characters that Latin-1 lacks become "?".
void bind(Text_box& control, QPlainTextEdit& widget);
/// A mouse press or a key that moves the selection is a choice; Enter is a double click.
void bind(List_box& control, QListWidget& widget);
void bind(List_box& control, QComboBox& widget);
/// A control that has a caption is shown with it; an access key works when `widget` has a buddy.
void bind(Label& control, QLabel& widget);
void bind(Scroll_bar& control, QAbstractSlider& widget);
void bind(Progress_bar& control, QProgressBar& widget);

/// A frame or group box that is shown and enabled with `control`, its title the caption.
void bind_frame(Control& control, QWidget& widget);

/// Enter in `widget` does `pressed` and goes no further: the dialog's default button, which stores
/// or starts something, must not be pressed in passing.
void take_enter(QWidget& widget, std::function<void()> pressed);

/// To be called when all widgets stand: gives each that has no accessible name the text of the
/// label whose buddy it is, or its own caption.
void finish_dialog(QWidget& dialog);

}  // namespace kelvane
