#include "desktop/serial_names.h"

#include <filesystem>

namespace kelvane {

namespace {

namespace fs = std::filesystem;

/// The first of the folder's names that leads to the device; empty without one.
std::string name_of(const fs::path& device, const fs::path& folder) {
    std::string first;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
        const bool leads = fs::equivalent(entry.path(), device, error);
        if (leads && (first.empty() || entry.path().string() < first)) {
            first = entry.path().string();
        }
    }
    return first;
}

}  // namespace

std::string lasting_name(const std::string& node, bool has_serial_number,
                         const std::string& folder) {
    std::string name = has_serial_number ? name_of(node, fs::path(folder) / "by-id") : "";
    if (name.empty()) {
        name = name_of(node, fs::path(folder) / "by-path");
    }
    return name.empty() ? node : name;
}

}  // namespace kelvane
