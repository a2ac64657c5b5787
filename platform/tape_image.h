#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace kelvane {

/// True for a file that begins with `sample` when it is a tape image: ASCII characters as they are
/// punched, bit 7 making the parity of every one even, or of every one odd. At most 4096 bytes
/// behind the blank leader are looked at.
///
/// In a tape image practically all bytes without bit 7 have the one parity, and so have practically
/// all bytes with it; a good part of the bytes is of either kind; and without bit 7 they are text.
/// In a text with accented letters, Latin-1 or UTF-8, the plain letters and line ends have both
/// parities, and where a short one has not, it is UTF-8, in which the digits and line ends of a
/// tape image would be parts of no character; an EIA tape has odd parity throughout but is no ASCII
/// text. Blank tape and rub-outs say nothing, and a few damaged characters or a short readable
/// leader change nothing. A file of less than 8 characters is never taken for a tape image.
[[nodiscard]] bool is_tape_image(std::string_view sample);

/// A tape image as text: every character masked to 7 bits, every line end (see `Lines`) CR LF.
[[nodiscard]] std::string tape_image_text(std::string_view image);

/// A program as it is worked on: a tape image as text, every other content byte for byte.
[[nodiscard]] std::string working_copy(std::string content);
/// The same of a shared text: of itself, or of a new one for a tape image.
[[nodiscard]] std::shared_ptr<const std::string> working_copy(
    std::shared_ptr<const std::string> content);

}  // namespace kelvane
