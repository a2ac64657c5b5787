#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/result.h"

namespace kelvane {

/// The numeric value of a text: leading blanks skipped, an optional sign, digits with at most one
/// decimal point, up to the first character that does not fit. No number gives 0. There are no
/// exponents ("1E5" is 1). At most 300 digits are looked at, so a line of a megabyte costs nothing.
double Val(std::string_view text);

/// A number in decimal, rounded to a whole one, with one leading blank when it is not negative:
/// " 3", "-2".
std::string Str(std::int64_t number);

/// The form in which a print-to-file statement writes a number: " 3 ", "-2 ".
std::string print_number(std::int64_t number);

/// A whole number without sign blank: "3", "-2".
std::string decimal(std::int64_t number);

/// A count to be read: "1,234,567".
std::string grouped_decimal(std::uint64_t number);

/// Rounds to a whole number, halves to the even neighbour; values beyond the range of `int` are
/// clamped to it, so that a settings file with absurd numbers cannot overflow anything.
int CInt(double number);

/// CInt(Val(text)).
int whole_number(std::string_view text);

/// True for "0" to "9".
bool is_digit(char c);

/// True for the letters of ASCII, capital and small: those of word addresses and commands.
bool is_letter(char c);

/// `text` without the blanks, tabs and line ends at both its ends.
std::string_view trimmed(std::string_view text);

/// ASCII upper and lower case; other bytes stay as they are.
std::string upper_case(std::string_view text);
std::string lower_case(std::string_view text);

/// Reads lines and fields of a text file that is already in memory. It is sticky: after one failure
/// every further read fails and leaves its target alone, so "values read before the failure stay,
/// the others keep their defaults" needs no branches.
class Text_reader {
  public:
    /// `content` without a value (the file could not be read) is a reader that has already failed.
    explicit Text_reader(Result<std::string> content);

    /// Reads the next line (see `Lines`) without its end. False at the end of the text, with
    /// `target` unchanged.
    bool line(std::string& target);

    /// Reads the next field: blanks at both ends skipped, ended by a comma or a line end; in a
    /// field between double quotes, which are no part of it, commas count as text. A quote that is
    /// not closed on its own line is text like any other. False at the end of the text.
    bool field(std::string& target);

    /// As `field`, for texts of which blanks are a part: they are kept at both ends.
    bool text_field(std::string& target);

    /// A line's or field's value as a whole number (CInt of Val).
    bool line_number(int& target);
    bool field_number(int& target);

    /// A field's truth value: TRUE, #TRUE# (any case) or a number other than 0.
    bool field_flag(bool& target);

    [[nodiscard]] bool failed() const { return failed_; }
    [[nodiscard]] bool at_end() const { return failed_ || position_ >= content_.size(); }

  private:
    bool take_field(std::string& target, bool blanks_count);
    void skip_separator();

    std::string content_;
    std::size_t position_ = 0;
    bool failed_ = false;
};

/// Builds the content of a text file line by line, each ended by CR LF.
class Text_writer {
  public:
    Text_writer& line(std::string_view text);
    /// A line that holds `print_number(number)`.
    Text_writer& number_line(std::int64_t number);
    [[nodiscard]] const std::string& text() const { return text_; }

  private:
    std::string text_;
};

/// The bytes of line ends used all over.
inline constexpr std::string_view cr_lf = "\r\n";

}  // namespace kelvane
