#include "frame/start_form.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "editing/go_to.h"
#include "platform/lines.h"

namespace kelvane {

namespace {

constexpr std::size_t bytes_at_once = std::size_t{1} << 16U;
constexpr std::size_t rows_before = 6;
constexpr std::size_t rows_behind = 12;

/// Shown even when the program has not set them.
constexpr std::array<Modal, 14> essential = {
    Modal::motion,      Modal::plane,       Modal::units, Modal::distance, Modal::feed_mode,
    Modal::work_offset, Modal::radius_comp, Modal::feed,  Modal::speed,    Modal::tool,
    Modal::spindle,     Modal::x,           Modal::y,     Modal::z};

bool is_essential(Modal modal) {
    return std::find(essential.begin(), essential.end(), modal) != essential.end();
}

std::vector<std::string> state_rows(const Modal_state& state) {
    std::vector<std::string> rows;
    for (std::size_t i = 0; i < modal_count; ++i) {
        const auto modal = static_cast<Modal>(i);
        if (!state[modal].word.empty() || is_essential(modal)) {
            rows.push_back(std::string(modal_name(modal)) + ": " + setting_text(state[modal]));
        }
    }
    for (const Other_code& other : state.others) {
        rows.push_back("Known to the machine's maker: " + other.word + ", line " +
                       std::to_string(other.line + 1));
    }
    return rows;
}

std::vector<std::string> warning_rows(const std::vector<Warning>& warnings) {
    std::vector<std::string> rows;
    rows.reserve(warnings.size());
    for (const Warning& warning : warnings) {
        rows.push_back(warning_text(warning));
    }
    return rows;
}

std::string joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += (text.empty() ? "" : "\n") + line;
    }
    return text;
}

}  // namespace

Start_form::Start_form(Platform& platform, const Transfer_control& control,
                       const Shared_state& state)
    : Form(platform.windows, "Start_form", "Send from a block"),
      platform_(platform),
      control_(control),
      state_(state),
      tasks_(platform.loop),
      dialogs_(platform.loop) {
    program_label.plain = true;
    start_hint.plain = true;
    attach_handlers();
}

void Start_form::attach_handlers() {
    Program_button.on_click = [this] {
        if (dialogs_.empty()) {
            dialogs_.start(choose_program());
        }
    };
    Line_txt.on_change = [this] { place_changed(); };
    Blocks_lst.on_mouse_down = [this] {
        Line_txt.set_text(
            std::to_string(first_ + static_cast<std::size_t>(Blocks_lst.selected()) + 1));
    };
    Mill_option.on_click = [this] { place_changed(); };
    Lathe_option.on_click = [this] { place_changed(); };
    Send_button.on_click = [this] { accept(); };
    Cancel_button.on_click = [this] { close(); };
}

Task<std::optional<Start_form::Start>> Start_form::ask(std::string path, std::size_t line) {
    start_.reset();
    load();
    begin_again(read_program(std::move(path), line));
    co_await show_modal();
    co_return std::exchange(start_, std::nullopt);
}

void Start_form::on_unload() {
    tasks_.end_all();
    dialogs_.end_all();
}

/// What was being worked out is no longer asked for.
void Start_form::begin_again(Task<> work) {
    tasks_.end_all();
    Send_button.set_enabled(false);
    tasks_.start(std::move(work));
}

Task<> Start_form::choose_program() {
    platform_.file_dialog.title = caption();
    const auto chosen = co_await platform_.file_dialog.ask_file(File_purpose::open);
    if (chosen) {
        begin_again(read_program(*chosen, 0));
    }
}

Task<> Start_form::read_program(std::string path, std::size_t line) {
    program_label.set_caption(path + "  |  to " + state_.IO_device_name);
    settling_ = true;
    Mill_option.set_value(false);
    Lathe_option.set_value(false);
    Line_txt.set_text(std::to_string(line + 1));
    settling_ = false;
    const auto read = co_await program_.read(platform_.loop, platform_.files, std::move(path));
    if (!read) {
        Blocks_lst.clear();
        show_nothing("The program cannot be read. " + read.reason());
        co_return;
    }
    co_await look_up();
}

void Start_form::place_changed() {
    if (!settling_ && loaded()) {
        begin_again(look_up());
    }
}

Task<> Start_form::look_up() {
    const auto line = co_await wanted_line();
    if (!line) {
        show_nothing(Line_txt.text() + " is not in the program.");
        co_return;
    }
    line_ = *line;
    show_blocks();
    co_await read_start();
}

Task<std::optional<std::size_t>> Start_form::wanted_line() {
    const auto wanted = parse_go_to(Line_txt.text());
    if (!wanted) {
        co_return std::nullopt;
    }
    if (wanted->block.empty()) {
        const bool exists = program_.line_start(wanted->line) < program_.text().size();
        co_return exists ? std::optional(wanted->line) : std::nullopt;
    }
    Find_block find(wanted->block, 0, 0);
    Search_state found = Search_state::running;
    while ((found = find.step(program_.text(), bytes_at_once)) == Search_state::running) {
        co_await platform_.loop.breath();
    }
    co_return found == Search_state::found ? std::optional(find.found_line()) : std::nullopt;
}

void Start_form::show_blocks() {
    first_ = line_ - std::min(line_, rows_before);
    std::vector<std::string> rows;
    for (std::size_t line = first_; line <= line_ + rows_behind; ++line) {
        if (program_.line_start(line) < program_.text().size()) {
            rows.push_back(program_.row(line));
        }
    }
    Blocks_lst.set_items(std::move(rows));
    Blocks_lst.select(static_cast<int>(line_ - first_));
}

std::optional<Machining> Start_form::chosen_machining() const {
    if (Mill_option.value()) {
        return Machining::milling;
    }
    return Lathe_option.value() ? std::optional(Machining::turning) : std::nullopt;
}

Task<> Start_form::read_start() {
    Start_reading reading(line_, chosen_machining());
    while (!reading.step(program_.text(), bytes_at_once)) {
        co_await platform_.loop.breath();
    }
    show_start(reading);
}

void Start_form::show_start(const Start_reading& reading) {
    const Start_proposal proposal = propose_start(reading);
    start_hint.set_caption({});
    Machining_frame.set_visible(!reading.machining_sure() || chosen_machining().has_value());
    Warnings_lst.set_items(warning_rows(proposal.warnings));
    State_lst.set_items(state_rows(reading.before()));
    Lead_in_txt.set_text(joined(proposal.blocks));
    Lead_in_txt.set_enabled(true);
    Send_button.set_enabled(true);
}

void Start_form::show_nothing(std::string why) {
    start_hint.set_caption(std::move(why));
    Warnings_lst.clear();
    State_lst.clear();
    Lead_in_txt.set_text({});
    Lead_in_txt.set_enabled(false);
    Send_button.set_enabled(false);
}

void Start_form::accept() {
    if (!control_.may_start_work()) {
        start_hint.set_caption("A transfer is on: wait for its end, or stop it.");
        return;
    }
    start_ = Start{program_.path(), part()};
    unload();
}

Program_part Start_form::part() const {
    Program_part part;
    for (Lines lead_in(Lead_in_txt.text()); !lead_in.at_end();) {
        part.content += lead_in.take();
        part.content += "\r\n";
        ++part.lead_in_lines;
    }
    part.content += program_.text().substr(program_.line_start(line_));
    part.first_line = line_;
    return part;
}

}  // namespace kelvane
