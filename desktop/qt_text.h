#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace kelvane {

/// What bytes of text mean on the screen. The program's text is bytes; only here it becomes
/// characters.
enum class Text_form {
    latin1,  ///< one byte a character, both ways; for text that goes to a machine
    name,    ///< UTF-8, each byte that is not as Latin-1; for file and machine names, messages
};

/// The characters of `bytes`.
QString to_screen(std::string_view bytes, Text_form form = Text_form::name);

/// The bytes of what the operator typed or chose. A character that Latin-1 lacks becomes "?" in
/// that form.
std::string from_screen(const QString& text, Text_form form = Text_form::name);

/// `text` as a tool tip, which is as broad as is usual and takes nothing in it for markup. Empty
/// for an empty text.
QString tool_tip_of(const QString& text);

/// `text` with "..." in place of its middle when it has more than `most` characters.
QString cut_in_middle(const QString& text, int most);

/// `text` for a box that wraps lines at blanks only: words that are longer than a line, as paths
/// can be, go on in a new one, if possible behind a "/".
QString with_long_words_broken(const QString& text);

/// A caption without its access key marks: "&File" is "File", "&&" is "&".
QString without_access_key(const QString& caption);

}  // namespace kelvane
