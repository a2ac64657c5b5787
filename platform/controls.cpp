#include "platform/controls.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kelvane {

namespace {

void run(const std::function<void()>& handler) {
    if (handler) {
        handler();
    }
}

}  // namespace

Control::Control(std::string name, std::string caption)
    : name_(std::move(name)), caption_(std::move(caption)) {}

void Control::changed() const {
    run(observer_);
}

void Control::set_caption(std::string caption) {
    if (caption != caption_) {
        caption_ = std::move(caption);
        changed();
    }
}

void Control::set_enabled(bool enabled) {
    if (enabled != enabled_) {
        enabled_ = enabled;
        changed();
    }
}

void Control::set_visible(bool visible) {
    if (visible != visible_) {
        visible_ = visible;
        changed();
    }
}

void Button::click() {
    if (enabled()) {
        run(on_click);
    }
}

void Check_box::set_value(int value) {
    if (value == value_ || value < 0 || value > 2) {
        return;
    }
    value_ = value;
    changed();
    run(on_click);
}

void Check_box::click() {
    if (enabled()) {
        set_value(value_ == 1 ? 0 : 1);
    }
}

void Option_button::join(Option_button& other) {
    others_.push_back(&other);
    other.others_.push_back(this);
}

void Option_button::set_value(bool value) {
    if (value == value_) {
        return;
    }
    value_ = value;
    changed();
    if (value) {
        for (Option_button* other : others_) {
            other->set_value(false);
        }
        run(on_click);
    }
}

void Option_button::click() {
    if (enabled()) {
        set_value(true);
    }
}

void Text_box::set_text(std::string text) {
    if (text == text_) {
        return;
    }
    text_ = std::move(text);
    changed();
    run(on_change);
}

void Text_box::press_enter() {
    if (enabled()) {
        run(on_enter);
    }
}

void List_box::items_changed() {
    ++revision_;
    changed();
}

void List_box::set_items(std::vector<std::string> items) {
    items_ = std::move(items);
    selected_ = -1;
    items_changed();
}

void List_box::add(std::string item) {
    items_.push_back(std::move(item));
    items_changed();
}

void List_box::remove(int position) {
    if (position < 0 || position >= static_cast<int>(items_.size())) {
        return;
    }
    items_.erase(items_.begin() + position);
    if (selected_ == position) {
        selected_ = -1;
    } else if (selected_ > position) {
        --selected_;
    }
    items_changed();
}

void List_box::clear() {
    set_items({});
}

std::string List_box::selected_text() const {
    return selected_ < 0 ? std::string() : items_[static_cast<std::size_t>(selected_)];
}

void List_box::select(int position) {
    const bool exists = position >= 0 && position < static_cast<int>(items_.size());
    selected_ = exists ? position : -1;
    changed();
}

void List_box::choose(int position) {
    if (!enabled()) {
        return;
    }
    select(position);
    if (selected_ >= 0) {
        run(on_mouse_down);
    }
}

void List_box::double_click() {
    if (enabled() && selected_ >= 0) {
        run(on_double_click);
    }
}

Scroll_bar::Scroll_bar(std::string name, int minimum, int maximum)
    : Control(std::move(name)), minimum_(minimum), maximum_(maximum), value_(minimum) {}

void Scroll_bar::set_value(int value) {
    const int inside = std::clamp(value, minimum_, maximum_);
    if (inside == value_) {
        return;
    }
    value_ = inside;
    changed();
    run(on_change);
}

void Progress_bar::set_value(int percent) {
    const int inside = std::clamp(percent, 0, 100);
    if (inside != value_) {
        value_ = inside;
        changed();
    }
}

void Log_text::add(std::vector<Part> parts) {
    if (!parts.empty()) {
        std::move(parts.begin(), parts.end(), std::back_inserter(parts_));
        changed();
    }
}

void Log_text::replace_last(std::string text) {
    if (text != parts_.back().text) {
        parts_.back().text = std::move(text);
        changed();
    }
}

void Log_text::drop_first(std::uint64_t count) {
    const auto dropped = std::min<std::uint64_t>(count, parts_.size());
    if (dropped > 0) {
        parts_.erase(parts_.begin(), parts_.begin() + static_cast<std::ptrdiff_t>(dropped));
        fallen_ += dropped;
        changed();
    }
}

void Log_text::copy() const {
    run(on_copy);
}

void Progress_bar::set_busy(bool busy) {
    if (std::exchange(busy_, busy) != busy) {
        changed();
    }
}

void State_field::set_view(View view) {
    if (view != view_) {
        view_ = std::move(view);
        changed();
    }
}

void Table::set_columns(std::vector<std::string> columns) {
    columns_ = std::move(columns);
    changed();
}

void Table::set_rows(std::vector<Row> rows) {
    rows_ = std::move(rows);
    changed();
}

void Rich_text::set_text(std::string text) {
    share_text(std::make_shared<const std::string>(std::move(text)));
}

void Rich_text::share_text(std::shared_ptr<const std::string> text) {
    text_ = std::move(text);
    selection_start_ = 0;
    selection_length_ = 0;
    ++revision_;
    changed();
}

void Rich_text::insert(std::string_view text) {
    const std::size_t at = selection_start_;
    std::string all = *text_;
    set_text(std::move(all.insert(at, text)));
    select(at, 0);
}

void Rich_text::select(std::size_t start, std::size_t length) {
    selection_start_ = std::min(start, text_->size());
    selection_length_ = std::min(length, text_->size() - selection_start_);
    changed();
}

}  // namespace kelvane
