#pragma once

#include <string>
#include <string_view>

/// Names of the program's own files, each in the program directory.
namespace kelvane::file_names {

/// Index and name of the selected machine, written at the end of the program.
inline constexpr std::string_view settings = "\\Kelvane Lite settings";
/// Default file directory and five further lines.
inline constexpr std::string_view default_directories = "\\default directories";
/// The file dialog's filter, filter index and the add-extension choice.
inline constexpr std::string_view default_file_types = "\\default file types";
/// The thirteen values of the page layout.
inline constexpr std::string_view page_layout = "\\Editor page layout settings";
/// The printer chosen for listings.
inline constexpr std::string_view printer = "\\Selected printer";
/// Machine names, one a line, without "(default)".
inline constexpr std::string_view machine_list = "\\Editor IO device list";
/// Scratch copy of the machine list while a machine is deleted.
inline constexpr std::string_view machine_list_temporary = "\\Editor IO device list (tempfile)";
/// Settings of "(default)"; `port_settings_name` makes the other machines' names.
inline constexpr std::string_view port_settings = "\\Editor COM port settings";
/// Switchbox select codes of "(default)".
inline constexpr std::string_view switchbox_codes = "\\Switchbox codes";
/// Milliseconds that a "!" line pauses a send; without the file such lines are sent.
inline constexpr std::string_view exclamation_delay = "\\!delay";
/// Working copy of a send or a resequencing, staging file of a receive.
inline constexpr std::string_view scratch = "\\scratchpad data 5";
/// A long working copy until it is complete.
inline constexpr std::string_view scratch_unfinished = "\\scratchpad data 5a";
/// Output of the conversion of a receive, renamed to `scratch` when complete.
inline constexpr std::string_view scratch_converted = "\\scratchpad data 5b";
/// Of which machine, for which file, the staging file holds what has been received and not saved.
inline constexpr std::string_view reception_note = "\\Received data not saved";
/// What has been received and not saved, once a send needs the staging file's name.
inline constexpr std::string_view reception_aside = "\\scratchpad data 5 (received)";
/// Written to a receive's target folder and removed at once, to see whether it can be.
inline constexpr std::string_view write_test = "DummyfilenameforIOtest";
/// Result of a binary receive.
inline constexpr std::string_view received_binary = "\\Received Binary data";
/// Options of the resequencing; the spelling is the name by which existing files are found.
inline constexpr std::string_view resequence_options = "\\Reseqence data";
/// New text of a resequencing, until it is in its place.
inline constexpr std::string_view scratch_resequenced = "\\scratchpad data 6";
/// Which device a COM number is wired to, "COM3=/dev/ttyUSB0" a line.
inline constexpr std::string_view serial_port_devices = "\\Serial port devices";
/// A line a transfer.
inline constexpr std::string_view transfer_log = "\\Transfer log";
/// Programs that were opened last in the editor, a path a line.
inline constexpr std::string_view recent_programs = "\\Recent programs";
/// Changes that were not saved when the program was ended from outside: the path of the program, an
/// LF, the text.
inline constexpr std::string_view unsaved_program = "\\Unsaved program";
/// Where the windows have been, and how large.
inline constexpr std::string_view window_places = "\\Window places";
/// Size of the editor's letters in percent.
inline constexpr std::string_view editor_zoom = "\\Editor zoom";
/// A listing, when the system has no printer.
inline constexpr std::string_view listing = "\\Program listing.pdf";
/// Locked by the instance that runs on the program directory.
inline constexpr std::string_view lock = "\\Kelvane Lite lock";
/// Temporary files that are being written now, of which a killed run leaves some behind.
inline constexpr std::string_view unfinished = "\\Kelvane Lite unfinished files";

/// One of these names, or one made of them, without its backslash.
[[nodiscard]] constexpr std::string_view bare(std::string_view name) {
    return name.substr(1);
}

}  // namespace kelvane::file_names

namespace kelvane {

/// "\Editor COM port settings", or "\Editor COM port settings for NAME": a machine's name becomes
/// part of it as it stands.
std::string port_settings_name(std::string_view machine);
/// "\Switchbox codes", or "\Switchbox codes for NAME".
std::string switchbox_name(std::string_view machine);

}  // namespace kelvane
