#include "transmit/tape_font.h"

namespace kelvane {

namespace {

constexpr std::size_t tape_rows = 7;
constexpr std::size_t blank_entry = '[' - '.';

/// A row of glyphs, the top edge of the tape first. A blank stands between two glyphs in each line.
using Drawing = std::array<std::string_view, tape_rows>;

constexpr std::array<Drawing, 5> drawings = {{
    // .  /  0  1  2  3  4  5  6  7  8  9
    {{
        "... ...... .###. .#. .###. .###. #...# ##### .###. ##### .###. .###.",
        "... .....# #...# ##. #...# #...# #...# #.... #.... ....# #...# #...#",
        "... ....#. #..## .#. ....# ....# #...# ####. #.... ...#. #...# #...#",
        "... ...#.. #.#.# .#. ...#. ..##. ##### ....# ####. ..#.. .###. .####",
        "... ..#... ##..# .#. ..#.. ....# ....# ....# #...# ..#.. #...# ....#",
        "### .#.... #...# .#. .#... #...# ....# #...# #...# ..#.. #...# ....#",
        "### #..... .###. ### ##### .###. ....# .###. .###. ..#.. .###. .###.",
    }},
    // :  ;  <  =  >  ?  @
    {{
        ".. ... ...# ..... #... .###. .###.",
        "## .## ..## ##### ##.. #...# #...#",
        "## .## .##. ..... .##. ....# #.###",
        ".. ... ##.. ..... ..## ...#. #.#.#",
        "## .## .##. ..... .##. ..#.. #.###",
        "## .## ..## ##### ##.. ..... #....",
        ".. #.. ...# ..... #... ..#.. .###.",
    }},
    // A  B  C  D  E  F  G  H  I  J  K  L  M
    {{
        ".###. ####. .###. ####. ##### ##### .###. #...# ### ..### #...# #.... #...#",
        "#...# #...# #...# #...# #.... #.... #...# #...# .#. ...#. #..## #.... ##.##",
        "#...# #...# #.... #...# #.... #.... #.... #...# .#. ...#. #.##. #.... #.#.#",
        "##### ####. #.... #...# ####. ####. #.### ##### .#. ...#. ###.. #.... #.#.#",
        "#...# #...# #.... #...# #.... #.... #...# #...# .#. ...#. #.##. #.... #...#",
        "#...# #...# #...# #...# #.... #.... #...# #...# .#. #..#. #..## #.... #...#",
        "#...# ####. .###. ####. ##### #.... .###. #...# ### .##.. #...# ##### #...#",
    }},
    // N  O  P  Q  R  S  T  U  V  W  X  Y  Z
    {{
        "#...# .###. ####. .###. ####. .#### ##### #...# #...# #...# #...# #...# #####",
        "#...# #...# #...# #...# #...# #.... ..#.. #...# #...# #...# ##.## #...# ....#",
        "##..# #...# #...# #...# #...# #.... ..#.. #...# #...# #...# .###. .#.#. ...#.",
        "#.#.# #...# ####. #...# ####. .###. ..#.. #...# #...# #.#.# ..#.. ..#.. ..#..",
        "#..## #...# #.... #.#.# #.#.. ....# ..#.. #...# .#.#. #.#.# .###. ..#.. .#...",
        "#...# #...# #.... #..#. #..#. ....# ..#.. #...# .#.#. ##.## ##.## ..#.. #....",
        "#...# .###. #.... .##.# #...# ####. ..#.. .###. ..#.. #...# #...# ..#.. #####",
    }},
    // [  \  -  _
    {{
        "..... ...... .... ....",
        "..... #..... .... ....",
        "..... .#.... #### ....",
        "..... ..#... #### ....",
        "..... ...#.. .... ....",
        "..... ....#. .... ####",
        "..... .....# .... ####",
    }},
}};

constexpr char column_of(const Drawing& drawing, std::size_t at) {
    unsigned holes = 0;
    for (const std::string_view row : drawing) {
        holes = holes << 1U | (row.at(at) == '#' ? 1U : 0U);
    }
    return static_cast<char>(holes);
}

/// Runs in the compiler: a drawing with a line too short or a glyph too wide does not compile.
constexpr std::array<Tape_glyph, tape_font_size> cut_out_glyphs() {
    std::array<Tape_glyph, tape_font_size> font;
    std::size_t entry = 0;
    for (const Drawing& drawing : drawings) {
        for (std::size_t at = 0; at < drawing.front().size(); ++at) {
            if (drawing.front()[at] == ' ') {
                ++entry;
                continue;
            }
            Tape_glyph& glyph = font.at(entry);
            glyph.columns.at(glyph.width++) = column_of(drawing, at);
        }
        ++entry;
    }
    return font;
}

constexpr auto font = cut_out_glyphs();

static_assert(font.back().width > 0);

}  // namespace

const std::array<Tape_glyph, tape_font_size>& tape_font() {
    return font;
}

const Tape_glyph& tape_glyph(char character) {
    if (character >= '.' && character <= '\\') {
        return font.at(static_cast<std::size_t>(character - '.'));
    }
    switch (character) {
        case '-':
            return font[tape_font_size - 2];
        case '_':
            return font[tape_font_size - 1];
        default:
            return font[blank_entry];
    }
}

}  // namespace kelvane
