#include "desktop/pane_colours.h"

namespace kelvane {

namespace {

struct Kind_colour {
    Word_kind kind;
    QRgb light, dark;
};

constexpr Kind_colour kind_colours[] = {
    {Word_kind::comment, 0xFF226627, 0xFF8FD18F},
    {Word_kind::block_skip, 0xFF9A1F1F, 0xFFFF9E94},
    {Word_kind::block_number, 0xFF5C5C5C, 0xFFB4B4B4},
    {Word_kind::program_number, 0xFF5C5C5C, 0xFFB4B4B4},
    {Word_kind::tape_mark, 0xFF5C5C5C, 0xFFB4B4B4},
    {Word_kind::g_code, 0xFF0B47A1, 0xFF8CB8FF},
    {Word_kind::m_code, 0xFF7B1F94, 0xFFDDB0EC},
    {Word_kind::tool, 0xFF9A3412, 0xFFFFB995},
    {Word_kind::axis, 0xFF005A5C, 0xFF79DAD7},
    {Word_kind::controls, 0xFFA81B1B, 0xFFFF9E94},
};

QColor mixed(const QColor& one, const QColor& other, qreal part) {
    const auto mix = [part](int a, int b) { return static_cast<int>(a + (b - a) * part); };
    return {mix(one.red(), other.red()), mix(one.green(), other.green()),
            mix(one.blue(), other.blue())};
}

}  // namespace

Pane_colours::Pane_colours(const QPalette& palette)
    : text(palette.color(QPalette::Text)),
      background(palette.color(QPalette::Base)),
      selection(palette.color(QPalette::Active, QPalette::Highlight)),
      selected_text(palette.color(QPalette::Active, QPalette::HighlightedText)),
      numbers(mixed(text, background, 0.3)),
      margin(mixed(background, text, 0.06)),
      dark(background.lightness() < text.lightness()) {
    band = QColor::fromRgb(dark ? 0xFF4A3D00 : 0xFFFFEDB3);
    band_mark = QColor::fromRgb(dark ? 0xFFFFC933 : 0xFF8A5A00);
}

QColor Pane_colours::of(Word_kind kind) const {
    for (const Kind_colour& each : kind_colours) {
        if (each.kind == kind) {
            return QColor::fromRgb(dark ? each.dark : each.light);
        }
    }
    return text;
}

}  // namespace kelvane
