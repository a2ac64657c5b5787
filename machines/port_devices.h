#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The text of "\Serial port devices", which says what device a COM number is wired to. This is the
/// one home of its form: a line a number, "COM3=/dev/ttyUSB0"; case and blanks around the parts do
/// not matter, the first line of a number counts, all other lines are the operator's own and stay.
namespace kelvane {

/// "COM3"
[[nodiscard]] std::string com_name(int com_port);

/// The device of a number's own line; no value when the text has none or an empty one.
[[nodiscard]] std::optional<std::string> wired_device(std::string_view text, int com_port);

/// What a number without a line stands for: "COMn" on Windows, "/dev/ttyS(n-1)" elsewhere.
[[nodiscard]] std::string usual_device(int com_port);

/// The one or the other.
[[nodiscard]] std::string device_of_port(std::string_view text, int com_port);

/// `text` with the number wired to `device`, in place of its old line or as a new one at the end.
/// An empty device takes the line out. Every other byte stays.
[[nodiscard]] std::string text_with_device(std::string_view text, int com_port,
                                           std::string_view device);

}  // namespace kelvane
