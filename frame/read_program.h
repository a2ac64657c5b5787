#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "editing/line_index.h"
#include "platform/event_loop.h"
#include "platform/files.h"
#include "platform/task.h"

namespace kelvane {

/// A program that a dialog shows: its text as a send would send it (a tape image decoded, no
/// end-of-file mark), and where its lines are.
class Read_program {
  public:
    /// Reads the file and finds its lines, letting others in. The reason when it cannot be read;
    /// then, as before the first call, the program is empty.
    Task<Result<>> read(Event_loop& loop, const Files& files, std::string path);

    /// The same with the file's content.
    Task<> take(Event_loop& loop, std::string path, std::string content);

    [[nodiscard]] const std::string& path() const { return path_; }
    [[nodiscard]] const std::string& text() const { return text_; }
    /// At least 1.
    [[nodiscard]] std::size_t line_count() const { return lines_.line_count(); }
    /// Offset of the first byte of a line, from 0; the text's length for lines that do not exist.
    [[nodiscard]] std::size_t line_start(std::size_t line) const {
        return lines_.line_start(text_, line);
    }
    /// A row of a list: the line's number, from 1, and its text, cut off where it is very long.
    [[nodiscard]] std::string row(std::size_t line) const;

  private:
    std::string path_;
    std::string text_;
    Line_index lines_;
};

}  // namespace kelvane
