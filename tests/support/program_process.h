#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

#include "support/in_time.h"
#include "support/plain_settings.h"

namespace kelvane::testing {

/// Waits, looking every few milliseconds, until `condition` holds; false when it does not within
/// `limit`.
bool wait_until(const std::function<bool()>& condition, std::chrono::milliseconds limit);

/// A program that runs beside the test, at the latest killed with this object.
class Process {
  public:
    /// `environment` is added to the test's own; standard output and errors go to `log`, or are
    /// closed when that is empty. Throws when the program cannot be started.
    Process(const std::vector<std::string>& command, const std::vector<std::string>& environment,
            const std::string& log);
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    ~Process();

    [[nodiscard]] pid_t id() const { return id_; }
    /// True while it has not ended.
    [[nodiscard]] bool runs() { return !exit_within(std::chrono::milliseconds(0)); }
    void signal(int number) const;
    /// Exit status, or the negative number of the signal that ended it; no value while it runs on.
    [[nodiscard]] std::optional<int> exit_within(std::chrono::milliseconds limit);
    /// True while the process has that device or file open.
    [[nodiscard]] bool holds_open(const std::string& path) const;
    /// What one of its streams leads to.
    [[nodiscard]] std::string stream_target(int stream) const;
    /// Time that it has spent on a processor.
    [[nodiscard]] std::chrono::milliseconds processor_time() const;

  private:
    pid_t id_ = 0;
    std::optional<int> status_;
};

/// Environment of a program that may take longer for an orderly end than the limit it sets itself:
/// a test of what it does then must not fail because the disk keeps it waiting.
std::vector<std::string> patient_environment();

/// The machine that a `Program_directory` knows.
inline constexpr const char* test_machine = "Mill";

/// A folder of its own with all that the program keeps, removed at the end.
class Program_directory {
  public:
    Program_directory();
    Program_directory(const Program_directory&) = delete;
    Program_directory& operator=(const Program_directory&) = delete;
    ~Program_directory();

    [[nodiscard]] std::string path(std::string_view name) const;
    void put(std::string_view name, std::string_view content) const;
    /// Empty when there is no such file.
    [[nodiscard]] std::string content(std::string_view name) const;
    [[nodiscard]] bool exists(std::string_view name) const;

    /// Wires COM1 to `device` and describes the machine on it: 115200 baud, one stop bit, no
    /// parity, Xon/Xoff, CR LF, nothing added or left out, a second of silence ends a receive; but
    /// for `lines`.
    void connect(const std::string& device, const Setting_lines& lines = {}) const;

    /// Starts the finished program without a display, by default idle. Message boxes are told in
    /// its log too.
    [[nodiscard]] std::unique_ptr<Process> start(const std::string& job = {},
                                                 std::vector<std::string> environment = {}) const;
    /// The job of a command line for the known machine.
    [[nodiscard]] static std::string job(int event, const std::string& file);

  private:
    std::string folder_;

  public:
    /// Of the programs started from now on; closed streams when empty.
    std::string log;
};

}  // namespace kelvane::testing
