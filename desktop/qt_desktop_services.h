#pragma once

#include <string>

#include "desktop/sleep_inhibitor.h"
#include "platform/desktop_services.h"

namespace kelvane {

/// Sound, dates, arguments, devices, and the lock of the program directory: a second program on the
/// same directory, whoever runs it, would write over the settings of the first.
class Qt_desktop_services : public Desktop_services {
  public:
    /// `program_directory` is where the lock file stands. `command_line` has Qt's own arguments
    /// taken out already.
    Qt_desktop_services(std::string command_line, const std::string& program_directory);
    Qt_desktop_services(const Qt_desktop_services&) = delete;
    Qt_desktop_services& operator=(const Qt_desktop_services&) = delete;
    ~Qt_desktop_services() override;

    void beep() override;
    void keep_awake(bool on) override { sleep_.set(on); }
    void notify(const std::string& text) override;
    void open_file(const std::string& path) override;
    [[nodiscard]] std::string date_text() const override;
    [[nodiscard]] std::string time_text() const override;
    [[nodiscard]] std::string stamp_text(std::time_t stamp) const override;
    [[nodiscard]] std::string command_line() const override { return command_line_; }
    /// The lock is the kernel's and ends with the process, however that ends.
    [[nodiscard]] Result<> claim_program_directory() override;
    void copy_text(std::u16string text) override;
    [[nodiscard]] std::u16string copied_text() const override;
    [[nodiscard]] std::vector<Serial_device> serial_devices() const override;
    [[nodiscard]] std::vector<Library> libraries() const override;
    void tell_standard_error(const std::string& text) override;

  private:
    std::string command_line_;
    std::string lock_path_;
    int lock_ = -1;
    Sleep_inhibitor sleep_;
};

}  // namespace kelvane
