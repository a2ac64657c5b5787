#include "support/display.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <sstream>
#include <stdexcept>

namespace kelvane::testing {

Display::Display(const Program_directory& folder)
    : folder_(folder),
      server_(
          // Without -r a key that a busy computer lets go late would be pressed again and again.
          {"/usr/bin/Xvfb", "-displayfd", "1", "-screen", "0", "1280x1024x24", "-nolisten", "tcp",
           "-r"},
          {}, folder.path("display")) {}

// The server tells its number on a line of its own among its messages.
std::string Display::name() const {
    std::istringstream told(folder_.content("display"));
    for (std::string row; std::getline(told, row) && !told.eof();) {
        if (!row.empty() &&
            std::ranges::all_of(row, [](unsigned char c) { return std::isdigit(c) != 0; })) {
            return ":" + row;
        }
    }
    return {};
}

std::vector<std::string> Display::environment() const {
    if (!wait_until([this] { return !name().empty(); }, in_time)) {
        throw std::runtime_error("Xvfb does not start");
    }
    return {"QT_QPA_PLATFORM=xcb", "DISPLAY=" + name()};
}

bool Display::desk(const std::string& command) const {
    const std::string all = "DISPLAY=" + name() + " xdotool " + command + " >/dev/null 2>&1";
    return std::system(all.c_str()) == 0;
}

bool Display::with(const std::string& title, const std::string& command) const {
    return desk("search --onlyvisible --name '^(.* - )?" + title + "$' " + command);
}

bool Display::is_shown(const std::string& title) const {
    return with(title, "");
}

bool Display::put_aside(const std::string& title) const {
    return with(title, "windowmove 900 0");
}

bool Display::shows(const std::string& title) const {
    return wait_until([&] { return is_shown(title); }, in_time);
}

bool Display::closes(const std::string& title) const {
    return wait_until([&] { return !is_shown(title); }, in_time);
}

bool Display::type(const std::string& title, const std::string& keys) const {
    return with(title, "windowfocus") && desk("key --delay 50 " + keys);
}

bool Display::pick(const std::string& menu_letter, int item) const {
    std::string keys = "alt+" + menu_letter;
    for (int down = 0; down < item; ++down) {
        keys += " Down";
    }
    return type("Kelvane Lite", keys + " Return");
}

bool Display::click(int x, int y) const {
    return desk("mousemove " + std::to_string(x) + " " + std::to_string(y) + " click 1");
}

}  // namespace kelvane::testing
