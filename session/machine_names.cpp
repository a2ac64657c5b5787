#include "session/machine_names.h"

#include "platform/files.h"
#include "platform/letter_case.h"
#include "session/file_names.h"

namespace kelvane {

namespace {

/// What file systems take, less the ending of the temporary file that a new content is written to.
constexpr std::size_t longest_file_name = 255 - 7;

}  // namespace

bool same_machine_name(std::string_view one, std::string_view other) {
    return small_letters(one) == small_letters(other);
}

std::string fault_of_machine_name(std::string_view name) {
    const std::string settings = port_settings_name(name);
    const std::string_view file = file_names::bare(settings);
    if (!can_be_file_name(file)) {
        return "This cannot be part of a file name.";
    }
    return file.size() > longest_file_name ? "This is too long for a file name." : "";
}

}  // namespace kelvane
