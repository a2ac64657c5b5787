#include "frame/information.h"

#include <string>

namespace kelvane {

Thank_you_form_lite::Thank_you_form_lite(Window_system& windows)
    : Form(windows, "Thank_you_form_lite", "Kelvane Lite") {
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
        body.insert(body.find('\n'), "\n\nVersion " + std::string(program_version()));
    }
    set_caption(std::string(chosen.title));
    text.set_caption(std::move(body));
    show();
}

}  // namespace kelvane
