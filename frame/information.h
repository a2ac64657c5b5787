#pragma once

#include <array>
#include <string_view>

#include "platform/controls.h"
#include "platform/form.h"

namespace kelvane {

/// One information text of the About menu, as written in docs/information: headings, lists and
/// tables in Markdown, plain ASCII.
struct Information_text {
    std::string_view title;  ///< the text's first heading
    std::string_view body;   ///< the whole text, that heading included
};

/// The texts in the order of the menu: the program itself, getting started, tape codes and
/// handshakes, command line, trouble on the line.
[[nodiscard]] const std::array<Information_text, 5>& information_texts();

/// The program's version, "1.0.0".
[[nodiscard]] std::string_view program_version();

/// The information box of the About menu.
class Thank_you_form_lite : public Form {
  public:
    explicit Thank_you_form_lite(Window_system& windows);

    /// The text that is shown, in Markdown.
    Label text{"text"};
    Button OK_button{"OK_button", "OK"};

    /// Shows the text of a menu item, 0..4, without waiting, in place of the one shown now; other
    /// items show nothing.
    void show_information(int item);
};

}  // namespace kelvane
