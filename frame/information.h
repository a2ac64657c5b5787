#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>

#include "platform/controls.h"
#include "platform/form.h"
#include "platform/platform.h"

namespace kelvane {

/// One information text of the About menu, as written in docs/manual: headings, lists and
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
/// The day it was built, "2026-11-21"; from the same sources, the same day.
[[nodiscard]] std::string_view build_date();

/// The information box of the About menu.
class Thank_you_form_lite : public Form {
  public:
    explicit Thank_you_form_lite(const Platform& platform);

    /// The text that is shown, in Markdown.
    Label text{"text"};
    Button OK_button{"OK_button", "OK"};
    /// Called with the page of the manual, "send", that a link in the text leads to.
    std::function<void(const std::string&)> on_link;

    /// Shows the text of a menu item, 0..4, without waiting, in place of the one shown now; other
    /// items show nothing.
    void show_information(int item);

  private:
    [[nodiscard]] std::string about_text(std::string body) const;

    const Platform& platform_;
};

}  // namespace kelvane
