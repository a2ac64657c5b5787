#include "transmit/sender.h"

#include <algorithm>
#include <utility>

namespace kelvane {

namespace {

constexpr std::size_t queued_limit = 3;
constexpr int rest_after_xon_ms = 250;
constexpr std::size_t default_chunk = 5;

std::size_t chunk_size(const Transfer_options& options) {
    if (options.Character_delay != 0) {
        return 1;
    }
    return options.HS_loop > 0 ? static_cast<std::size_t>(options.HS_loop) : default_chunk;
}

}  // namespace

Text_sender::Text_sender(const Session& session, const Code_tables& tables,
                         const Transfer_options& options, On_stop on_stop)
    : session_(session),
      control_(session.control),
      port_(session.port),
      tables_(tables),
      options_(options),
      on_stop_(on_stop) {}

Task<> Text_sender::sendit(std::string block, Tape_code code) {
    if (options_.exclamation_point_delay && block.starts_with('!')) {
        co_await control_.exclamation_delay();
        co_return;
    }
    std::string bytes = tables_.sent_bytes(block, code, options_.TX_Mask);
    co_await send_chunks(std::move(bytes));
}

Task<> Text_sender::sendit2(std::string text, Tape_code code) {
    std::string bytes = tables_.sent_bytes(text, code);
    co_await send_chunks(std::move(bytes));
}

Task<> Text_sender::send_chunks(std::string bytes) {
    const std::size_t chunk = chunk_size(options_);
    co_await session_.loop.breath();
    for (std::size_t at = 0; at < bytes.size(); at += chunk) {
        const bool clear = co_await wait_until_clear();
        if (!clear) {
            co_return;
        }
        put(std::string_view(bytes).substr(at, chunk));
        if (options_.Character_delay != 0) {
            co_await control_.character_delay();
        }
    }
    if (options_.Block_delay != 0) {
        co_await control_.block_delay();
    }
}

void Text_sender::put(std::string_view bytes) {
    port_.output(bytes);
    handed_over_ += bytes.size();
    control_.count_bytes(bytes.size());
}

bool Text_sender::given_up() const {
    const bool stopped = on_stop_ == On_stop::ends && control_.Stopped() != 0;
    return control_.escape() == 1 || stopped || !port_.is_open();
}

Task<bool> Text_sender::wait_until_clear() {
    while (!given_up()) {
        if (port_.in_buffer_count() > 0) {
            co_await take_handshakes_and_rest();
            continue;
        }
        if (output_is_free()) {
            co_return true;
        }
        co_await session_.loop.next();
    }
    co_return false;
}

// A press of Stop holds the output even when the machine sends an Xon meanwhile: the operator
// paused it, and only the operator lets it go on.
bool Text_sender::output_is_free() {
    if (options_.Xonhs && control_.Stopped() != 0) {
        control_.happens(Transfer_event::stop_holds);
        return false;
    }
    if (options_.Xonhs && control_.Xoff() != 0) {
        control_.happens(Transfer_event::xoff_holds);
        return false;
    }
    if (port_.out_buffer_count() >= queued_limit) {
        return false;
    }
    const bool clear = !options_.RTShs || port_.cts_holding();
    control_.happens(clear ? Transfer_event::output_free : Transfer_event::cts_holds);
    return clear;
}

bool Text_sender::take_handshakes() {
    bool xon = false;
    for (const char byte : port_.input(0)) {
        xon = control_.machine_says(byte) || xon;
    }
    return xon;
}

Task<> Text_sender::take_handshakes_and_rest() {
    const std::string said = port_.input(0);
    for (const char byte : said) {
        if (control_.machine_says(byte) && !given_up()) {
            co_await control_.Delay(rest_after_xon_ms);
        }
    }
}

}  // namespace kelvane
