#include "transmit/sub_files.h"

#include <algorithm>
#include <filesystem>
#include <functional>

#include "platform/basic_text.h"
#include "platform/tape_image.h"

namespace kelvane {

namespace {

constexpr std::uint64_t written_line_end = 2;
constexpr std::string_view end_of_main = "(END OF MAIN PROGRAM)";

/// `name` as it can stand in a comment, which a bracket would close early; and a tape mark would
/// end the program.
std::string in_comment(std::string name) {
    std::replace_if(
        name.begin(), name.end(), [](char c) { return c == '(' || c == ')' || c == '%'; }, '-');
    return name;
}

std::string beginning_of(const std::string& name) {
    return "(BEGINNING OF SUB FILE " + in_comment(name) + ")";
}

std::string end_of(const std::string& name) {
    return "(END OF SUB FILE " + in_comment(name) + ")";
}

std::uint64_t counted(std::string_view line) {
    return line.size() + written_line_end;
}

bool is_blank(std::string_view line) {
    constexpr std::string_view nothing_seen("\0 \t", 3);
    return line.find_first_not_of(nothing_seen) == std::string_view::npos;
}

bool is_tape_mark(std::string_view line) {
    return trimmed(line).starts_with('%');
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

void Sub_file_reader::open(const Content& main, std::string real_main,
                           std::string default_directory) {
    default_directory_ = std::move(default_directory);
    main_ = nullptr;
    known_.clear();
    main_file_ = &add_file(plain_path(real_main), main, true);
    real_main_ = std::move(real_main);
    begin_again();
}

bool Sub_file_reader::look_through_main(std::size_t budget) {
    return look_through(*main_file_, *main_file_->kept, budget);
}

std::optional<Expansion_error> Sub_file_reader::check() {
    main_ = nullptr;
    total_ = 0;
    kept_bytes_ = 0;
    std::erase_if(known_, [this](const auto& known) { return &known.second != main_file_; });
    chain_.clear();
    measured_.clear();
    begin_again();
    look_through_main(std::string::npos);
    if (const auto bytes = measure(*main_file_)) {
        main_ = main_file_;
        total_ = *bytes + (main_->calls.empty() ? 0 : counted(end_of_main));
    }
    return error_;
}

Result<Sub_file_reader::Version> Sub_file_reader::version_of(const std::string& path) const {
    const auto length = files_.length(path);
    const auto stamp = files_.stamp(path);
    if (!length || !stamp) {
        return length ? stamp.failure() : length.failure();
    }
    return Version{*length, *stamp};
}

Result<Sub_file_reader::Content> Sub_file_reader::sub_content(const std::string& path) const {
    auto content = files_.read(path);
    if (!content) {
        return content.failure();
    }
    return std::make_shared<const std::string>(working_copy(*std::move(content)));
}

std::string Sub_file_reader::find(const std::string& name, const std::string& caller) const {
    std::vector<std::string> candidates = {name};
    if (!is_absolute_path(name)) {
        candidates = {path_in(folder_of(caller), name)};
        if (!default_directory_.empty()) {
            candidates.push_back(path_in(default_directory_, name));
        }
    }
    for (const std::string& candidate : candidates) {
        std::string path = plain_path(candidate);
        if (files_.exists(path)) {
            return path;
        }
    }
    return {};
}

Sub_file_reader::Program_file& Sub_file_reader::add_file(const std::string& path,
                                                         const Content& content, bool kept) {
    Program_file& file = known_[path];
    file = Program_file();
    file.path = path;
    file.length = content->size();
    file.kept = kept ? content : nullptr;
    return file;
}

/// Finds the calls in the next `budget` bytes of `file`; true when none are left.
bool Sub_file_reader::look_through(Program_file& file, std::string_view content,
                                   std::size_t budget) const {
    const bool is_main = &file == main_file_;
    Lines lines(without_end_mark(content), file.looked_through);
    const std::size_t end = file.looked_through + std::min(budget, content.size());
    while (!lines.at_end() && lines.position() < end) {
        const std::size_t offset = lines.position();
        const std::string_view line = lines.take();
        ++file.lines;
        file.note_closing_mark(line, offset);
        if (auto call = parse_sub_call(line)) {
            file.calls.push_back({offset, file.lines, std::move(*call), nullptr});
        } else if (is_main || !left_out_of_sub_file(line)) {
            file.own_bytes += counted(line);
        }
    }
    file.looked_through = lines.position();
    return lines.at_end();
}

void Sub_file_reader::Program_file::note_closing_mark(std::string_view line, std::size_t offset) {
    if (is_tape_mark(line)) {
        closing_mark = closing_mark.value_or(offset);
    } else if (!is_blank(line)) {
        closing_mark.reset();
    }
}

/// Whether there is room for a called file of that length, which is taken.
bool Sub_file_reader::keeps(std::size_t length) {
    if (length > kept_sub_file_bytes - kept_bytes_) {
        return false;
    }
    kept_bytes_ += length;
    return true;
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
    const auto version = version_of(path);
    const auto content = sub_content(path);
    if (!content) {
        fail(caller, site.line, sub_file + " cannot be read. " + content.reason());
        return nullptr;
    }
    Program_file& file = add_file(path, *content, keeps((*content)->size()));
    file.version = version.value_or(Version());
    file.hash = std::hash<std::string>()(**content);
    look_through(file, **content, std::string::npos);
    return &file;
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
    main_line_ = 0;
    error_.reset();
    main_end_said_ = false;
    if (main_ != nullptr) {
        levels_.emplace_back(*main_, main_->kept, std::string(), 1);
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
    if (level.lines.at_end()) {
        return leave_pass(line);
    }
    const std::size_t offset = level.lines.position();
    const bool is_main = levels_.size() == 1;
    if (is_main && offset == level.file->closing_mark && say_end_of_main(line)) {
        return true;
    }
    const std::string_view text = level.lines.take();
    main_line_ += is_main ? 1 : 0;
    const auto& calls = level.file->calls;
    if (level.next_call < calls.size() && calls[level.next_call].offset == offset) {
        level.pass_gave_lines = true;
        return enter(calls[level.next_call++], line);
    }
    if (!is_main && left_out_of_sub_file(text)) {
        return false;
    }
    if (is_main) {
        main_offset_ = offset;
    }
    level.pass_gave_lines = true;
    line = text;
    return true;
}

bool Sub_file_reader::enter(const Call_site& site, std::string& line) {
    Content content = unchanged_content(site);
    if (content == nullptr) {
        return false;
    }
    levels_.emplace_back(*site.target, std::move(content), site.call.name, site.call.repeats);
    line = beginning_of(site.call.name);
    return true;
}

bool Sub_file_reader::may_have_changed(const Program_file& file) const {
    const auto version = version_of(file.path);
    return version.missing() || (version && !(*version == file.version));
}

/// What the called file holds, read once more unless it is kept; null, with an error, when it is
/// not what it was.
Sub_file_reader::Content Sub_file_reader::unchanged_content(const Call_site& site) {
    const Program_file& target = *site.target;
    if (target.kept != nullptr && !may_have_changed(target)) {
        return target.kept;
    }
    const auto content = sub_content(target.path);
    const std::string sub_file = the_sub_file(site.call.name);
    std::string fault;
    if (!content) {
        fault = " can no longer be read. " + content.reason();
    } else if ((*content)->size() != target.length ||
               std::hash<std::string>()(**content) != target.hash) {
        fault = " has changed since the transfer began.";
    }
    if (!fault.empty()) {
        fail(*levels_.back().file, site.line, sub_file + fault);
        return nullptr;
    }
    return *content;
}

/// At the end of a level's file: the next pass, or the comment that closes the level. A file that
/// gave no line gives none in any other pass either.
bool Sub_file_reader::leave_pass(std::string& line) {
    Level& level = levels_.back();
    --level.passes_left;
    if (level.passes_left > 0 && level.pass_gave_lines) {
        level.lines = level.first_lines();
        level.next_call = 0;
        return false;
    }
    const std::string name = std::move(level.name);
    levels_.pop_back();
    if (!levels_.empty()) {
        line = end_of(name);
        return true;
    }
    return say_end_of_main(line);
}

/// The comment that closes a program with calls; false when it has none or has had its comment.
bool Sub_file_reader::say_end_of_main(std::string& line) {
    if (!calls_sub_files() || main_end_said_) {
        return false;
    }
    main_end_said_ = true;
    line = end_of_main;
    return true;
}

}  // namespace kelvane
