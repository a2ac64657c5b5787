#include "frame/compare_form.h"

#include <algorithm>
#include <utility>

namespace kelvane {

namespace {

constexpr std::size_t rows_around = 3;
constexpr const char* left_out = "...";

std::string side_row(const Read_program& program, std::optional<std::size_t> line, bool differs) {
    std::string row(1, differs ? Compare_form::differs_mark : ' ');
    return line ? row + program.row(*line) : row;
}

std::string count_of(std::size_t differences) {
    return std::to_string(differences) + (differences == 1 ? " difference" : " differences");
}

}  // namespace

Compare_form::Compare_form(Platform& platform)
    : Form(platform.windows, "Compare_form", "Compare programs"),
      platform_(platform),
      tasks_(platform.loop),
      dialogs_(platform.loop) {
    for (Label* label : {&left_label, &right_label, &count_label}) {
        label->plain = true;
    }
    attach_handlers();
}

void Compare_form::attach_handlers() {
    Left_button.on_click = [this] { choose(left_); };
    Right_button.on_click = [this] { choose(right_); };
    Received_button.on_click = [this] {
        right_.source = {received_->path, std::nullopt, ""};
        begin_again();
    };
    chk_ignore_numbers.on_click = [this] { begin_again(); };
    chk_ignore_blanks.on_click = [this] { begin_again(); };
    Left_lst.on_mouse_down = [this] { select_row(Left_lst.selected()); };
    Right_lst.on_mouse_down = [this] { select_row(Right_lst.selected()); };
    Next_button.on_click = [this] { step(true); };
    Previous_button.on_click = [this] { step(false); };
    Close_button.on_click = [this] { close(); };
}

Task<> Compare_form::compare(Compared_program left, std::optional<Received_file> received) {
    load();
    received_ = std::move(received);
    Received_button.set_enabled(received_.has_value());
    const bool other = received_ && (left.content || left.path != received_->path);
    right_.source = {other ? received_->path : std::string(), std::nullopt, ""};
    left_.source = std::move(left);
    begin_again();
    co_await show_modal();
}

void Compare_form::on_unload() {
    tasks_.end_all();
    dialogs_.end_all();
}

void Compare_form::choose(Side& side) {
    if (dialogs_.empty()) {
        dialogs_.start(choose_file(side));
    }
}

Task<> Compare_form::choose_file(Side& side) {
    platform_.file_dialog.title = caption();
    const auto chosen = co_await platform_.file_dialog.ask_file(File_purpose::open);
    if (chosen) {
        side.source = {*chosen, std::nullopt, ""};
        begin_again();
    }
}

void Compare_form::begin_again() {
    if (loaded()) {
        tasks_.end_all();
        tasks_.start(read_and_compare());
    }
}

Task<> Compare_form::read_and_compare() {
    for (auto [side, label] : {std::pair(&left_, &left_label), std::pair(&right_, &right_label)}) {
        label->set_caption(side->source.path + side->source.remark);
    }
    show_nothing("Comparing ...");
    co_await read(left_);
    co_await read(right_);
    if (!left_.trouble.empty() || !right_.trouble.empty()) {
        show_nothing(left_.trouble.empty() ? right_.trouble : left_.trouble);
        co_return;
    }
    const Compare_options options{chk_ignore_numbers.checked(), chk_ignore_blanks.checked()};
    const Comparison comparison = co_await compare_programs(platform_.loop, left_.program.text(),
                                                            right_.program.text(), options);
    show(comparison);
}

Task<> Compare_form::read(Side& side) {
    const auto& [path, content, remark] = side.source;
    side.trouble.clear();
    if (content) {
        co_await side.program.take(platform_.loop, path, *content);
    } else if (path.empty()) {
        side.trouble = "Choose the program to compare with.";
    } else {
        const auto done = co_await side.program.read(platform_.loop, platform_.files, path);
        side.trouble = done ? std::string() : path + " cannot be read. " + done.reason();
    }
}

// Of the rows far from every difference only that they are left out.
void Compare_form::show(const Comparison& comparison) {
    Rows rows;
    for (std::size_t i = 0; i < comparison.differences().size() && rows.left.size() < max_rows;
         ++i) {
        add_difference(comparison, i, rows);
    }
    const std::size_t shown = difference_rows_.size();
    const std::size_t all = comparison.differences().size();
    count_text_ = all == 0 ? "The programs are the same." : count_of(all);
    count_text_ += shown < all ? ", the first " + std::to_string(shown) + " shown" : "";
    Left_lst.set_items(std::move(rows.left));
    Right_lst.set_items(std::move(rows.right));
    if (difference_rows_.empty()) {
        count_label.set_caption(count_text_);
    } else {
        select_row(difference_rows_.front());
    }
}

void Compare_form::add_difference(const Comparison& comparison, std::size_t number, Rows& rows) {
    const std::size_t begin = comparison.row_of(number);
    const Difference& difference = comparison.differences()[number];
    const std::size_t length =
        std::max(difference.left_end - difference.left, difference.right_end - difference.right);
    if (begin > rows.next + rows_around) {
        rows.left.emplace_back(left_out);
        rows.right.emplace_back(left_out);
        rows.next = begin - rows_around;
    }
    difference_rows_.push_back(static_cast<int>(rows.left.size() + begin - rows.next));
    const std::size_t end = std::min(comparison.row_count(), begin + length + rows_around);
    for (; rows.next < end && rows.left.size() < max_rows; ++rows.next) {
        const Compared_row row = comparison.row(rows.next);
        rows.left.push_back(side_row(left_.program, row.left, row.differs));
        rows.right.push_back(side_row(right_.program, row.right, row.differs));
    }
}

void Compare_form::show_nothing(std::string why) {
    Left_lst.clear();
    Right_lst.clear();
    difference_rows_.clear();
    count_text_.clear();
    count_label.set_caption(std::move(why));
}

void Compare_form::step(bool forwards) {
    const auto begin = difference_rows_.begin();
    const auto end = difference_rows_.end();
    const int row = Left_lst.selected();
    if (forwards) {
        const auto next = std::upper_bound(begin, end, row);
        select_row(next == end ? row : *next);
    } else {
        const auto here = std::lower_bound(begin, end, row);
        select_row(here == begin ? row : *(here - 1));
    }
}

/// Both sides at once; the count says which difference that is.
void Compare_form::select_row(int row) {
    Left_lst.select(row);
    Right_lst.select(row);
    const auto behind = std::upper_bound(difference_rows_.begin(), difference_rows_.end(), row);
    const auto number = behind - difference_rows_.begin();
    count_label.set_caption(count_text_ + (number > 0 ? "; number " + std::to_string(number) : ""));
}

}  // namespace kelvane
