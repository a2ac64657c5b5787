#include "machines/machine_files.h"

#include <algorithm>
#include <utility>

#include "machines/machine_settings.h"
#include "platform/basic_text.h"
#include "session/file_names.h"

namespace kelvane {

namespace {

const Failure no_file_of_this_name{"No file can have this name", true};

}  // namespace

std::string named_port_settings_name(std::string_view machine) {
    return std::string(file_names::port_settings) + " for " + std::string(machine);
}

std::optional<std::string> machine_file_path(const Files& files, std::string_view file_name) {
    if (!can_be_file_name(file_names::bare(file_name))) {
        return std::nullopt;
    }
    return files.program_path(file_name);
}

Result<std::string> read_machine_file(const Files& files, std::string_view file_name) {
    const auto path = machine_file_path(files, file_name);
    return path ? files.read(*path) : no_file_of_this_name;
}

Result<> write_machine_file(Files& files, std::string_view file_name, std::string_view content) {
    const auto path = machine_file_path(files, file_name);
    if (!path) {
        return no_file_of_this_name;
    }
    if (const auto old_content = files.read(*path); old_content.unreadable()) {
        return old_content.failure();
    }
    return files.replace(*path, content);
}

Result<std::vector<std::string>> read_machine_list(const Files& files) {
    auto content = files.read(files.program_path(file_names::machine_list));
    if (content.unreadable()) {
        return content.failure();
    }
    Text_reader reader(std::move(content));
    std::vector<std::string> names;
    std::string line;
    while (reader.line(line)) {
        if (!line.empty()) {
            names.push_back(line);
        }
    }
    return names;
}

Result<std::vector<std::string>> machine_list_items(const Files& files) {
    auto items = read_machine_list(files);
    if (items) {
        items->insert(items->begin(), default_machine);
    }
    return items;
}

int machine_position(const std::vector<std::string>& items, std::string_view machine) {
    const auto found = std::find(items.begin(), items.end(), machine);
    return found == items.end() ? 0 : static_cast<int>(found - items.begin());
}

Result<> write_machine_list(Files& files, const std::vector<std::string>& names) {
    Text_writer writer;
    for (const std::string& name : names) {
        writer.line(one_line(name));
    }
    return files.replace(files.program_path(file_names::machine_list), writer.text());
}

Result<> remove_from_machine_list(Files& files, std::string_view name) {
    const std::string list_path = files.program_path(file_names::machine_list);
    const auto content = files.read(list_path);
    if (!content) {
        return content.missing() ? Result<>() : content.failure();
    }
    Text_reader reader(content);
    Text_writer writer;
    std::string line;
    while (reader.line(line)) {
        if (line != name) {
            writer.line(line);
        }
    }
    const std::string scratch_path = files.program_path(file_names::machine_list_temporary);
    return files.replace(scratch_path, writer.text()).and_then([&] {
        return files.rename(scratch_path, list_path);
    });
}

Result<std::string> read_switchbox_text(const Files& files, std::string_view machine) {
    auto content = read_machine_file(files, switchbox_name(machine));
    if (content.unreadable()) {
        return content.failure();
    }
    Text_reader reader(std::move(content));
    std::string text;
    reader.line(text);
    return text;
}

}  // namespace kelvane
