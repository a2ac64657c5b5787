#pragma once

namespace kelvane {

/// Device controls of ISO 646, as tape readers and punches use them.
namespace control {

inline constexpr char dc1 = 17;  ///< Xon: reader on
inline constexpr char dc2 = 18;  ///< punch on
inline constexpr char dc3 = 19;  ///< Xoff: reader off
inline constexpr char dc4 = 20;  ///< punch off

}  // namespace control

/// A received byte with its parity bit (bit 7) cleared.
constexpr char without_parity(char byte) {
    return static_cast<char>(byte & 0x7F);
}

}  // namespace kelvane
