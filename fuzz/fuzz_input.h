#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace kelvane::fuzz {

/// Takes choices and texts from the front of random bytes. Texts end at a byte of 255, which makes
/// it easy for the fuzzer to move the borders; the last one may hold any byte.
class Fuzz_input {
  public:
    Fuzz_input(const std::uint8_t* data, std::size_t size)
        : rest_(reinterpret_cast<const char*>(data), size) {}

    /// 0..count-1; 0 when nothing is left.
    int choice(int count) {
        if (rest_.empty()) {
            return 0;
        }
        const auto byte = static_cast<unsigned char>(rest_.front());
        rest_.remove_prefix(1);
        return byte % count;
    }
    bool yes() { return choice(2) == 1; }
    std::string_view text() {
        const std::size_t end = std::min(rest_.find('\xff'), rest_.size());
        const std::string_view taken = rest_.substr(0, end);
        rest_.remove_prefix(std::min(end + 1, rest_.size()));
        return taken;
    }
    [[nodiscard]] std::string_view rest() const { return rest_; }

  private:
    std::string_view rest_;
};

/// Ends the run, with the input kept, when something that must always hold does not.
inline void require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}

}  // namespace kelvane::fuzz
