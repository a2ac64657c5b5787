#include "machines/machine_settings.h"

#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <random>

#include "machines/machine_fields.h"
#include "machines/machine_files.h"
#include "machines/port_devices.h"
#include "session/machine_names.h"
#include "support/memory_files.h"

namespace kelvane::testing {
namespace {

constexpr const char* new_machine_file =
    "COM1\r\nBAUD 1\r\n 2\r\n 0\r\n 1\r\n 3\r\n%LFCR\r\n%\r\nYES\r\nYES\r\nNO\r\n5\r\nYES\r\n\r\n"
    "3\r\n\r\n\r\n 0 \r\n0\r\nNO\r\nNO\r\n0\r\n\r\n\r\nFalse\r\n";

/// The settings that `text` brings; `form` says what the bare number of an old file's port means.
MachineSettings settings_of(const std::string& text,
                            Old_port_form form = Old_port_form::list_position) {
    Text_reader reader(text);
    MachineSettings settings;
    read_machine_settings(reader, form, settings);
    return settings;
}

// Reads a file of which one line differs from a new machine's, and writes it again.
TEST(Machine_settings, every_line_is_taken_as_its_form_says) {
    EXPECT_EQ(machine_settings_text(MachineSettings()), new_machine_file);
    const struct {
        int line;
        const char *read, *written;
    } cases[] = {
        {1, "COM128", "COM128"}, {1, "COM 3", "COM3"},
        {1, "3", "COM113"},      {1, "com3", "COM116"},
        {2, "BAUD-2", "BAUD-2"}, {2, "BAUD 9", "BAUD 9"},
        {2, "0", "BAUD 2"},      {2, "7", "BAUD 9"},
        {3, " 1", " 1"},         {4, "3", " 3"},
        {4, "4", " 0"},          {4, "2.5", " 0"},
        {4, "-1", " 0"},         {5, "3 or so", " 3"},
        {5, "nine", " 0"},       {5, "9", " 1"},
        {6, "", " 0"},           {6, "4%", "4%"},
        {6, "4", "4"},           {6, "4 7", "4 7"},
        {6, "47", "-1"},         {6, "4.5", "-1"},
        {7, "<27>%", "<27>%"},   {9, "yes", "NO"},
        {9, "YES ", "NO"},       {12, "", "5"},
        {12, "x", "5"},          {12, "20 each", "20 each"},
        {15, "*10", "*10"},      {15, "*", "*3"},
        {15, "", "3"},           {15, "65", "65"},
        {15, "66", "65"},        {15, "ten", "ten"},
        {18, "1", " 1 "},        {25, "TRUE", "True"},
        {25, "true ", "False"},  {4, "99999999999999999999", " 0"},
    };
    const auto with_line = [](int number, const std::string& text) {
        Text_reader reader((std::string(new_machine_file)));
        Text_writer file;
        std::string line;
        for (int at = 1; reader.line(line); ++at) {
            file.line(at == number ? text : line);
        }
        return file.text();
    };
    for (const auto& c : cases) {
        EXPECT_EQ(machine_settings_text(settings_of(with_line(c.line, c.read))),
                  with_line(c.line, c.written))
            << "line " << c.line << " \"" << c.read << "\"";
    }
}

TEST(Machine_settings, the_document_of_formats_says_what_every_line_is) {
    std::string rows;
    for (int line = 1; const Machine_field& field : machine_fields) {
        rows.append("| ").append(decimal(line++)).append(" | ").append(field.name);
        rows.append(" | ").append(field.form).append(" |\n");
    }
    std::ifstream document(FORMATS_DOCUMENT);
    const std::string text{std::istreambuf_iterator<char>(document), {}};
    EXPECT_THAT(text, ::testing::HasSubstr("|---|---|---|\n" + rows + "\n"));
}

TEST(Machine_settings, a_transfer_counts_old_ports_down_from_four) {
    MachineSettings settings = settings_of("1\n", Old_port_form::from_four);
    EXPECT_EQ(settings.com_port, 3);
    EXPECT_EQ(choice(baud_rates, settings.baud_index), "28800") << "its line is missing";
    settings = settings_of("COM9\nBAUD 10\n", Old_port_form::from_four);
    EXPECT_EQ(settings.com_port, 9);
    EXPECT_EQ(choice(baud_rates, settings.baud_index), "") << "unset";
}

TEST(Machine_settings, what_was_written_reads_back_byte_for_byte) {
    std::mt19937 random(20);
    for (int round = 0; round < 500; ++round) {
        Text_writer file;
        for (std::size_t line = 0; line < machine_fields.size(); ++line) {
            std::string text = round % 2 == 0 ? "<" : decimal(round % 7);
            std::generate_n(std::back_inserter(text), random() % 9,
                            [&] { return static_cast<char>(random() % 256); });
            file.line(one_line(text));
        }
        // A custom end of block that begins with a digit is read as another number, and is none
        // then.
        const std::string written =
            machine_settings_text(settings_of(machine_settings_text(settings_of(file.text()))));
        ASSERT_EQ(machine_settings_text(settings_of(written)), written);
    }
}

TEST(Machine_files, the_list_skips_blank_lines_and_a_delete_takes_every_equal_line) {
    Memory_files files;
    const std::string list = "/kelvane/Editor IO device list";
    EXPECT_THAT(*machine_list_items(files), ::testing::ElementsAre("(default)"));
    files.put(list, "Mill\r\n\r\nLathe\nMill\r\nmill");
    EXPECT_THAT(*read_machine_list(files), ::testing::ElementsAre("Mill", "Lathe", "Mill", "mill"));

    EXPECT_TRUE(remove_from_machine_list(files, "Mill"));
    EXPECT_EQ(files.content(list), "\r\nLathe\r\nmill\r\n");
    EXPECT_THAT(files.names(), ::testing::ElementsAre(list)) << "no scratch file is left";
}

TEST(Machine_names, case_does_not_tell_machines_apart_in_ascii_or_beyond_it) {
    const struct {
        const char *one, *other;
        bool same;
    } cases[] = {
        {"Mill 1", "MILL 1", true},
        {"Mill", "Mill ", false},
        {"FR\xC4SE", "fr\xE4se", true},      // Latin-1
        {"FR\u00C4SE", "fr\u00E4se", true},  // UTF-8
        {"FR\u00C4SE", "fr\xE4se", true},    // a list of one kind, a name of the other
        {"\u0160KODA \u0424\u03A9", "\u0161koda \u0444\u03C9", true},
        {"A\xD7", "A\xF7", false},  // signs, not letters
        {"\u0138", "\u0139", false},
        {"\xC3", "\u00E3", true},  // a broken UTF-8 sequence is Latin-1
    };
    for (const auto& c : cases) {
        EXPECT_EQ(same_machine_name(c.one, c.other), c.same) << c.one << " " << c.other;
    }
}

TEST(Machine_files, a_name_with_a_separator_reaches_no_file) {
    Memory_files files;
    files.folders.insert("/kelvane/Editor COM port settings for ..");
    const std::string name = port_settings_name("../../etc/x");
    EXPECT_EQ(name, "\\Editor COM port settings for ../../etc/x");
    EXPECT_FALSE(machine_file_path(files, name));
    EXPECT_FALSE(write_machine_file(files, name, "x"));
    EXPECT_TRUE(files.names().empty());
    EXPECT_EQ(machine_file_path(files, port_settings_name("..")),
              "/kelvane/Editor COM port settings for ..");
}

TEST(Port_devices, lines_are_found_and_replaced_and_all_others_stay) {
    const struct {
        const char *text, *device, *rewired;  // the device of COM3; COM3 wired to /dev/x
    } cases[] = {
        {"", "/dev/ttyS2", "COM3=/dev/x\r\n"},
        {"COM3=/dev/a\n", "/dev/a", "COM3=/dev/x\r\n"},
        {" com3 = /dev/a b \r\nCOM3=/dev/b\r\n", "/dev/a b", "COM3=/dev/x\r\n"},
        {"# mine\nCOM30=/dev/a", "/dev/ttyS2", "# mine\nCOM30=/dev/a\r\nCOM3=/dev/x\r\n"},
        {"COM3\nCOM3=\n\nCOM4=/d\n", "/dev/ttyS2", "COM3\nCOM3=/dev/x\r\n\nCOM4=/d\n"},
        {"COM3=/dev/id=1\n", "/dev/id=1", "COM3=/dev/x\r\n"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(device_of_port(c.text, 3), c.device) << c.text;
        EXPECT_EQ(text_with_device(c.text, 3, "/dev/x"), c.rewired) << c.text;
    }
    EXPECT_EQ(text_with_device("a\nCOM3=/dev/a\nb", 3, " "), "a\nb");
    EXPECT_EQ(usual_device(std::numeric_limits<int>::min()), "/dev/ttyS-2147483649");
}

}  // namespace
}  // namespace kelvane::testing
