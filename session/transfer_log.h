#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/files.h"
#include "session/transfer_record.h"

namespace kelvane {

/// The largest size of the transfer log in bytes; a longer one loses its older half.
inline constexpr std::uint64_t longest_transfer_log = 500'000;

/// What a line of the transfer log holds, with tabs between.
inline constexpr std::array<const char*, 9> transfer_log_columns = {
    "Time", "Machine", "Direction", "File", "Bytes", "Lines", "Duration", "Result", "Remarks"};
inline constexpr std::size_t transfer_result_column = 7;

/// A line of the log; as many fields as there are columns.
using Logged_transfer = std::vector<std::string>;

/// Adds a line to the transfer log in the program directory.
[[nodiscard]] Result<> add_to_transfer_log(Files& files, const Transfer_record& record);

/// The transfer log, the newest transfer first; nothing when there is no log yet.
[[nodiscard]] Result<std::vector<Logged_transfer>> read_transfer_log(const Files& files);

/// The transfers that have every word of `words`, whichever field it is in and in capitals or not.
[[nodiscard]] std::vector<Logged_transfer> transfers_with(
    const std::vector<Logged_transfer>& transfers, std::string_view words);

/// As a text of comma-separated values with a line of headings, for a spreadsheet.
[[nodiscard]] std::string comma_separated(const std::vector<Logged_transfer>& transfers);

}  // namespace kelvane
