// The simulated machine as a process, with these tests as the partner on its pseudo-terminal.

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <termios.h>
#include <thread>
#include <unistd.h>

#include "support/program_process.h"

namespace kelvane::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::HasSubstr;

/// The tool at work in a folder of its own, in which "in.nc" lies, and the partner's end of its
/// line. An option "@NAME" is a file of that folder.
class Machine {
  public:
    explicit Machine(std::vector<std::string> options, const std::string& program = {}) {
        folder.put("in.nc", program);
        options.insert(options.begin(), {SIMULATED_MACHINE, "--link", "@line", "--report",
                                         "@report", "--timeout", "100"});
        for (std::string& option : options) {
            option = option.starts_with('@') ? folder.path(option.substr(1)) : option;
        }
        process =
            std::make_unique<Process>(options, std::vector<std::string>{}, folder.path("log"));
    }
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;
    ~Machine() { close_line(); }

    void open_line() {
        ASSERT_TRUE(wait_until([&] { return folder.exists("line"); }, in_time))
            << folder.content("log");
        line_ = ::open(folder.path("line").c_str(), O_RDWR | O_NOCTTY);
        termios settings{};
        ::tcgetattr(line_, &settings);
        ::cfmakeraw(&settings);
        ASSERT_EQ(::tcsetattr(line_, TCSANOW, &settings), 0);
    }
    void close_line() { ::close(std::exchange(line_, -1)); }
    void sends(const std::string& text) const {
        EXPECT_EQ(::write(line_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }
    /// What comes until that many bytes are there, or nothing more comes for the time.
    [[nodiscard]] std::string receives(std::size_t count,
                                       std::chrono::milliseconds patience = in_time) {
        std::string text;
        pollfd state{line_, POLLIN, 0};
        for (char byte = 0; text.size() < count && ::poll(&state, 1, int(patience.count())) > 0;) {
            text.append(&byte, ::read(line_, &byte, 1) == 1 ? 1 : 0);
        }
        return text;
    }
    void expect_end(int status, const std::string& says = {}) {
        EXPECT_EQ(process->exit_within(in_time), status);
        EXPECT_THAT(folder.content("log"), HasSubstr(says));
        EXPECT_FALSE(std::filesystem::is_symlink(folder.path("line")));
    }

    Program_directory folder;
    std::unique_ptr<Process> process;

  private:
    int line_ = -1;
};

const std::string nul(1, '\0');
const std::string short_program = "O12\r\nM30\r\n";
const std::string even_wire = "\xA5\x8D\n\xCF\xB1\xB2\x8D\nM30\x8D\n\xA5";
const std::string xxx(100, '0');

TEST(Simulated_machine, refuses_options_with_status_2_and_says_why) {
    const std::pair<std::vector<std::string>, const char*> cases[] = {
        {{}, "--read or --punch"},
        {{"--punsh", "x"}, "unknown option --punsh"},
        {{"--read"}, "--read needs a value"},
        {{"--read", "x", "--baud", "96oo"}, "--baud: \"96oo\""},
        {{"--read", "x", "--code", "ascii"}, "--code: \"ascii\""},
        {{"--read", "x", "--eob", "<13"}, "--eob: \"<13\""},
        {{"--read", "x", "--buffer", "9", "--high-water", "10"}, "--high-water <= --buffer"},
        {{"--punch", "x", "--raw", "y"}, "belongs to the --read before it"},
    };
    for (const auto& [options, says] : cases) {
        Machine(options).expect_end(2, says);
    }
}

struct Code_case {
    const char* name;
    std::vector<std::string> options;
    std::string wire;
    std::string head = "\x12" + nul;  ///< DC2 and one leader byte
    const char* tail = "\x14";
    const char* xon = "\x11";
};

class Simulated_machine_code : public ::testing::TestWithParam<Code_case> {};

TEST_P(Simulated_machine_code, punches_and_reads_the_same_wire) {
    const auto& [name, options, wire, head, tail, xon] = GetParam();
    std::vector<std::string> all{"--baud", "115200",  "--leader",      "1",      "--trailer",
                                 "0",      "--punch", "@in.nc",        "--read", "@out",
                                 "--raw",  "@wire",   "--keep-session"};
    all.insert(all.end(), options.begin(), options.end());
    Machine machine(all, short_program);
    machine.open_line();
    EXPECT_EQ(machine.receives(head.size() + wire.size() + 2), head + wire + tail + xon);
    machine.sends(wire);
    EXPECT_EQ(machine.receives(1).size(), 1U);
    machine.close_line();
    machine.expect_end(0);
    EXPECT_EQ(machine.folder.content("out"), "%\r\n" + short_program + "%");
    EXPECT_EQ(machine.folder.content("wire"), wire);
}

INSTANTIATE_TEST_SUITE_P(
    codes, Simulated_machine_code,
    ::testing::Values(Code_case{"even", {}, even_wire},
                      Code_case{"odd",
                                {"--code", "odd", "--eob", "lf"},
                                "%\x8AO12\x8A\xCD\xB3\xB0\x8A%",
                                "\x92" + nul,
                                "\x94",
                                "\x91"},
                      Code_case{"none", {"--code", "none", "--eob", "cr"}, "%\rO12\rM30\r%"},
                      Code_case{"eia",
                                {"--code", "eia", "--leader-byte", "128"},
                                "\x0B\x80\x46\x01\x02\x80\x54\x13\x20\x80\x0B",
                                "\x12\x80"},
                      Code_case{"custom",
                                {"--code", "none", "--eob", "<10><13><13>"},
                                "%\n\r\rO12\n\r\rM30\n\r\r%"}),
    [](const auto& code) { return std::string(code.param.name); });

TEST(Simulated_machine, ends_a_read_with_a_status_for_every_reason) {
    const struct {
        std::vector<std::string> options;
        std::string sent;
        int status;
        const char* says;
        std::function<void(Machine&)> then = [](Machine&) {};
    } cases[] = {
        {{"--high-water", "20", "--low-water", "1", "--drain", "1"},
         "\xA5\n" + xxx,
         3,
         "11 characters came after DC3"},
        {{"--buffer", "32", "--drain", "1", "--alarm-after", "99"},
         "\xA5\n" + xxx,
         5,
         "input buffer full at byte 48 at position 33"},
        {{}, "\xA5\nX1", 4, "parity of byte 88 at position 3"},
        {{"--code", "eia"}, "\x0B\x80\x46\x03", 4, "parity of byte 3 at position 4"},
        {{}, "\xA5\n\xCF\xB1\n", 6, "", [](Machine& machine) { machine.close_line(); }},
        {{"--hang-up-after", "5"}, "\xA5\n\xCF\xB1\n", 7, ""},
        {{"--timeout", "1"}, "\xA5\n\xCF\xB1\n", 8, ""},
        {{}, "\xA5\n", 9, "", [](Machine& machine) { machine.process->signal(SIGTERM); }},
    };
    for (const auto& [options, sent, status, says, then] : cases) {
        SCOPED_TRACE(status);
        std::vector<std::string> all{"--read", "@out", "--idle-ms", "0"};
        all.insert(all.end(), options.begin(), options.end());
        Machine machine(all);
        machine.open_line();
        EXPECT_EQ(machine.receives(1), "\x11");
        machine.sends(sent);
        std::this_thread::sleep_for(100ms);
        then(machine);
        machine.expect_end(status, says);
    }
}

TEST(Simulated_machine, punches_at_the_lines_pace_and_stops_when_told) {
    Machine machine({"--baud", "1200", "--bare", "--start-delay", "100", "--punch", "@in.nc"}, xxx);
    const auto opened = std::chrono::steady_clock::now();
    machine.open_line();
    for (int i = 1; i <= 40; ++i) {
        EXPECT_EQ(machine.receives(1), "0");
        EXPECT_GE(std::chrono::steady_clock::now() - opened, 100ms + i * 8333us) << "byte " << i;
    }
    machine.sends("\x93");
    const std::size_t rest_of_step = machine.receives(60, 300ms).size();
    EXPECT_LE(rest_of_step, 20U);
    machine.sends("\x11");
    EXPECT_EQ(machine.receives(60 - rest_of_step).size(), 60 - rest_of_step);
    EXPECT_EQ(machine.receives(1, 500ms), "");
    machine.close_line();
    machine.expect_end(0);
    EXPECT_THAT(machine.folder.content("report"), HasSubstr("xoffs=1\n"));
}

TEST(Simulated_machine, begins_a_job_when_the_line_has_been_opened_again) {
    Machine machine({"--start-delay", "100", "--leader", "1", "--trailer", "0", "--read", "@out",
                     "--punch", "@in.nc"},
                    short_program);
    machine.open_line();
    EXPECT_EQ(machine.receives(1), "\x11");
    machine.sends(even_wire);
    EXPECT_EQ(machine.receives(1), "\x93");
    EXPECT_EQ(machine.receives(1, 500ms), "") << "who has sent may take a while to close";
    machine.close_line();
    std::this_thread::sleep_for(500ms);
    machine.open_line();
    const std::string tape = "\x12" + nul + even_wire + "\x14";
    EXPECT_EQ(machine.receives(tape.size()), tape);
    machine.close_line();
    machine.expect_end(0);
}

TEST(Simulated_machine, a_switchbox_keeps_both_sides_apart_until_selected) {
    Machine machine({"--switchbox", "<18>C2", "--start-delay", "0", "--read", "@out"});
    machine.open_line();
    machine.sends("\x12\xC3\xB1");
    EXPECT_EQ(machine.receives(1, 300ms), "");
    machine.sends("\x12\xC3\xB2");
    EXPECT_EQ(machine.receives(1), "\x11");
    machine.sends(even_wire);
    EXPECT_EQ(machine.receives(1), "\x93");
    machine.close_line();
    machine.expect_end(0);
    EXPECT_EQ(machine.folder.content("out"), "%\r\n" + short_program + "%");
}

}  // namespace
}  // namespace kelvane::testing
