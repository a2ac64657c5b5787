#pragma once

#include <string>
#include <string_view>

#include "platform/controls.h"
#include "platform/form.h"

namespace kelvane {

/// The manual, in a window beside all others that stays usable whatever else is open.
class Help_form : public Form {
  public:
    explicit Help_form(Window_system& windows);

    /// Name of the page that is shown: "send" is docs/manual/send.md.
    Label page{"page"};

    /// Shows a page, without waiting, in place of the one shown now.
    void show_page(std::string_view name);
};

/// Name of the page with the contents.
inline constexpr std::string_view help_contents = "index";

/// The page about the window of that name; empty for windows that have none of their own.
[[nodiscard]] std::string_view help_page_of(std::string_view window_name);

}  // namespace kelvane
