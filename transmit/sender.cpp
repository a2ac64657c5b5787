#include "transmit/sender.h"

#include <algorithm>
#include <bitset>
#include <utility>

#include "transmit/control_characters.h"

namespace kelvane {

namespace {

constexpr std::size_t queued_limit = 3;
constexpr int rest_after_xon_ms = 250;
constexpr std::size_t default_chunk = 5;

std::bitset<256> set_of(std::string_view characters) {
    std::bitset<256> set;
    for (const char c : characters) {
        set.set(static_cast<unsigned char>(c));
    }
    return set;
}

}  // namespace

Text_sender::Text_sender(Kelvane_lite_form& window, const Code_tables& tables)
    : window_(window), state_(window.state), port_(window.platform.port), tables_(tables) {}

void Text_sender::sendit(std::string_view block, Tape_code code) {
    if (state_.exclamation_point_delay && block.starts_with('!')) {
        window_.wait_for_timer(window_.exclamation_timer);
        return;
    }
    send_chunks(converted(block, code, state_.TX_Mask));
}

void Text_sender::sendit2(std::string_view text, Tape_code code) {
    send_chunks(converted(text, code, {}));
}

void Text_sender::Wait_for_Xon() {
    static_cast<void>(wait_until_clear(false));
}

std::string Text_sender::converted(std::string_view text, Tape_code code,
                                   std::string_view mask) const {
    const std::bitset<256> masked = set_of(mask);
    const auto column = static_cast<std::size_t>(code);
    std::string bytes;
    bytes.reserve(text.size());
    for (const char c : text) {
        const auto row = static_cast<unsigned char>(c);
        if (!masked[row]) {
            bytes.push_back(static_cast<char>(tables_.code_table[row][column]));
        }
    }
    return bytes;
}

void Text_sender::send_chunks(std::string_view bytes) {
    const std::size_t set =
        state_.HS_loop > 0 ? static_cast<std::size_t>(state_.HS_loop) : default_chunk;
    const std::size_t chunk = state_.Character_delay != 0 ? 1 : set;
    window_.platform.loop.process_pending();
    for (std::size_t at = 0; at < bytes.size(); at += chunk) {
        if (!wait_until_clear(true)) {
            return;
        }
        put(bytes.substr(at, chunk));
        if (state_.Character_delay != 0) {
            window_.wait_for_timer(window_.Timer9);
        }
    }
    if (state_.Block_delay != 0) {
        window_.wait_for_timer(window_.Timer12);
    }
}

void Text_sender::put(std::string_view bytes) {
    port_.output(bytes);
    window_.status.add_bytes(bytes.size());
}

bool Text_sender::wait_until_clear(bool rests_after_xon) {
    while (state_.escape != 1 && port_.is_open()) {
        take_handshakes(rests_after_xon);
        if (state_.escape == 1) {
            break;
        }
        if (!held() && port_.out_buffer_count() < queued_limit) {
            if (!state_.RTShs || port_.cts_holding()) {
                window_.status.set(Activity::sending);
                return true;
            }
            window_.status.set(Activity::held_by_cts);
        }
        window_.platform.loop.process_events();
    }
    return false;
}

// A press of Stop holds the output even when the machine sends an Xon meanwhile: the operator
// paused it, and only the operator lets it go on.
bool Text_sender::held() {
    if (!state_.Xonhs || (state_.Xoff == 0 && state_.Stopped == 0)) {
        return false;
    }
    window_.status.set(state_.Stopped != 0 ? Activity::paused : Activity::held_by_xoff);
    return true;
}

// What has come during a rest counts too, or an Xoff in it would be seen a chunk late.
bool Text_sender::take_handshakes(bool rests_after_xon) {
    bool xon = false;
    bool rested = true;
    while (std::exchange(rested, false)) {
        for (const char byte : port_.input(0)) {
            const char character = without_parity(byte);
            if (character == control::dc3) {
                state_.Xoff = 1;
            } else if (character == control::dc1) {
                state_.Xoff = 0;
                xon = true;
                if (rests_after_xon && state_.escape != 1) {
                    window_.Delay(rest_after_xon_ms);
                    rested = true;
                }
            }
        }
    }
    return xon;
}

}  // namespace kelvane
