#include "frame/file_filter.h"

#include "platform/files.h"

namespace kelvane {

namespace {

std::string_view next_part(std::string_view& rest) {
    const std::size_t bar = rest.find('|');
    const std::string_view part = rest.substr(0, bar);
    rest = bar == std::string_view::npos ? std::string_view() : rest.substr(bar + 1);
    return part;
}

/// ".nc" of "*.nc;*.tap"; empty when the pattern names no one extension.
std::string_view first_extension(std::string_view patterns) {
    const std::string_view pattern = patterns.substr(0, patterns.find(';'));
    const std::size_t dot = pattern.rfind('.');
    if (dot == std::string_view::npos) {
        return {};
    }
    const std::string_view extension = pattern.substr(dot);
    return extension.find_first_of("*?") == std::string_view::npos ? extension : std::string_view();
}

}  // namespace

std::vector<std::pair<std::string, std::string>> filter_pairs(std::string_view filter) {
    std::vector<std::pair<std::string, std::string>> pairs;
    while (!filter.empty()) {
        const std::string_view description = next_part(filter);
        const std::string_view pattern = next_part(filter);
        pairs.emplace_back(description, pattern.empty() ? "*" : pattern);
    }
    return pairs;
}

std::string with_extension(const std::string& path, std::string_view filter) {
    if (name_of(path).find('.') != std::string::npos) {
        return path;
    }
    for (const auto& [description, pattern] : filter_pairs(filter)) {
        if (const std::string_view extension = first_extension(pattern); !extension.empty()) {
            return path + std::string(extension);
        }
    }
    return path;
}

}  // namespace kelvane
