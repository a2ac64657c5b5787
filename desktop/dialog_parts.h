#pragma once

#include <QBoxLayout>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <initializer_list>

#include "desktop/bindings.h"

class QGridLayout;
class QPushButton;

/// The widgets that dialogs are put together from, each bound to its control. An access key is one
/// character of the control's caption; 0 leaves the caption as it is.
namespace kelvane {

/// The control's caption with `key` as its access key, which is lost on a caption without it.
QString with_access_key(const Control& control, char key);

QCheckBox* check_box_of(Check_box& control, char key = 0);
QRadioButton* option_of(Option_button& control, char key = 0);
QPushButton* button_of(Button& control, char key = 0);

inline constexpr int number_width = 6;  ///< characters of a field for a number

/// A field wide enough for `characters` of its font.
QLineEdit* field_of(Text_box& control, int characters, Text_form form = Text_form::latin1);

/// A list at least `characters` wide and `rows` high, which grows with its window.
QListWidget* list_of(List_box& control, int rows, int characters);

/// A field above a long list, which leaves only the rows that hold what is typed into it, and the
/// chosen one; the arrow keys choose another.
QLineEdit* filter_of(QListWidget& list);

/// Lists of which the rows beside each other belong together scroll as one.
void scroll_together(const QListWidget& one, const QListWidget& other);

/// A label with the caption of `control`, which names `widget` and leads to it.
QLabel* label_of(const Control& control, QWidget& widget, char key = 0);
/// As above, for a label that is a control of its own.
QLabel* label_of(const Label& control, QWidget& widget, char key = 0);

/// A text that comes and goes without anything else moving.
QLabel* hint_of(Label& control);

/// A box with a title around a layout.
QGroupBox* group_of(const QString& title, QLayout* layout);

/// Widgets beside each other; those after the first take no more width than they need.
QHBoxLayout* row_of(std::initializer_list<QWidget*> widgets);
/// Widgets below each other, with the room that is left under them.
QVBoxLayout* column_of(std::initializer_list<QWidget*> widgets);
/// A label above its widget.
QVBoxLayout* labelled(const Control& control, QWidget& widget, char key = 0);

/// The buttons at the foot of a dialog; the first is its default. `left` stands apart from them.
QDialogButtonBox* foot_of(std::initializer_list<QPushButton*> buttons, QPushButton* left = nullptr);

}  // namespace kelvane
