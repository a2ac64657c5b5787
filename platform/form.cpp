#include "platform/form.h"

#include <utility>

namespace kelvane {

namespace {

struct Hidden_at_end {
    Form& form;
    ~Hidden_at_end() { form.hide(); }
};

}  // namespace

Form::Form(Window_system& windows, std::string name, std::string caption)
    : windows_(windows), name_(std::move(name)), caption_(std::move(caption)) {}

void Form::set_caption(std::string caption) {
    caption_ = std::move(caption);
    windows_.repaint(*this);
}

void Form::load() {
    if (!loaded_) {
        loaded_ = true;
        on_load();
    }
}

void Form::show() {
    load();
    visible_ = loaded_;
    if (visible_) {
        windows_.show(*this, false);
    }
}

Task<> Form::show_modal() {
    load();
    visible_ = loaded_;
    if (visible_) {
        const Hidden_at_end hidden{*this};
        windows_.show(*this, true);
        co_await windows_.wait_while_visible(*this);
    }
}

void Form::hide() {
    if (visible_) {
        visible_ = false;
        windows_.hide(*this);
    }
}

void Form::unload() {
    if (loaded_) {
        loaded_ = false;
        hide();
        on_unload();
    }
}

}  // namespace kelvane
