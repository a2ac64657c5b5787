#include "transmit/scratch_copy.h"

#include <algorithm>
#include <bit>

#include "session/file_names.h"

namespace kelvane {

namespace {

constexpr std::size_t sample_size = 4096;
constexpr std::size_t smallest_tape_image = 8;
/// It would be overwritten or deleted, and it may be all that is left of a receive.
constexpr const char* own_file =
    "\nThe program itself works with this file.\nCopy it under another name first.";

bool has_bare_line_feed(std::string_view text) {
    for (std::size_t at = text.find('\n'); at != std::string_view::npos;
         at = text.find('\n', at + 1)) {
        if (at == 0 || text[at - 1] != '\r') {
            return true;
        }
    }
    return false;
}

bool is_tape_image(std::string_view text) {
    std::ptrdiff_t odd = 0;
    std::ptrdiff_t high = 0;
    std::ptrdiff_t count = 0;
    for (const char c : text) {
        const unsigned byte = static_cast<unsigned char>(c);
        if (byte != 0) {  // blank tape is even in either code
            ++count;
            odd += std::popcount(byte) % 2;
            high += byte >= 0x80 ? 1 : 0;
        }
    }
    const bool one_parity = odd == 0 || odd == count;
    return text.size() >= smallest_tape_image && one_parity && high * 8 >= count && high > 0;
}

bool cannot_copy(Kelvane_lite_form& window, const std::string& title, const std::string& path) {
    window.box("Cannot access file\n" + path, Message_icon::critical, Message_buttons::ok, title);
    return false;
}

}  // namespace

Copy_kind copy_kind(std::string_view sample) {
    sample = sample.substr(0, sample_size);
    const bool converts = has_bare_line_feed(sample) || is_tape_image(sample);
    return converts ? Copy_kind::converted : Copy_kind::plain;
}

std::string converted_copy(std::string_view content) {
    std::string copy;
    copy.reserve(content.size() + content.size() / 16);
    for (const char c : content) {
        const char seven_bits = static_cast<char>(c & 0x7F);
        if (seven_bits == '\n') {
            copy += "\r\n";
        } else if (seven_bits != '\r') {
            copy += seven_bits;
        }
    }
    return copy;
}

bool Make_scratchpad_copy(Kelvane_lite_form& window, const std::string& path) {
    Files& files = window.platform.files;
    const std::string copy = files.program_path(file_names::scratch);
    if (same_path(path, copy)) {
        return cannot_copy(window, "Disk read error", copy + own_file);
    }
    if (!files.remove(copy)) {
        return cannot_copy(window, "Disk write error", copy);
    }
    auto content = files.read(path);
    if (!content) {
        return cannot_copy(window, "Disk read error", path);
    }
    if (copy_kind(*content) == Copy_kind::converted) {
        *content = converted_copy(*content);
    }
    const auto copied = files.replace(copy, *content);
    return copied || cannot_copy(window, "Disk write error", copy);
}

}  // namespace kelvane
