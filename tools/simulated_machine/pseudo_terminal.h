#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace kelvane::simulated {

/// The machine's end of a pseudo-terminal in raw mode. The other end is the partner's serial port.
/// Closing it looks to the partner like an adapter pulled out.
class Pseudo_terminal {
  public:
    Pseudo_terminal() = default;
    Pseudo_terminal(const Pseudo_terminal&) = delete;
    Pseudo_terminal& operator=(const Pseudo_terminal&) = delete;
    ~Pseudo_terminal() { close(); }

    /// Makes the terminal and, unless the name is empty, a symbolic link to the partner's end. A
    /// link that an earlier machine left is replaced, anything else of that name is left alone and
    /// refused. False with problem() set on failure.
    [[nodiscard]] bool open(const std::string& link);

    /// What open() stumbled over.
    [[nodiscard]] const std::string& problem() const { return problem_; }

    /// The device the partner opens.
    [[nodiscard]] const std::string& partner_path() const { return partner_path_; }

    /// The descriptor, for waiting on it; -1 when closed.
    [[nodiscard]] int descriptor() const { return descriptor_; }

    /// Whether the partner has its end open at this moment.
    [[nodiscard]] bool partner_present() const;

    /// Whether bytes wait to be read; those of a partner that has gone, too.
    [[nodiscard]] bool readable() const;
    /// Reads what is there without waiting; how many bytes, 0 when there are none.
    [[nodiscard]] std::size_t read(std::span<std::uint8_t> into) const;

    /// Writes without waiting; how many bytes were taken.
    [[nodiscard]] std::size_t write(std::span<const std::uint8_t> bytes) const;

    /// Hangs up and removes the link.
    void close();

  private:
    bool fail(const std::string& what);
    bool make_raw();
    bool make_link(const std::string& link);

    int descriptor_ = -1;
    std::string partner_path_;
    std::string link_;
    std::string problem_;
};

}  // namespace kelvane::simulated
