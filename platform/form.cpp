#include "platform/form.h"

#include <utility>

namespace kelvane {

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

void Form::show_modal() {
    load();
    visible_ = loaded_;
    if (visible_) {
        windows_.show(*this, true);
        windows_.wait_while_visible(*this);
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
