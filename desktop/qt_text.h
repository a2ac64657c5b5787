#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace kelvane {

/// What bytes of text mean on the screen. The program's text is bytes; only here it becomes
/// characters.
enum class Text_form {
    latin1,  ///< one byte a character, both ways; for text that goes to a machine
    name,    ///< UTF-8 when the bytes are that, else Latin-1; for file and machine names, messages
};

/// `name` for bytes that are UTF-8 (plain ASCII included), else `latin1`.
Text_form text_form_of(std::string_view bytes);

/// The characters of `bytes`.
QString to_screen(std::string_view bytes, Text_form form = Text_form::name);

/// The bytes of what the operator typed or chose. A character that Latin-1 lacks becomes "?" in
/// that form.
std::string from_screen(const QString& text, Text_form form = Text_form::name);

/// `text` as a tool tip, which is as broad as is usual and takes nothing in it for markup. Empty
/// for an empty text.
QString tool_tip_of(const QString& text);

/// A caption without its access key marks: "&File" is "File", "&&" is "&".
QString without_access_key(const QString& caption);

}  // namespace kelvane
