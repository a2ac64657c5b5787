#include "desktop/print_page.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QPainter>
#include <QPrinter>
#include <algorithm>
#include <cmath>
#include <string_view>

#include "desktop/code39_bars.h"
#include "desktop/qt_text.h"

namespace kelvane {

namespace {

constexpr double points_per_inch = 72;
constexpr double millimetres_per_inch = 25.4;
/// Width of a bar code's narrow bars: readable at arm's length, and still readable at all.
constexpr double module_mm = 0.33;
constexpr double finest_module_mm = 0.19;
constexpr int tab_columns = 8;

/// The characters of a stretch that begins in `column`: tabs become blanks, other control
/// characters go.
QString printable(std::string_view bytes, int column) {
    QString shown;
    for (const QChar character : to_screen(bytes)) {
        if (character == u'\t') {
            const qsizetype at = column + shown.size();
            shown += QString(tab_columns - at % tab_columns, u' ');
        } else if (character.category() != QChar::Other_Control) {
            shown += character;
        }
    }
    return shown;
}

}  // namespace

bool font_installed(const QString& name) {
    // Where several foundries have a family of the same name, Qt lists "Name [foundry]".
    const QStringList families = QFontDatabase::families();
    return std::any_of(families.begin(), families.end(), [&name](const QString& family) {
        return family.compare(name, Qt::CaseInsensitive) == 0 ||
               family.startsWith(name + " [", Qt::CaseInsensitive);
    });
}

Page_metrics::Page_metrics(QPrinter& printer, const Print_fit& fit)
    : printer_(printer), page_(printer.pageRect(QPrinter::DevicePixel).size()) {
    if (fit.rows <= 0) {
        return;
    }
    const double rows = fit.rows * row_height(fit.font);
    const double columns = fit.columns * column_width(fit.font);
    factor_ = std::min({1.0, page_.height() / rows, page_.width() / columns});
    constexpr double step = 0.99;
    while (fit.columns * column_width(fit.font) > page_.width()) {
        factor_ *= step;
    }
}

QFont Page_metrics::font(const Print_font& asked) const {
    QFont font(asked.name);
    font.setStyleHint(QFont::TypeWriter);
    font.setFixedPitch(true);
    font.setPointSizeF(asked.points * factor_);
    font.setBold(asked.bold);
    font.setItalic(asked.italic);
    font.setKerning(false);
    font.setHintingPreference(QFont::PreferNoHinting);
    if (!QFontInfo(font).fixedPitch() && !font_installed(asked.name)) {
        font.setFamilies({QFontDatabase::systemFont(QFontDatabase::FixedFont).family()});
    }
    return font;
}

double Page_metrics::row_height(const Print_font& font) const {
    return font.points * factor_ * row_per_point * printer_.resolution() / points_per_inch;
}

double Page_metrics::column_width(const Print_font& asked) const {
    constexpr int sample = 100;
    return QFontMetricsF(font(asked), &printer_).horizontalAdvance(QString(sample, u'M')) / sample;
}

int Page_metrics::module_width(const Print_font& font, int columns, std::size_t modules) const {
    const double dots_per_mm = printer_.resolution() / millimetres_per_inch;
    const double room = page_.width() - columns * column_width(font);
    const double width = std::min(room / static_cast<double>(modules), module_mm * dots_per_mm);
    const int dots = static_cast<int>(std::floor(width));
    return dots < finest_module_mm * dots_per_mm ? 0 : dots;
}

bool Page_painter::paint(const Print_page& page) {
    x_ = 0;
    y_ = 0;
    column_ = 0;
    return std::all_of(page.begin(), page.end(), [this](const Print_item& item) {
        return item.bar_rows > 0 ? paint_bars(item) : paint_text(item);
    });
}

bool Page_painter::make_room(double height) {
    if (y_ + height <= metrics_.page().height() + 1) {
        return true;
    }
    y_ = 0;
    return printer_.newPage();
}

void Page_painter::set_font(const Print_font& font) {
    painter_.setFont(metrics_.font(font));
    pitch_ = QFontInfo(painter_.font()).fixedPitch() ? metrics_.column_width(font) : 0;
}

bool Page_painter::paint_text(const Print_item& item) {
    const double row = metrics_.row_height(item.font);
    set_font(item.font);
    std::string_view rest = item.text;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        const QString text = printable(rest.substr(0, end), column_);
        if (!text.trimmed().isEmpty() && !make_room(row)) {
            return false;
        }
        paint_stretch(item.font, text);
        if (end == rest.size()) {
            break;
        }
        rest.remove_prefix(end + 1);
        x_ = 0;
        column_ = 0;
        y_ += row;
    }
    return true;
}

void Page_painter::paint_stretch(const Print_font& font, const QString& text) {
    const QFontMetricsF measures(painter_.font(), &printer_);
    const double width = width_of(text, measures);
    const double room = metrics_.page().width() - x_;
    if (!text.trimmed().isEmpty()) {
        const double leading = metrics_.row_height(font) - measures.ascent() - measures.descent();
        const QPointF base(x_, y_ + leading / 2 + measures.ascent());
        if (width > room) {
            painter_.save();
            painter_.translate(base);
            painter_.scale(room / width, 1);
            painter_.drawText(QPointF(0, 0), text);
            painter_.restore();
        } else {
            painter_.drawText(base, text);
        }
    }
    x_ += std::min(width, room);
    column_ += static_cast<int>(text.size());
}

/// Plain characters of a fixed-pitch font need no shaping to be measured.
double Page_painter::width_of(const QString& text, const QFontMetricsF& measures) const {
    const bool plain = std::all_of(text.begin(), text.end(), [](QChar character) {
        return character >= u' ' && character <= u'~';
    });
    return plain && pitch_ > 0 ? static_cast<double>(text.size()) * pitch_
                               : measures.horizontalAdvance(text);
}

bool Page_painter::paint_bars(const Print_item& item) {
    const std::vector<bool> modules = code39_modules(item.text);
    const double row = metrics_.row_height(item.font);
    const double height = item.bar_rows * row;
    if (!make_room(height)) {
        return false;
    }
    // On paper that a preview's operator made narrower the bars get finer than asked.
    const int width =
        std::max(metrics_.module_width(item.font, item.bar_columns, modules.size()), 1);
    const int left =
        static_cast<int>(std::ceil(item.bar_columns * metrics_.column_width(item.font)));
    constexpr double gap = 0.15;
    for (std::size_t module = 0; module < modules.size(); ++module) {
        if (modules[module]) {
            painter_.fillRect(QRectF(left + static_cast<int>(module) * width, y_ + gap * row, width,
                                     height - 2 * gap * row),
                              Qt::black);
        }
    }
    y_ += height;
    return true;
}

}  // namespace kelvane
