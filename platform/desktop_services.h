#pragma once

#include <ctime>
#include <string>
#include <vector>

#include "platform/result.h"

namespace kelvane {

/// A serial device that is there now.
struct Serial_device {
    std::string path;         ///< that stays with it over restarts, as far as the system has one
    std::string description;  ///< what the device says of itself; may be empty
    std::string node = path;  ///< the system's name for now: "/dev/ttyUSB0"
    /// Characters by which a lone Xoff is seen late, because its chip waits for more and may not be
    /// told otherwise.
    int xoff_delay = 0;
    /// All names that lead to it now beside `node`, also those that another device may have after a
    /// restart.
    std::vector<std::string> names{};
};

/// A library that the program runs with.
struct Library {
    std::string name;
    std::string version;
};

/// Odds and ends of the desktop.
class Desktop_services {
  public:
    virtual ~Desktop_services() = default;
    virtual void beep() = 0;
    /// While it is on, the computer does not fall asleep of itself, as far as the system lets
    /// itself be asked; without a word where it does not. Off at first.
    virtual void keep_awake(bool on) = 0;
    /// Shows `text` beside all windows of the desktop, for an operator who works in another program
    /// meanwhile; nothing while one of this program's windows is in front, or where the desktop
    /// cannot do it.
    virtual void notify(const std::string& text) = 0;
    /// Opens a file with the system's program for its kind.
    virtual void open_file(const std::string& path) = 0;
    /// Now, in the system's short date and time formats.
    [[nodiscard]] virtual std::string date_text() const = 0;
    [[nodiscard]] virtual std::string time_text() const = 0;
    /// A file's stamp in the same formats, date and time with a blank between.
    [[nodiscard]] virtual std::string stamp_text(std::time_t stamp) const = 0;
    /// All arguments joined by one blank, the window system's own taken out.
    [[nodiscard]] virtual std::string command_line() const = 0;
    /// Takes the program directory for this instance, until that ends. Fails when another one, of
    /// this or another user, has it or may have it; the reason is empty when it simply runs, else
    /// it says why that cannot be known, and what to do.
    [[nodiscard]] virtual Result<> claim_program_directory() = 0;
    /// Puts text on the clipboard.
    virtual void copy_text(std::u16string text) = 0;
    /// The clipboard's text, lines ending at LF; empty without one.
    [[nodiscard]] virtual std::u16string copied_text() const = 0;
    /// The serial devices found now, in a stable order.
    [[nodiscard]] virtual std::vector<Serial_device> serial_devices() const = 0;
    /// The libraries that the program has found on this computer.
    [[nodiscard]] virtual std::vector<Library> libraries() const = 0;
    /// Writes `text` as lines to standard error, for whoever has started a job by a command line.
    virtual void tell_standard_error(const std::string& text) = 0;
};

}  // namespace kelvane
