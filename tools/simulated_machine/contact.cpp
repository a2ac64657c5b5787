#include "simulated_machine/contact.h"

namespace kelvane::simulated {

Contact::Contact(const Options& options, Line& line)
    : line_(line),
      sequence_(encode(options.switchbox, options.code)),
      start_delay_(options.start_delay) {}

void Contact::select() {
    selected_ = true;
    since_ = Clock::now();
}

bool Contact::update() {
    if (line_.sessions() == session_ || line_.sessions() < first_session_) {
        return false;
    }
    session_ = line_.sessions();
    selected_ = false;
    seen_.clear();
    if (sequence_.empty()) {
        select();
    }
    return true;
}

bool Contact::passes(std::uint8_t byte) {
    if (session_ < first_session_) {
        return false;
    }
    if (selected_) {
        return true;
    }
    seen_ += static_cast<char>(byte);
    if (seen_.ends_with(sequence_)) {
        select();
    }
    return false;
}

}  // namespace kelvane::simulated
