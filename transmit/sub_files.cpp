#include "transmit/sub_files.h"

#include <algorithm>
#include <filesystem>
#include <functional>

#include "platform/basic_text.h"
#include "transmit/scratch_copy.h"

namespace kelvane {

namespace {

constexpr std::uint64_t line_end_length = 2;
constexpr std::string_view end_of_main = "(END OF MAIN PROGRAM)";

std::string beginning_of(const std::string& name) {
    return "(BEGINNING OF SUB FILE " + name + ")";
}

std::string end_of(const std::string& name) {
    return "(END OF SUB FILE " + name + ")";
}

std::uint64_t counted(std::string_view line) {
    return line.size() + line_end_length;
}

struct Text_line {
    std::string_view text;
    std::size_t offset = 0;
};

char line_end_of(std::string_view content) {
    return content.find('\n') == std::string_view::npos ? '\r' : '\n';
}

/// The line at `position`, which moves behind it; no value at the end.
std::optional<Text_line> take_line(std::string_view content, char end, std::size_t& position) {
    const std::size_t start = position;
    while (end == '\n' && position < content.size() && content[position] == '\r') {
        ++position;
    }
    if (position >= content.size()) {
        return std::nullopt;
    }
    const std::size_t first = position;
    const std::size_t last = std::min(content.find(end, first), content.size());
    position = std::min(last + 1, content.size());
    std::string_view text = content.substr(first, last - first);
    while (text.ends_with('\r')) {
        text.remove_suffix(1);
    }
    return Text_line{text, text.empty() ? start : first};
}

/// One spelling for a file, so that a call of itself is seen through "./" and "../".
std::string plain_path(const std::string& path) {
    return std::filesystem::path(path).lexically_normal().string();
}

std::string the_sub_file(const std::string& name) {
    return "The sub-file \"" + name + "\"";
}

}  // namespace

std::string expansion_error_text(const Expansion_error& error) {
    const auto line = static_cast<std::int64_t>(error.line);
    const std::string where = line > 0 ? "Line " + decimal(line) + "\n" : "";
    return error.file + "\n" + where + error.reason;
}

void Sub_file_reader::open(std::string main_copy, std::string real_main,
                           std::string default_directory) {
    main_copy_ = std::move(main_copy);
    real_main_ = std::move(real_main);
    default_directory_ = std::move(default_directory);
    main_ = nullptr;
    main_content_.reset();
    total_ = 0;
    known_.clear();
    begin_again();
}

std::optional<Expansion_error> Sub_file_reader::check() {
    open(main_copy_, real_main_, default_directory_);
    auto content = files_.read(main_copy_);
    if (!content) {
        error_ = {real_main_, 0, "The working copy cannot be read. " + content.reason()};
        return error_;
    }
    main_content_ = std::make_shared<const std::string>(std::move(*content));
    Program_file& main = index(plain_path(real_main_), *main_content_, true);
    chain_.clear();
    measured_.clear();
    if (const auto bytes = measure(main)) {
        main_ = &main;
        total_ = *bytes + (main.calls.empty() ? 0 : counted(end_of_main));
    }
    return error_;
}

Result<std::shared_ptr<const std::string>> Sub_file_reader::sub_content(
    const std::string& path) const {
    auto content = files_.read(path);
    if (!content) {
        return content.failure();
    }
    if (copy_kind(*content) == Copy_kind::converted) {
        content = converted_copy(*content);
    }
    return std::make_shared<const std::string>(std::move(*content));
}

std::string Sub_file_reader::find(const std::string& name, const std::string& caller) const {
    std::vector<std::string> candidates = {name};
    if (!is_absolute_path(name)) {
        candidates = {path_in(folder_of(caller), name), path_in(default_directory_, name)};
    }
    for (const std::string& candidate : candidates) {
        std::string path = plain_path(candidate);
        if (files_.exists(path)) {
            return path;
        }
    }
    return {};
}

Sub_file_reader::Program_file& Sub_file_reader::index(const std::string& path,
                                                      const std::string& content, bool is_main) {
    Program_file& file = known_[path];
    file = {.path = path,
            .length = content.size(),
            .hash = std::hash<std::string>()(content),
            .line_end = line_end_of(content),
            .calls = {}};
    std::size_t position = 0;
    std::size_t number = 0;
    while (const auto line = take_line(content, file.line_end, position)) {
        ++number;
        if (auto call = parse_sub_call(line->text)) {
            file.calls.push_back({line->offset, number, std::move(*call), nullptr});
        } else if (is_main || !left_out_of_sub_file(line->text)) {
            file.own_bytes += counted(line->text);
        }
    }
    return file;
}

Sub_file_reader::Program_file* Sub_file_reader::target_of(const Program_file& caller,
                                                          const Call_site& site) {
    const std::string sub_file = the_sub_file(site.call.name);
    const std::string path = find(site.call.name, caller.path);
    if (path.empty()) {
        fail(caller, site.line, sub_file + " was not found.");
        return nullptr;
    }
    if (const auto found = known_.find(path); found != known_.end()) {
        return &found->second;
    }
    const auto content = sub_content(path);
    if (!content) {
        fail(caller, site.line, sub_file + " cannot be read. " + content.reason());
        return nullptr;
    }
    return &index(path, **content, false);
}

std::optional<std::uint64_t> Sub_file_reader::measure(Program_file& file) {
    const auto key = std::pair<const Program_file*, std::size_t>(&file, chain_.size());
    if (const auto found = measured_.find(key); found != measured_.end()) {
        return found->second;
    }
    chain_.push_back(&file);
    std::uint64_t sum = file.own_bytes;
    for (Call_site& site : file.calls) {
        const auto bytes = measure_call(file, site);
        if (!bytes) {
            return std::nullopt;
        }
        sum += *bytes;
        if (sum > max_expansion) {
            return fail(file, site.line, "The program is too long with its sub-files.");
        }
    }
    chain_.pop_back();
    measured_[key] = sum;
    return sum;
}

std::optional<std::uint64_t> Sub_file_reader::measure_call(const Program_file& caller,
                                                           Call_site& site) {
    if (site.call.repeats == 0) {
        return fail(caller, site.line,
                    "The repeat count must be a whole number from 1 to " +
                        decimal(max_sub_repeats) + ", as in \"(3 TIMES)\".");
    }
    Program_file* target = target_of(caller, site);
    if (target == nullptr) {
        return std::nullopt;
    }
    if (std::find(chain_.begin(), chain_.end(), target) != chain_.end()) {
        return fail(caller, site.line, the_sub_file(site.call.name) + " would call itself.");
    }
    if (chain_.size() > max_sub_depth) {
        return fail(caller, site.line,
                    "Sub-files can be nested at most " +
                        decimal(static_cast<std::int64_t>(max_sub_depth)) + " deep.");
    }
    site.target = target;
    const auto pass = measure(*target);
    if (!pass) {
        return std::nullopt;
    }
    const auto repeats = static_cast<std::uint64_t>(site.call.repeats);
    const std::uint64_t seams =
        counted(beginning_of(site.call.name)) + counted(end_of(site.call.name));
    return *pass > max_expansion / repeats ? max_expansion + 1 : *pass * repeats + seams;
}

std::nullopt_t Sub_file_reader::fail(const Program_file& file, std::size_t line,
                                     std::string reason) {
    error_ = {file.path, line, std::move(reason)};
    return std::nullopt;
}

void Sub_file_reader::begin_again() {
    levels_.clear();
    main_offset_.reset();
    error_.reset();
    if (main_ != nullptr) {
        levels_.push_back({.file = main_, .content = main_content_, .name = {}});
    }
}

bool Sub_file_reader::Get_next_line(int fileno, std::string& line) {
    if (fileno == reset) {
        begin_again();
        return true;
    }
    main_offset_.reset();
    while (!error_ && !levels_.empty()) {
        if (next_of_level(line)) {
            return true;
        }
    }
    return false;
}

bool Sub_file_reader::next_of_level(std::string& line) {
    Level& level = levels_.back();
    const auto next = take_line(*level.content, level.file->line_end, level.position);
    if (!next) {
        return leave_pass(line);
    }
    const auto& calls = level.file->calls;
    const bool is_main = levels_.size() == 1;
    if (level.next_call < calls.size() && calls[level.next_call].offset == next->offset) {
        level.pass_gave_lines = true;
        return enter(calls[level.next_call++], line);
    }
    if (!is_main && left_out_of_sub_file(next->text)) {
        return false;
    }
    if (is_main) {
        main_offset_ = next->offset;
    }
    level.pass_gave_lines = true;
    line = next->text;
    return true;
}

bool Sub_file_reader::enter(const Call_site& site, std::string& line) {
    const Program_file& target = *site.target;
    auto content = sub_content(target.path);
    const std::string sub_file = the_sub_file(site.call.name);
    if (!content) {
        fail(*levels_.back().file, site.line,
             sub_file + " can no longer be read. " + content.reason());
        return false;
    }
    if ((*content)->size() != target.length || std::hash<std::string>()(**content) != target.hash) {
        fail(*levels_.back().file, site.line, sub_file + " has changed since the transfer began.");
        return false;
    }
    levels_.push_back({.file = &target,
                       .content = *std::move(content),
                       .name = site.call.name,
                       .passes_left = site.call.repeats});
    line = beginning_of(site.call.name);
    return true;
}

/// At the end of a level's file: the next pass, or the comment that closes the level. A file that
/// gave no line gives none in any other pass either.
bool Sub_file_reader::leave_pass(std::string& line) {
    Level& level = levels_.back();
    --level.passes_left;
    if (level.passes_left > 0 && level.pass_gave_lines) {
        level.position = 0;
        level.next_call = 0;
        return false;
    }
    const std::string name = std::move(level.name);
    levels_.pop_back();
    if (!levels_.empty()) {
        line = end_of(name);
        return true;
    }
    line = calls_sub_files() ? end_of_main : "";
    return calls_sub_files();
}

}  // namespace kelvane
