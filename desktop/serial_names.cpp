#include "desktop/serial_names.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <utility>

namespace kelvane {

namespace {

namespace fs = std::filesystem;

std::vector<std::string> names_in(const fs::path& folder, const fs::path& device) {
    std::vector<std::string> names;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
        if (fs::equivalent(entry.path(), device, error)) {
            names.push_back(entry.path().string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<std::string> names_by_id(const std::string& node, const std::string& folder) {
    return names_in(fs::path(folder) / "by-id", node);
}

std::vector<std::string> names_by_path(const std::string& node, const std::string& folder) {
    return names_in(fs::path(folder) / "by-path", node);
}

}  // namespace

std::vector<std::string> names_that_lead_to(const std::string& node, const std::string& folder) {
    std::vector<std::string> names = names_by_id(node, folder);
    std::vector<std::string> more = names_by_path(node, folder);
    std::move(more.begin(), more.end(), std::back_inserter(names));
    return names;
}

std::string lasting_name(const std::string& node, bool has_serial_number,
                         const std::vector<std::string>& twins, const std::string& folder) {
    const bool is_shared = std::any_of(twins.begin(), twins.end(), [&](const std::string& twin) {
        return names_by_id(twin, folder).empty();
    });
    std::vector<std::string> names;
    if (has_serial_number && !is_shared) {
        names = names_by_id(node, folder);
    }
    if (names.empty()) {
        names = names_by_path(node, folder);
    }
    return names.empty() ? node : names.front();
}

}  // namespace kelvane
