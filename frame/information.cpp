#include "frame/information.h"

#include <algorithm>
#include <string>
#include <utility>

namespace kelvane {

Thank_you_form_lite::Thank_you_form_lite(const Platform& platform)
    : Form(platform.windows, "Thank_you_form_lite", "Kelvane Lite"), platform_(platform) {
    text.plain = true;
    OK_button.on_click = [this] { unload(); };
}

void Thank_you_form_lite::show_information(int item) {
    const auto& texts = information_texts();
    if (item < 0 || item >= static_cast<int>(texts.size())) {
        return;
    }
    const Information_text& chosen = texts[static_cast<std::size_t>(item)];
    std::string body(chosen.body);
    if (item == 0) {
        body = about_text(std::move(body));
    }
    set_caption(std::string(chosen.title));
    text.set_caption(std::move(body));
    show();
}

/// The version under the heading; before what can be read anywhere else, what somebody who is asked
/// for help wants to know.
std::string Thank_you_form_lite::about_text(std::string body) const {
    body.insert(body.find('\n'), "\n\nVersion " + std::string(program_version()) + ", built " +
                                     std::string(build_date()));
    std::string computer = "\n## On this computer\n\n| Library | Version |\n|---|---|\n";
    for (const Library& library : platform_.desktop.libraries()) {
        computer += "| " + library.name + " | " + library.version + " |\n";
    }
    computer += "\nProgram directory:\n\n    " + platform_.files.program_directory() + "\n";
    return body.insert(std::min(body.find("\n## "), body.size()), computer);
}

}  // namespace kelvane
