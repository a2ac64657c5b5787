#include "frame/help_form.h"

#include <algorithm>
#include <utility>

namespace kelvane {

namespace {

using Window_and_page = std::pair<std::string_view, std::string_view>;

constexpr Window_and_page pages[] = {
    {"Kelvane_lite_form", help_contents},
    {"configure_IO_lite", "machines"},
    {"Configure_IO_advanced_lite", "machines"},
    {"select_device_form_lite", "machines"},
    {"directories_form_lite", "machines"},
    {"Set_directory_form_lite", "machines"},
    {"Page_layout_form_lite", "listing"},
    {"select_printer", "listing"},
    {"print_preview", "listing"},
    {"message_box", "messages"},
    {"resequence_form_lite", "renumber"},
    {"Line_monitor_form", "line"},
    {"Test_line_form", "line"},
    {"Transfer_log_form", "transfer_log"},
    {"Start_form", "start_from_block"},
    {"Compare_form", "compare"},
    {"Thank_you_form_lite", help_contents},
    {"Help_form", help_contents},
};

}  // namespace

Help_form::Help_form(Window_system& windows) : Form(windows, "Help_form", "Manual") {
    page.plain = true;
    page.set_caption(std::string(help_contents));
}

void Help_form::show_page(std::string_view name) {
    page.set_caption(std::string(name));
    show();
}

std::string_view help_page_of(std::string_view window_name) {
    const auto* found = std::ranges::find(pages, window_name, &Window_and_page::first);
    return found == std::end(pages) ? std::string_view() : found->second;
}

}  // namespace kelvane
