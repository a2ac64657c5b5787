#include "frame/transfer_log_form.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/basic_text.h"
#include "platform/save_path.h"
#include "platform/utf8.h"

namespace kelvane {

namespace {

enum Kind : int { all, sent, received, not_done };

constexpr const char* spreadsheet_files = "Comma-separated values|*.csv|All files|*";
constexpr std::size_t direction_column = 2;

bool is_of_kind(const Logged_transfer& transfer, int kind) {
    switch (kind) {
        case sent:
            return transfer[direction_column] == "sent";
        case received:
            return transfer[direction_column] == "received";
        case not_done:
            return transfer[transfer_result_column] != "done";
        default:
            return true;
    }
}

/// With the mark that tells a spreadsheet that it is UTF-8, when that matters.
std::string as_spreadsheet(const std::string& text) {
    const bool ascii = std::all_of(text.begin(), text.end(),
                                   [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    return (ascii ? "" : "\xEF\xBB\xBF") + text;
}

std::string count_text(std::size_t shown, std::size_t of) {
    return (shown == of ? "" : grouped_decimal(shown) + " of ") + grouped_decimal(of) +
           (of == 1 ? " transfer" : " transfers");
}

}  // namespace

Transfer_log_form::Transfer_log_form(Platform& platform)
    : Form(platform.windows, "Transfer_log_form", "Transfer log"),
      platform_(platform),
      tasks_(platform.loop) {
    count_label.plain = true;
    Transfers_tbl.set_columns({transfer_log_columns.begin(), transfer_log_columns.end()});
    Kind_lst.set_items({"All", "Sent", "Received", "Not done"});
    Kind_lst.on_mouse_down = [this] { show_chosen(); };
    Filter_txt.on_change = [this] { show_chosen(); };
    Export_button.on_click = [this] { tasks_.start(save()); };
    Close_button.on_click = [this] { close(); };
}

void Transfer_log_form::on_load() {
    Kind_lst.select(all);
    Filter_txt.set_text("");
    renew();
}

void Transfer_log_form::renew() {
    if (!loaded()) {
        return;
    }
    auto log = read_transfer_log(platform_.files);
    const std::string trouble = log ? std::string() : "The log cannot be read: " + log.reason();
    transfers_ = std::move(log).value_or(std::vector<Logged_transfer>());
    for (Logged_transfer& transfer : transfers_) {
        std::transform(transfer.begin(), transfer.end(), transfer.begin(), as_utf8);
    }
    show_chosen();
    if (!trouble.empty()) {
        count_label.set_caption(trouble);
    }
}

void Transfer_log_form::show_chosen() {
    std::vector<Logged_transfer> chosen = transfers_with(of_chosen_kind(), Filter_txt.text());
    count_label.set_caption(count_text(chosen.size(), transfers_.size()));
    Export_button.set_enabled(!chosen.empty());
    Transfers_tbl.set_rows(std::move(chosen));
}

std::vector<Logged_transfer> Transfer_log_form::of_chosen_kind() const {
    std::vector<Logged_transfer> chosen = transfers_;
    std::erase_if(chosen, [this](const Logged_transfer& transfer) {
        return !is_of_kind(transfer, Kind_lst.selected());
    });
    return chosen;
}

/// What is shown when the button is pressed is what is saved, whatever ends meanwhile.
Task<> Transfer_log_form::save() {
    const std::string text = as_spreadsheet(comma_separated(Transfers_tbl.rows()));
    const Save_request request{"Export the transfer log", spreadsheet_files, ".csv"};
    const std::optional<std::string> path = co_await ask_save_path(platform_, request);
    if (!path) {
        co_return;
    }
    if (const auto saved = platform_.files.replace(*path, text); !saved) {
        const Message failed{"The log could not be saved as " + *path + "\n" + saved.reason(),
                             std::string(product_name), Message_icon::critical};
        co_await platform_.message_box.ask(failed);
    }
}

}  // namespace kelvane
