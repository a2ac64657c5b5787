// Pure functions on text: numbers, fields, tape codes, notation, recognition.

#include <bit>
#include <gtest/gtest.h>

#include "machines/notation.h"
#include "platform/basic_text.h"
#include "platform/files.h"
#include "platform/tape_image.h"
#include "receive/received_code.h"
#include "receive/received_text.h"
#include "receive/reception_doubts.h"
#include "simulated_machine/tape_code.h"
#include "transmit/code_tables.h"

namespace kelvane {
namespace {

constexpr int second_tab = 209;  // shares the cell of TAB, and is what it comes back as

TEST(BasicText, NumbersOfTexts) {
    const std::pair<const char*, double> cases[] = {
        {"", 0},    {"  12", 12}, {"-3.5x", -3.5}, {"+7", 7},    {".5", 0.5}, {"1.2.3", 1.2},
        {"1E5", 1}, {"abc", 0},   {"- 4", 0},      {"12 3", 12}, {"*30", 0},  {"-", 0},
    };
    for (const auto& [text, value] : cases) {
        EXPECT_DOUBLE_EQ(Val(text), value) << text;
    }
    const std::pair<double, int> rounded[] = {{0.5, 0},   {1.5, 2},  {2.5, 2},          {-0.5, 0},
                                              {-1.5, -2}, {2.51, 3}, {1e300, INT32_MAX}};
    for (const auto& [value, whole] : rounded) {
        EXPECT_EQ(CInt(value), whole) << value;
    }
    EXPECT_EQ(Val(std::string(1'000'000, '9')) > 1e200, true);
}

TEST(BasicText, FieldsEndAtCommasAndLineEnds) {
    Text_reader reader(std::string("55, 1 ,\"a, b\" x,\r\nTrue\n#FALSE#\r\n9"));
    int number = 0;
    std::string text;
    bool flag = false;
    EXPECT_TRUE(reader.field_number(number) && number == 55);
    EXPECT_TRUE(reader.field_number(number) && number == 1);
    EXPECT_TRUE(reader.field(text) && text == "a, b");
    EXPECT_TRUE(reader.field(text) && text.empty());
    EXPECT_TRUE(reader.field_flag(flag) && flag);
    EXPECT_TRUE(reader.field_flag(flag) && !flag);
    EXPECT_TRUE(reader.field_number(number) && number == 9);
    EXPECT_TRUE(!reader.field_number(number) && number == 9 && reader.failed());
}

TEST(Files, BackupNamesTakeTheExtensionsPlace) {
    const std::pair<const char*, const char*> cases[] = {
        {"/nc/A.B.NC", "/nc/A.B.bak"},
        {"/nc/PART", "/nc/PART.bak"},
        {"/jobs.2026/O1234", "/jobs.2026/O1234.bak"},
        {"/jobs.2026/.profile", "/jobs.2026/.profile.bak"},
        {"O1.", "O1.bak"},
    };
    for (const auto& [path, backup] : cases) {
        EXPECT_EQ(backup_path(path), backup);
    }
}

// Tables that two people have written from the standard: one that punches, one that reads.
TEST(CodeTables, AgreeWithTheSimulatedMachinesOwn) {
    const Code_tables tables = Build_code_tables();
    for (std::size_t c = 0; c < 256; ++c) {
        const auto byte = static_cast<std::uint8_t>(c);
        for (std::size_t code = 0; code < tape_code_count; ++code) {
            EXPECT_EQ(tables.code_table[c][code],
                      simulated::encode(static_cast<char>(c), simulated::Tape_code(code)))
                << "character " << c << ", code " << code;
        }
        EXPECT_EQ(tables.reverse_code_table[c][receive_ascii],
                  simulated::decode(byte, simulated::Tape_code::none));
        const char eia = simulated::decode(byte, simulated::Tape_code::eia);
        if (eia != '?' && byte != 0) {
            const int expected = eia == '\t' ? second_tab : eia == ']' ? '{' : eia;
            EXPECT_EQ(tables.reverse_code_table[c][receive_eia], expected) << c;
            EXPECT_EQ(tables.reverse_code_table[c & ~0x10U][receive_eia], expected) << c;
        }
    }
}

TEST(Notation, DecodesControlCharacters) {
    const struct {
        const char* text;
        int code;
        std::string characters;
        bool fault;
    } cases[] = {
        {"%LFCR", 0, "%\n\r", false},
        {"%LFCR", 3, "%\n\n", false},
        {"lf", 0, "lf", false},
        {"ESCNUL", 0, std::string("\x1b\0", 2), false},
        {"%<13><10>", 0, "%\r\n", false},
        {"<18>", 3, "\x12", false},
        {"a<b", 0, "a<b", false},
        {"a>b", 0, "a>b", false},
        {"<60>x", 0, "<x", false},
        {"<60><62>", 0, std::string(1, '\0'), false},
        {">a<", 0, "", true},
        {"<62><13>", 0, "", true},
        {"<300>", 0, "", true},
        {"<-1>", 0, "", true},
        {"<>", 0, std::string(1, '\0'), false},
        {"LLFF", 0, "L\nF", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        std::string result;
        EXPECT_EQ(parsit(c.text, static_cast<Tape_code>(c.code), result).has_value(), c.fault);
        EXPECT_EQ(result, c.characters);
    }
    std::string many;
    for (int i = 0; i < 200'000; ++i) {
        many += "<13>";
    }
    std::string result;
    EXPECT_FALSE(parsit(many, Tape_code::ascii_even, result));
    EXPECT_EQ(result.size(), 200'000U);
}

TEST(Recognition, TheFirstByteThatDecidesDecides) {
    const std::string leader(50, '\x80');
    const struct {
        const char* what;
        std::string data;
        int column;  // -1: undecided
        int end_of_block;
    } cases[] = {
        {"empty", "", -1, 0},
        {"LF", "G0\nG1\r", 0, 10},
        {"CR in even parity", "G0\x8d\n", 0, 141},
        {"LF in odd parity", "G0\x8a", 0, 138},
        {"a lone 128 first", "G0\x80\n", 1, 128},
        {"a line end first", "G0\n\x80", 0, 10},
        {"blank leader hides every 128", leader + "G0\x80G1", -1, 0},
        {"blank leader, then ASCII", leader + "G0\r", 0, 13},
        {"49 are no leader", leader.substr(1) + "G0\n", 1, 128},
        {"beyond the sample", std::string(2048, 'A') + "\n", -1, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const auto code = recognise_code(c.data);
        ASSERT_EQ(code.has_value(), c.column >= 0);
        if (code) {
            EXPECT_EQ(code->column, c.column);
            EXPECT_EQ(code->end_of_block, c.end_of_block);
        }
    }
}

/// `text` in 8 bits of even or odd parity.
std::string punched(const std::string& text, int parity) {
    std::string image;
    for (const char c : text) {
        const bool fits = std::popcount(static_cast<unsigned char>(c)) % 2 == parity;
        image += static_cast<char>(fits ? c : c | 0x80);
    }
    return image;
}

TEST(Recognition, WrongParityAndRemovedCharactersAreToldByLine) {
    const Code_tables tables = Build_code_tables();
    const std::string text = "%\r\nO12 (PART)\r\nG0 X100.5\r\nM30\r\n";
    const auto flipped = [](std::string bytes, const std::vector<std::size_t>& at) {
        for (const std::size_t i : at) {
            bytes[i] = static_cast<char>(bytes[i] ^ 4);
        }
        return bytes;
    };
    std::string eia;
    for (const char c : std::string("%\nO1 (A)\nG0X1\nM30\n")) {
        eia += static_cast<char>(tables.code_table[static_cast<unsigned char>(c)][3]);
    }
    const std::string removes = "\n\r\x80\x8a\x8d\x1a";
    const struct {
        const char* what;
        std::string raw;
        Conversion_options options;
        const char* said;
    } cases[] = {
        {"even", punched(text, 0), {}, ""},
        {"a bit flipped",
         flipped(punched(text, 0), {22}),
         {},
         "1 character had wrong parity: line 3"},
        {"odd, two in one line",
         flipped(punched(text, 1), {4, 5, 28}),
         {},
         "3 characters had wrong parity: lines 2, 4"},
        {"a noisy line",
         flipped(punched(text, 0), {15, 16, 17, 18, 19, 20, 21, 22, 23}),
         {},
         "9 characters had wrong parity: line 3"},
        {"no parity to check", flipped(text, {4, 5, 22}), {}, ""},
        {"no parity, and a letter beyond ASCII", "(M\xdcNCHEN)\r\n" + text, {}, ""},
        {"no parity, most of it beyond ASCII",
         "(\xd7\xc5\xd0\xcd\xce\xc2\xc0\xdf \xce\xc1\xd0\xc0\xc1\xce\xd2\xca\xc0 "
         "\xca\xce\xcd\xd2\xd3\xd0\xc0)\r\nG0X1\r\n",
         {},
         ""},
        {"device controls and blank tape in a parity of their own",
         "\x12" + std::string(9, '\0') + punched(text, 1) + "\x93\x7f",
         {},
         ""},
        {"not what is left out before",
         flipped(punched(text, 0), {0, 22}),
         {true, true, "", ""},
         "1 character had wrong parity: line 2"},
        {"nor after", punched(text, 0) + "\x01", {true, true, "", ""}, ""},
        {"EIA", flipped(eia, {3}), {}, "1 character had wrong parity: line 2"},
        {"EIA's bracket",
         eia,
         {false, false, removes, ""},
         "1 character that may mean \"(\" in this tape code was removed: line 2"},
        {"a Ctrl-Z means nothing", text + "\x1a", {false, false, removes, ""}, ""},
    };
    for (const auto& c : cases) {
        const auto code = recognise_code(c.raw);
        ASSERT_TRUE(code) << c.what;
        EXPECT_EQ(doubts_text(doubts_of(c.raw, tables, *code, c.options)), c.said) << c.what;
    }
    Reception_doubts many;
    for (std::size_t line = 1; line <= 15; ++line) {
        many.wrong_parity.insert(many.wrong_parity.end(), 2, line);
    }
    drop_lines(many, 3);
    EXPECT_EQ(doubts_text(many),
              "24 characters had wrong parity: lines 1, 2, 3, 4, 5, 6, 7, 8, 9, 10 and 2 more");
}

TEST(WorkingCopy, only_tape_images_are_converted) {
    const std::string text = "O0001 (PART)\r\nG0X1Y2\r\nM30\r\n";
    const std::string nuls(30, '\0');
    const std::pair<std::string, std::string> images[] = {
        {punched(text, 0), text},
        {punched(text, 1), text},
        {punched("O1\rG0X1\rM30\r", 0), "O1\r\nG0X1\r\nM30\r\n"},
        {punched("O1\nG0X1\n\nM30", 1), "O1\r\nG0X1\r\n\r\nM30"},
        {punched("O1\n\r\rG0X1\n\r\r", 1), "O1\r\nG0X1\r\n"},
        {nuls + punched(text, 0) + "\xFF\xFF" + nuls, nuls + text + "\x7F\x7F" + nuls},
        {std::string(5000, '\0') + punched(text, 1), std::string(5000, '\0') + text},
        {punched(text, 0) + "G1", text + "G1"},  // a damaged character
    };
    for (const auto& [image, converted] : images) {
        EXPECT_EQ(working_copy(image), converted) << converted;
    }
    const std::string others[] = {
        "",
        "\xE9",
        text,
        "O1\nG0\n",
        "N30G00Y90Z60\nM30\n",  // all even, as it happens
        "(pr\xC3\xA9-perforation Z-50)\nG0 X1\n",
        "(pr\xE9-perforation Z-50)\n",
        "N3\nZ50\n(c\xC3\xB4t\xC3\xA9 Z-5)\nG90\n",  // even but for a few, as it happens
        "(t\xC3\xAAte)\nM30\n",
        "(GEH\xC4USE F\xDCR K\xD6RPER)\r\n",
        "(\xD0\xA4\xD0\xA0\xD0\x95\xD0\x97\xD0\x90)\r\nG0\r\n",
        "(" + std::string(76, '\xCD') + ")\r\n(" + std::string(76, '\xCD') + ")\r\n",
        "\x46\x20\x20\x01\x80\x67\x20\x37\x01\x80\x54\x13\x20\x80",  // EIA: O001 G0X1 M30
    };
    for (const std::string& other : others) {
        EXPECT_EQ(working_copy(other), other);
    }
}

}  // namespace
}  // namespace kelvane
