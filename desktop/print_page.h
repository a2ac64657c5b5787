#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QSizeF>
#include <QString>
#include <string>
#include <vector>

class QPainter;
class QPrinter;

namespace kelvane {

/// Height of a row in heights of its letters; leaves every usual typeface its strokes.
inline constexpr double row_per_point = 1.2;

/// A font as the program asks for it.
struct Print_font {
    QString name;
    int points = 10;
    bool bold = false;
    bool italic = false;
};

/// A stretch of text, or a bar code when `bar_rows` is not 0.
struct Print_item {
    Print_font font;
    std::string text;
    int bar_rows = 0;     ///< height in rows of `font`
    int bar_columns = 0;  ///< indent in columns of `font`
};

/// What is printed on one page, kept until the paper's measures are known.
using Print_page = std::vector<Print_item>;

/// Rows and columns of `font` that every page must take; 0 rows: nothing is asked.
struct Print_fit {
    Print_font font;
    int rows = 0;
    int columns = 0;
};

/// True when a typeface of just this name is installed.
bool font_installed(const QString& name);

/// The measures of a printer's paper, in its dots, and of fonts taken down to `fit`.
class Page_metrics {
  public:
    Page_metrics(QPrinter& printer, const Print_fit& fit);

    [[nodiscard]] QSizeF page() const { return page_; }
    [[nodiscard]] QFont font(const Print_font& font) const;
    [[nodiscard]] double row_height(const Print_font& font) const;
    [[nodiscard]] double column_width(const Print_font& font) const;
    /// Width of a module of a bar code in whole dots; 0 when it is too fine to be read.
    [[nodiscard]] int module_width(const Print_font& font, int columns, std::size_t modules) const;

  private:
    QPrinter& printer_;
    QSizeF page_;
    double factor_ = 1;  ///< less when the fonts had to be taken down
};

/// Paints pages on an active printer.
class Page_painter {
  public:
    Page_painter(QPrinter& printer, QPainter& painter, const Print_fit& fit)
        : printer_(printer), painter_(painter), metrics_(printer, fit) {}

    /// Paints from the top of the sheet; what goes below its bottom is continued on a further one.
    /// False when the printer gives no further sheet.
    [[nodiscard]] bool paint(const Print_page& page);

  private:
    [[nodiscard]] bool paint_text(const Print_item& item);
    void set_font(const Print_font& font);
    [[nodiscard]] bool paint_bars(const Print_item& item);
    void paint_stretch(const Print_font& font, const QString& text);
    [[nodiscard]] double width_of(const QString& text, const QFontMetricsF& measures) const;
    [[nodiscard]] bool make_room(double height);

    QPrinter& printer_;
    QPainter& painter_;
    Page_metrics metrics_;
    double pitch_ = 0;  ///< width of the font's characters; 0 when they differ
    double x_ = 0;
    double y_ = 0;
    int column_ = 0;
};

}  // namespace kelvane
