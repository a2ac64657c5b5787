#pragma once

namespace kelvane {

/// How the two ends of a line hold each other back. The numbers are those of the machines' settings
/// files.
enum class Handshake { none = 0, xon_xoff = 1, rts_cts = 2, both = 3 };

constexpr bool uses_xon_xoff(Handshake handshake) {
    return handshake == Handshake::xon_xoff || handshake == Handshake::both;
}

constexpr bool uses_rts_cts(Handshake handshake) {
    return handshake == Handshake::rts_cts || handshake == Handshake::both;
}

}  // namespace kelvane
