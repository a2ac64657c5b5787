#pragma once

#include <concepts>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>

namespace kelvane {

/// Why something could not be done.
struct Failure {
    std::string reason;    ///< in the system's words: "No space left on device"
    bool missing = false;  ///< there simply is no such file; it was not unreadable
};

/// A value, or the failure that left none. `Result<>` is for what only succeeds or fails.
template <typename T = void>
class Result {
  public:
    template <std::convertible_to<T> From>
    Result(From value) : content_(std::in_place_index<0>, std::move(value)) {}
    Result(Failure failure) : content_(std::in_place_index<1>, std::move(failure)) {}

    [[nodiscard]] bool has_value() const { return content_.index() == 0; }
    explicit operator bool() const { return has_value(); }

    /// The value, which must be there.
    [[nodiscard]] T& operator*() & { return *std::get_if<0>(&content_); }
    [[nodiscard]] const T& operator*() const& { return *std::get_if<0>(&content_); }
    [[nodiscard]] T&& operator*() && { return std::move(*std::get_if<0>(&content_)); }
    [[nodiscard]] T* operator->() { return std::get_if<0>(&content_); }
    [[nodiscard]] const T* operator->() const { return std::get_if<0>(&content_); }

    template <std::convertible_to<T> Other>
    [[nodiscard]] T value_or(Other&& other) const& {
        return has_value() ? **this : static_cast<T>(std::forward<Other>(other));
    }
    template <std::convertible_to<T> Other>
    [[nodiscard]] T value_or(Other&& other) && {
        return has_value() ? *std::move(*this) : static_cast<T>(std::forward<Other>(other));
    }

    /// The failure, which must be there.
    [[nodiscard]] const Failure& failure() const { return *std::get_if<1>(&content_); }
    /// The failure's reason; empty without one.
    [[nodiscard]] std::string reason() const {
        return has_value() ? std::string() : failure().reason;
    }
    /// True when there is no value because there is no such file.
    [[nodiscard]] bool missing() const { return !has_value() && failure().missing; }
    /// True when there is something that could not be had: not the same as nothing being there.
    [[nodiscard]] bool unreadable() const { return !has_value() && !failure().missing; }

    /// Equal to a value that it holds.
    template <typename Other>
    friend bool operator==(const Result& result, const Other& other) {
        return result.has_value() && *result == other;
    }

  private:
    std::variant<T, Failure> content_;
};

template <>
class Result<void> {
  public:
    Result() = default;
    Result(Failure failure) : content_(std::move(failure)) {}

    [[nodiscard]] bool has_value() const { return content_.index() == 0; }
    explicit operator bool() const { return has_value(); }

    /// The failure, which must be there.
    [[nodiscard]] const Failure& failure() const { return *std::get_if<Failure>(&content_); }
    /// The failure's reason; empty without one.
    [[nodiscard]] std::string reason() const {
        return has_value() ? std::string() : failure().reason;
    }

    /// The next step of several, which is taken only when all before it were done.
    template <std::invocable Step>
    [[nodiscard]] Result and_then(Step step) const {
        return has_value() ? step() : *this;
    }

  private:
    std::variant<std::monostate, Failure> content_;
};

}  // namespace kelvane
