// What a look into the line shows: the log of what crossed it, and what its errors mean.

#include <chrono>
#include <gtest/gtest.h>
#include <string>

#include "session/line_log.h"
#include "session/line_trouble.h"

namespace kelvane {
namespace {

using namespace std::chrono_literals;

TEST(Line_trouble_test, errors_are_told_with_what_can_be_done) {
    const std::tuple<Line_errors, std::size_t, const char*> cases[] = {
        {{0, 0, 0, 0}, 100, ""},
        {{212, 0, 0, 0}, 3400, "212 of 3,400 characters came with framing errors: the baud rate"},
        {{1, 0, 0, 0}, 1, "1 of 1 character came with a framing error: the baud rate is wrong"},
        {{5, 3, 0, 2}, 4, "5 characters came with framing errors: the baud rate is wrong"},
        {{2, 1200, 0, 1}, 1234567, "1,200 of 1,234,567 characters came with parity errors: data"},
        {{0, 0, 0, 1}, 0, "The line was held low 1 time: a plug is loose"},
        {{0, 0, 12, 0}, 90, "The computer was too slow: 12 characters lost."},
        {{0, 7, 1, 0},
         90,
         "7 of 90 characters came with parity errors: data bits or parity "
         "differ\nThe computer was too slow: 1 character lost."}};
    for (const auto& [errors, characters, text] : cases) {
        EXPECT_EQ(line_errors_text(errors, characters).substr(0, std::string(text).size()), text);
        EXPECT_EQ(line_errors_text(errors, characters).empty(), std::string(text).empty());
    }
}

TEST(Line_trouble_test, a_reception_without_text_has_a_likeliest_cause) {
    const std::tuple<std::string, Line_errors, Clock_time, const char*> cases[] = {
        {"", {}, 0s, "No character came"},
        {std::string(9, '\0'), {}, 1s, "Only NULs came"},
        {"\xC1\xC2\xFF", {}, 1s, "Every character came with bit 7 set"},
        {"\xC1\xC2\xFF", {2, 0, 0, 0}, 1s, "2 of 3 characters came with framing errors"},
        {std::string(100, 'x'), {}, 2s, "Few characters came for the time"},
        {std::string(600, 'x'), {}, 2s, "The characters make no text"},
        {"x", {}, 1s, "The characters make no text"}};
    for (const auto& [bytes, errors, span, text] : cases) {
        EXPECT_TRUE(likeliest_cause({bytes, errors, span, 960}).starts_with(text))
            << likeliest_cause({bytes, errors, span, 960});
    }
}

TEST(Line_log_test, bytes_are_readable) {
    const std::pair<std::string, const char*> cases[] = {
        {"", ""},
        {"N1 G0\r\nM30", "N1 G0<CR><LF>\nM30"},
        {"\x11\x11\x13\x7F\x93\x1B", "<DC1><DC1><DC3><DEL><147><ESC>"},
        {std::string(40, '\0') + "%%%%%", "<NUL> x 40 %%%%%"},
        {"\n\n", "<LF>\n<LF>\n"},
        {"\n\n\n\n\n", "<LF> x 5 "},
        {"N1\rN2\n\rN3", "N1<CR>\nN2<LF>\n<CR>N3"}};
    for (const auto& [bytes, text] : cases) {
        EXPECT_EQ(readable_bytes(bytes, Line_form::characters), text);
    }
    const std::string most(90, 'x');
    EXPECT_EQ(readable_bytes(most + "\x80yyyyyyyyN", Line_form::characters),
              most + "<128>\nyyyyyyyyN");
    EXPECT_EQ(readable_bytes("M\xB1\x8D\x93", Line_form::seven_bits), "M1<CR>\n<DC3>");
    EXPECT_EQ(readable_bytes(std::string("N\0\xFF", 3), Line_form::hex), "4E 00 FF");
    EXPECT_EQ(readable_bytes(std::string(17, 'A'), Line_form::hex).substr(42), "41 41\n41");
}

TEST(Line_log_test, what_goes_one_way_without_a_pause_stands_together_with_its_time) {
    Line_log log;
    log.add(5s, Line_direction::from_machine, "\x11");
    log.add(5s + 10ms, Line_direction::to_machine, "N1 G0");
    log.add(5s + 15ms, Line_direction::to_machine, "\r\nN2\r\n");
    log.add(7s, Line_direction::to_machine, "M30");
    EXPECT_EQ(log_text(log, 5s, Line_form::characters),
              "    0.000 < <DC1>\n"
              "    0.010 > N1 G0<CR><LF>\n"
              "          > N2<CR><LF>\n"
              "    2.000 > M30\n");
    log.clear();
    EXPECT_EQ(log_text(log, 5s, Line_form::hex), "");
    EXPECT_EQ(log.position_of_first(), 3U);
}

TEST(Line_log_test, the_last_256_kilobytes_stay) {
    Line_log log;
    std::string all;
    for (int i = 0; i < 5000; ++i) {
        const std::string bytes =
            std::to_string(i) + std::string(static_cast<std::size_t>(i) % 200, 'x');
        all += bytes;
        log.add(Clock_time(i), Line_direction::to_machine, bytes);
    }
    std::string kept;
    for (const auto& stretch : log.stretches()) {
        kept += stretch.bytes;
    }
    EXPECT_LE(kept.size(), Line_log::capacity);
    EXPECT_GT(kept.size(), Line_log::capacity - 1024);
    EXPECT_TRUE(all.ends_with(kept));
}

}  // namespace
}  // namespace kelvane
