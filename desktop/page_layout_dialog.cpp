#include "desktop/page_layout_dialog.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <algorithm>

#include "desktop/dialog_parts.h"
#include "desktop/print_page.h"

namespace kelvane {

namespace {

/// The usual sheet with its margins, in points, and the shape of the letters of a font of fixed
/// width.
constexpr QSizeF sheet(595, 842);
constexpr double sheet_margin = 28;
constexpr double column_per_point = 0.6;

/// Draws the page in small: paper is white whatever the desktop's colours, words are grey strokes.
class Picture_widget : public QWidget {
  public:
    explicit Picture_widget(Page_picture& picture) : picture_(picture) {
        setObjectName(to_screen(picture.name()));
        setAccessibleName(without_access_key(to_screen(picture.caption())));
        const int line = fontMetrics().height();
        setMinimumSize(line * 12, line * 17);
        picture.observe([this] { update(); });
    }
    Picture_widget(const Picture_widget&) = delete;
    Picture_widget& operator=(const Picture_widget&) = delete;
    ~Picture_widget() override { picture_.observe({}); }

  protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const double scale =
            std::min((width() - 1) / sheet.width(), (height() - 1) / sheet.height());
        painter.translate((width() - sheet.width() * scale) / 2, 0);
        painter.scale(scale, scale);
        QPen edge(palette().color(QPalette::Mid), 1);
        edge.setCosmetic(true);
        painter.setPen(edge);
        painter.setBrush(Qt::white);
        painter.drawRect(QRectF(QPointF(0, 0), sheet));
        painter.translate(sheet_margin, sheet_margin);
        draw_page(painter);
    }

  private:
    /// Points of the font, taken down as printing would.
    [[nodiscard]] double font_points() const {
        const Page_sketch& page = picture_.page();
        const double rows = static_cast<double>(page.rows.size()) + page.barcode_rows;
        const double height = (sheet.height() - 2 * sheet_margin) / (rows * row_per_point);
        const double width = (sheet.width() - 2 * sheet_margin) / (page.columns * column_per_point);
        return std::min({static_cast<double>(page.points), height, width});
    }

    void draw_page(QPainter& painter) const {
        const Page_sketch& page = picture_.page();
        const double points = font_points();
        double top = 0;
        for (int code = 0; code < page.barcode_rows / 3; ++code) {
            draw_bars(painter, top, points);
            top += 3 * points * row_per_point;
        }
        for (const std::string& row : page.rows) {
            draw_row(painter, row, top, points);
            top += points * row_per_point;
        }
    }

    static void draw_bars(QPainter& painter, double top, double points) {
        constexpr int bars = 60;
        for (int bar = 0; bar < bars; ++bar) {
            const double width = bar % 3 == 0 ? 2 : 1;
            painter.fillRect(QRectF(5 * points * column_per_point + bar * 4, top, width,
                                    1.7 * points * row_per_point),
                             Qt::black);
        }
        draw_row(painter, "     " + std::string(20, '*'), top + 2 * points * row_per_point, points);
    }

    /// A stroke for each word.
    static void draw_row(QPainter& painter, const std::string& row, double top, double points) {
        const double column = points * column_per_point;
        for (std::size_t start = row.find_first_not_of(' '); start != std::string::npos;) {
            const std::size_t end = std::min(row.find(' ', start), row.size());
            painter.fillRect(
                QRectF(static_cast<double>(start) * column, top + points * 0.3,
                       static_cast<double>(end - start) * column - column * 0.3, points * 0.6),
                QColor(96, 96, 96));
            start = row.find_first_not_of(' ', end);
        }
    }

    Page_picture& picture_;
};

QLabel* reason_label(Label& control) {
    auto* label = new QLabel;
    label->setWordWrap(true);
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    bind(control, *label);
    return label;
}

void add_number(QGridLayout& grid, Number_field& field) {
    const int row = grid.rowCount();
    auto* edit = new QLineEdit;
    bind(field.box, *edit);
    constexpr int digits = 6;
    edit->setMaximumWidth(edit->fontMetrics().horizontalAdvance(QString(digits + 2, u'0')));
    grid.addWidget(label_of(field.box, *edit), row, 0);
    grid.addWidget(edit, row, 1, Qt::AlignLeft);
    grid.addWidget(reason_label(field.reason), row + 1, 0, 1, 2);
}

QGroupBox* page_group(Page_layout_form_lite& form) {
    auto* grid = new QGridLayout;
    add_number(*grid, form.Lines_per_page);
    add_number(*grid, form.line_length);
    add_number(*grid, form.margin);
    for (Check_box* box :
         {&form.Print_description, &form.Print_line_numbers, &form.Print_page_numbers,
          &form.Print_reverse_order, &form.Barcode_file, &form.Barcode_path}) {
        grid->addWidget(check_box_of(*box), grid->rowCount(), 0, 1, 2);
    }
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(grid->rowCount(), 1);
    return group_of("Page", grid);
}

QGroupBox* font_group(Page_layout_form_lite& form) {
    auto* grid = new QGridLayout;
    auto* name = new QLineEdit;
    bind(form.Printer_font, *name, Text_form::name);
    auto* list = new QListWidget;
    bind(form.Printer_font_list, *list);
    grid->addWidget(label_of(form.Printer_font, *name), 0, 0);
    grid->addWidget(name, 0, 1);
    grid->addWidget(reason_label(form.Printer_font_reason), 1, 0, 1, 2);
    grid->addWidget(label_of(form.Printer_font_list, *list), 2, 0, 1, 2);
    grid->addWidget(list, 3, 0, 1, 2);
    add_number(*grid, form.Printer_fontsize);
    grid->addWidget(check_box_of(form.Printer_fontbold), grid->rowCount(), 0, 1, 2);
    grid->addWidget(check_box_of(form.Printer_fontitalic), grid->rowCount(), 0, 1, 2);
    grid->setRowStretch(3, 1);
    return group_of("Font", grid);
}

QDialogButtonBox* buttons(Page_layout_form_lite& form) {
    auto* box = new QDialogButtonBox;
    auto* ok = button_of(form.OK_button);
    box->addButton(button_of(form.Preview_button), QDialogButtonBox::ActionRole);
    box->addButton(button_of(form.Defaults_button), QDialogButtonBox::ResetRole);
    box->addButton(ok, QDialogButtonBox::AcceptRole);
    box->addButton(button_of(form.Cancel_button), QDialogButtonBox::RejectRole);
    ok->setDefault(true);
    return box;
}

}  // namespace

std::unique_ptr<QDialog> make_page_layout_dialog(Page_layout_form_lite& form) {
    auto dialog = std::make_unique<QDialog>();
    auto* columns = new QHBoxLayout;
    columns->addWidget(page_group(form));
    columns->addWidget(font_group(form));
    columns->addWidget(new Picture_widget(form.picture), 1);
    auto* whole = new QVBoxLayout(dialog.get());
    whole->addLayout(columns, 1);
    whole->addWidget(reason_label(form.preview_hint));
    whole->addWidget(buttons(form));
    finish_dialog(*dialog);
    return dialog;
}

}  // namespace kelvane
