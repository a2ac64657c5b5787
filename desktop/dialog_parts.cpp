#include "desktop/dialog_parts.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QFontMetrics>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>

#include "desktop/event_filter.h"

namespace kelvane {

namespace {

int width_of(const QWidget& widget, int characters) {
    return widget.fontMetrics().horizontalAdvance(QString(characters, '0'));
}

/// However small the list becomes; when it has laid out its rows.
void keep_choice_in_sight(QListWidget& list) {
    Event_filter::install(list, [&list](QEvent& event) {
        if (event.type() == QEvent::Resize) {
            const auto show = [&list] { list.scrollToItem(list.currentItem()); };
            QMetaObject::invokeMethod(&list, show, Qt::QueuedConnection);
        }
        return false;
    });
}

/// A key that goes from row to row.
bool moves_choice(const QEvent& key_press) {
    const int key = static_cast<const QKeyEvent&>(key_press).key();
    return key == Qt::Key_Up || key == Qt::Key_Down;
}

template <typename Widget, typename Bound>
Widget* bound(Bound& control, char key) {
    auto* widget = new Widget;
    widget->setText(with_access_key(control, key));
    bind(control, *widget);
    return widget;
}

}  // namespace

QString with_access_key(const Control& control, char key) {
    QString text = to_screen(control.caption());
    const auto position = key == 0 ? -1 : text.indexOf(QLatin1Char(key));
    return position < 0 ? text : text.insert(position, '&');
}

QCheckBox* check_box_of(Check_box& control, char key) {
    return bound<QCheckBox>(control, key);
}

QRadioButton* option_of(Option_button& control, char key) {
    return bound<QRadioButton>(control, key);
}

QPushButton* button_of(Button& control, char key) {
    auto* button = bound<QPushButton>(control, key);
    button->setAutoDefault(false);
    take_enter(*button, [button] { button->click(); });
    return button;
}

QLineEdit* field_of(Text_box& control, int characters, Text_form form) {
    auto* field = new QLineEdit;
    bind(control, *field, form);
    field->setMinimumWidth(width_of(*field, characters + 2));
    return field;
}

QListWidget* list_of(List_box& control, int rows, int characters) {
    auto* list = new QListWidget;
    bind(control, *list);
    constexpr int scroll_bar_and_margins = 5;
    list->setMinimumWidth(width_of(*list, characters + scroll_bar_and_margins));
    list->setMinimumHeight(rows * (list->fontMetrics().lineSpacing() + 2));
    list->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Expanding);
    keep_choice_in_sight(*list);
    return list;
}

QLineEdit* filter_of(QListWidget& list) {
    auto* filter = new QLineEdit;
    filter->setPlaceholderText("Filter");
    filter->setAccessibleName("Filter");
    filter->setClearButtonEnabled(true);
    take_enter(*filter, [&list] { list.setFocus(); });
    const auto refresh = [filter, &list] {
        constexpr int long_list = 12;
        filter->setEnabled(list.count() > long_list || !filter->text().isEmpty());
        for (int row = 0; row < list.count(); ++row) {
            const QListWidgetItem& item = *list.item(row);
            // What a button would act on is seen, whether it matches or not.
            const bool shown =
                item.isSelected() || item.text().contains(filter->text(), Qt::CaseInsensitive);
            list.setRowHidden(row, !shown);
        }
    };
    refresh();
    Event_filter::install(*filter, [filter, &list](QEvent& event) {
        if (event.type() == QEvent::Hide && !event.spontaneous()) {
            filter->clear();  // the dialog has closed
        }
        return event.type() == QEvent::KeyPress && moves_choice(event) &&
               QCoreApplication::sendEvent(&list, &event);
    });
    QObject::connect(filter, &QLineEdit::textChanged, &list, refresh);
    QObject::connect(&list, &QListWidget::itemSelectionChanged, filter, refresh);
    QObject::connect(list.model(), &QAbstractItemModel::rowsInserted, filter, refresh);
    QObject::connect(list.model(), &QAbstractItemModel::rowsRemoved, filter, refresh);
    return filter;
}

void scroll_together(const QListWidget& one, const QListWidget& other) {
    const auto* left = one.verticalScrollBar();
    const auto* right = other.verticalScrollBar();
    QObject::connect(left, &QScrollBar::valueChanged, right, &QScrollBar::setValue);
    QObject::connect(right, &QScrollBar::valueChanged, left, &QScrollBar::setValue);
}

QLabel* label_of(const Control& control, QWidget& widget, char key) {
    auto* label = new QLabel(with_access_key(control, key));
    label->setBuddy(&widget);
    return label;
}

QLabel* label_of(const Label& control, QWidget& widget, char key) {
    QLabel* label = label_of(static_cast<const Control&>(control), widget, key);
    label->setObjectName(to_screen(control.name()));
    return label;
}

QLabel* hint_of(Label& control) {
    auto* hint = new QLabel;
    bind(control, *hint);
    hint->setWordWrap(true);
    hint->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    hint->setMinimumHeight(hint->fontMetrics().lineSpacing());
    QSizePolicy policy = hint->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    hint->setSizePolicy(policy);
    return hint;
}

QGroupBox* group_of(const QString& title, QLayout* layout) {
    auto* group = new QGroupBox(title);
    group->setLayout(layout);
    return group;
}

QHBoxLayout* row_of(std::initializer_list<QWidget*> widgets) {
    auto* row = new QHBoxLayout;
    for (QWidget* widget : widgets) {
        row->addWidget(widget, widget == *widgets.begin() ? 1 : 0);
    }
    return row;
}

QVBoxLayout* column_of(std::initializer_list<QWidget*> widgets) {
    auto* column = new QVBoxLayout;
    for (QWidget* widget : widgets) {
        column->addWidget(widget);
    }
    column->addStretch();
    return column;
}

QVBoxLayout* labelled(const Control& control, QWidget& widget, char key) {
    auto* column = new QVBoxLayout;
    column->addWidget(label_of(control, widget, key));
    column->addWidget(&widget, 1);
    return column;
}

QDialogButtonBox* foot_of(std::initializer_list<QPushButton*> buttons, QPushButton* left) {
    auto* foot = new QDialogButtonBox;
    if (left != nullptr) {
        // Tab enters at the left and goes on in the order in which the buttons have come.
        foot->addButton(left, QDialogButtonBox::ResetRole);
    }
    for (QPushButton* button : buttons) {
        foot->addButton(button, QDialogButtonBox::ActionRole);
        button->setDefault(button == *buttons.begin());
    }
    return foot;
}

}  // namespace kelvane
