// The simulated machine as a process, with these tests as the partner on its pseudo-terminal.

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <poll.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <termios.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using testing::HasSubstr;
namespace fs = std::filesystem;

std::string bytes(std::initializer_list<int> values) {
    return {values.begin(), values.end()};
}

std::string content_of(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Runs the tool in a folder of its own that holds "in.nc", and opens its line as the partner.
class Machine {
  public:
    explicit Machine(std::vector<std::string> arguments, const std::string& program = "") {
        folder_ = fs::temp_directory_path() / ("simulated_machine." + std::to_string(::getpid()));
        fs::create_directories(folder_);
        std::ofstream(path("in.nc"), std::ios::binary) << program;
        arguments.insert(arguments.begin(),
                         {SIMULATED_MACHINE, "--report", path("report"), "--timeout", "15"});
        std::vector<char*> argv;
        argv.reserve(arguments.size() + 1);
        for (std::string& argument : arguments) {
            argv.push_back(argument.data());
        }
        argv.push_back(nullptr);
        spawn(argv.data());
        char byte = 0;
        while (::read(from_machine_, &byte, 1) == 1 && byte != '\n') {
            device_ += byte;
        }
    }
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;
    ~Machine() {
        close_line();
        if (process_ > 0) {
            ::kill(process_, SIGKILL);
            ::waitpid(process_, nullptr, 0);
        }
        ::close(from_machine_);
        ::close(to_machine_);
        fs::remove_all(folder_);
    }

    [[nodiscard]] std::string path(const std::string& name) const {
        return (folder_ / name).string();
    }
    [[nodiscard]] std::string file(const std::string& name) const {
        return content_of(folder_ / name);
    }

    void open_line() {
        line_ = ::open(device_.c_str(), O_RDWR | O_NOCTTY);
        ASSERT_GE(line_, 0) << device_;
        termios settings{};
        ::tcgetattr(line_, &settings);
        ::cfmakeraw(&settings);
        ::tcsetattr(line_, TCSANOW, &settings);
    }
    void close_line() {
        if (line_ >= 0) {
            ::close(line_);
            line_ = -1;
        }
    }
    [[nodiscard]] bool send(const std::string& text) const {
        return ::write(line_, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    }
    // What comes until that many bytes are there, or nothing more comes for the time.
    [[nodiscard]] std::string receive(std::size_t count, std::chrono::milliseconds patience) const {
        std::string text;
        pollfd state{line_, POLLIN, 0};
        while (text.size() < count && ::poll(&state, 1, static_cast<int>(patience.count())) > 0) {
            char byte = 0;
            if (::read(line_, &byte, 1) != 1) {
                break;
            }
            text += byte;
        }
        return text;
    }
    void order(const std::string& line) const {
        EXPECT_EQ(::write(to_machine_, line.data(), line.size()),
                  static_cast<ssize_t>(line.size()));
    }
    void signal(int number) const { ::kill(process_, number); }

    [[nodiscard]] int exit_status() {
        int status = 0;
        ::waitpid(process_, &status, 0);
        process_ = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    [[nodiscard]] std::string report(const std::string& key) const {
        const std::string text = "\n" + file("report");
        const std::size_t at = text.find("\n" + key + "=");
        const std::size_t from = at + key.size() + 2;
        return at == std::string::npos ? "" : text.substr(from, text.find('\n', from) - from);
    }

  private:
    void spawn(char** argv) {
        int out[2] = {};
        int in[2] = {};
        ASSERT_EQ(::pipe2(out, O_CLOEXEC), 0);
        ASSERT_EQ(::pipe2(in, O_CLOEXEC), 0);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, in[0], 0);
        posix_spawn_file_actions_adddup2(&actions, out[1], 1);
        posix_spawn_file_actions_addopen(&actions, 2, path("messages").c_str(),
                                         O_WRONLY | O_CREAT | O_TRUNC, 0600);
        posix_spawn_file_actions_addchdir_np(&actions, folder_.c_str());
        ASSERT_EQ(::posix_spawn(&process_, argv[0], &actions, nullptr, argv, environ), 0);
        posix_spawn_file_actions_destroy(&actions);
        ::close(out[1]);
        ::close(in[0]);
        from_machine_ = out[0];
        to_machine_ = in[1];
    }

    fs::path folder_;
    pid_t process_ = 0;
    int from_machine_ = -1;
    int to_machine_ = -1;
    int line_ = -1;
    std::string device_;
};

const std::string short_program = "O12\r\nM30\r\n";
const std::string even_wire = "\xA5\x8D\n\xCF\xB1\xB2\x8D\nM30\x8D\n\xA5";

TEST(Simulated_machine_options, refuses_with_status_2_and_says_why) {
    const struct {
        std::vector<std::string> arguments;
        const char* says;
    } cases[] = {
        {{}, "--read or --punch"},
        {{"--punsh", "x"}, "unknown option --punsh"},
        {{"--read"}, "--read needs a value"},
        {{"--read", "x", "--baud", "96oo"}, "--baud: \"96oo\""},
        {{"--read", "x", "--code", "ascii"}, "--code: \"ascii\""},
        {{"--read", "x", "--eob", "<13"}, "--eob: \"<13\""},
        {{"--read", "x", "--buffer", "9", "--high-water", "10"}, "--high-water <= --buffer"},
        {{"--punch", "x", "--raw", "y"}, "belongs to the --read before it"},
    };
    for (const auto& row : cases) {
        Machine machine(row.arguments);
        EXPECT_EQ(machine.exit_status(), 2) << row.says;
        EXPECT_THAT(machine.file("messages"), HasSubstr(row.says));
    }
}

struct Code_case {
    const char* name;
    std::vector<std::string> options;
    std::string head;  // DC2 and one leader byte
    std::string wire;
    std::string tail;
    char xon;
};

class Simulated_machine_code : public testing::TestWithParam<Code_case> {};

TEST_P(Simulated_machine_code, punches_and_reads_the_same_wire) {
    std::vector<std::string> options = GetParam().options;
    options.insert(options.end(), {"--baud", "115200", "--leader", "1", "--trailer", "0", "--punch",
                                   "in.nc", "--keep-session", "--read", "out.nc"});
    Machine machine(options, short_program);
    machine.open_line();
    const std::string expected = GetParam().head + GetParam().wire + GetParam().tail;
    EXPECT_EQ(machine.receive(expected.size(), 3s), expected);
    EXPECT_EQ(machine.receive(1, 3s), std::string(1, GetParam().xon));
    EXPECT_TRUE(machine.send(GetParam().wire));
    EXPECT_THAT(machine.receive(1, 3s), testing::SizeIs(1));
    machine.close_line();
    EXPECT_EQ(machine.exit_status(), 0) << machine.file("messages");
    EXPECT_EQ(machine.file("out.nc"), "%\r\n" + short_program + "%");
}

INSTANTIATE_TEST_SUITE_P(
    codes, Simulated_machine_code,
    testing::Values(
        Code_case{"even", {"--code", "even"}, bytes({0x12, 0}), even_wire, "\x14", '\x11'},
        Code_case{"odd",
                  {"--code", "odd", "--eob", "lf"},
                  bytes({0x92, 0}),
                  "%\x8AO12\x8A\xCD\xB3\xB0\x8A%",
                  "\x94",
                  '\x91'},
        Code_case{"none",
                  {"--code", "none", "--eob", "cr"},
                  bytes({0x12, 0}),
                  "%\rO12\rM30\r%",
                  "\x14",
                  '\x11'},
        Code_case{"eia",
                  {"--code", "eia", "--leader-byte", "128"},
                  bytes({0x12, 0x80}),
                  "\x0B\x80\x46\x01\x02\x80\x54\x13\x20\x80\x0B",
                  "\x14",
                  '\x11'},
        Code_case{"custom",
                  {"--code", "none", "--eob", "<10><13><13>"},
                  bytes({0x12, 0}),
                  "%\n\r\rO12\n\r\rM30\n\r\r%",
                  "\x14",
                  '\x11'}),
    [](const auto& code) { return std::string(code.param.name); });

TEST(Simulated_machine, every_byte_passes_in_binary_mode_both_ways) {
    std::string all;
    for (int value = 0; value < 256; ++value) {
        all += static_cast<char>(value);
    }
    Machine machine({"--binary", "--baud", "115200", "--punch", "in.nc", "--full-speed",
                     "--keep-session", "--read", "out", "--idle-ms", "200"},
                    all);
    machine.open_line();
    EXPECT_EQ(machine.receive(256, 3s), all);
    EXPECT_EQ(machine.receive(1, 3s), "\x11");
    EXPECT_TRUE(machine.send(all));
    EXPECT_EQ(machine.receive(1, 3s), "\x93");
    machine.close_line();
    EXPECT_EQ(machine.exit_status(), 0);
    EXPECT_EQ(machine.file("out"), all);
}

TEST(Simulated_machine_alarms, stop_the_read_with_a_status_of_their_own) {
    const std::string long_program = "%\n" + std::string(100, '0');
    const struct {
        std::vector<std::string> options;
        std::string sent;
        int status;
        const char* says;
    } cases[] = {
        {{"--high-water", "20", "--low-water", "1", "--drain", "1"},
         long_program,
         3,
         "11 characters came after DC3"},
        {{"--buffer", "32", "--drain", "1", "--alarm-after", "99"},
         long_program,
         5,
         "input buffer full at byte 48 at position 33"},
        {{}, "\xA5\nX1", 4, "parity of byte 88 at position 3"},
        {{"--code", "eia"}, "\x0B\x80\x46\x03", 4, "parity of byte 3 at position 4"},
    };
    for (const auto& row : cases) {
        std::vector<std::string> options = row.options;
        options.insert(options.end(), {"--read", "out.nc"});
        std::string sent = row.sent;
        if (sent == long_program) {
            sent[0] = '\xA5';
        }
        Machine machine(options);
        machine.open_line();
        EXPECT_EQ(machine.receive(1, 3s), "\x11");
        EXPECT_TRUE(machine.send(sent));
        EXPECT_EQ(machine.exit_status(), row.status) << row.says;
        EXPECT_THAT(machine.file("messages"), HasSubstr(row.says));
    }
}

TEST(Simulated_machine, an_obedient_partner_gets_through_a_small_buffer) {
    Machine machine({"--code", "none", "--baud", "2400", "--buffer", "40", "--high-water", "20",
                     "--low-water", "5", "--drain", "50", "--read", "out.nc"});
    machine.open_line();
    EXPECT_EQ(machine.receive(1, 3s), "\x11");
    const std::string tape = "%\r\nO1\r\n" + std::string(60, 'X') + "\r\n%";
    for (const char character : tape) {
        EXPECT_TRUE(machine.send(std::string(1, character)));
        if (machine.receive(1, 4ms) == "\x13") {
            EXPECT_EQ(machine.receive(1, 3s), "\x11");
        }
    }
    EXPECT_EQ(machine.receive(1, 3s), "\x13");
    machine.close_line();
    EXPECT_EQ(machine.exit_status(), 0) << machine.file("messages");
    EXPECT_EQ(machine.file("out.nc"), tape);
    EXPECT_GT(std::stoi(machine.report("xoffs")), 1);
    EXPECT_GT(std::stod(machine.report("held_seconds")), 0.1);
}

TEST(Simulated_machine, no_byte_is_earlier_than_the_line_allows) {
    const std::string text(60, '0');
    Machine machine({"--baud", "1200", "--bare", "--start-delay", "100", "--punch", "in.nc",
                     "--keep-session", "--read", "out.nc"},
                    text);
    const auto opened = steady_clock::now();
    machine.open_line();
    for (int i = 1; i <= 60; ++i) {
        EXPECT_EQ(machine.receive(1, 3s), "0");
        EXPECT_GE(steady_clock::now() - opened, 100ms + i * 8333us) << "byte " << i;
    }
    EXPECT_EQ(machine.receive(1, 3s), "\x11");
    const auto sent = steady_clock::now();
    EXPECT_TRUE(machine.send("\xA5\n" + text + "\n\xA5"));
    EXPECT_EQ(machine.receive(1, 3s), "\x93");
    EXPECT_GE(steady_clock::now() - sent, 64 * 8333us);
}

TEST(Simulated_machine, the_partner_stops_a_punch) {
    Machine machine({"--baud", "2400", "--bare", "--punch", "in.nc"}, std::string(100, '0'));
    machine.open_line();
    EXPECT_EQ(machine.receive(20, 3s).size(), 20U);
    EXPECT_TRUE(machine.send("\x93"));
    const std::string rest_of_step = machine.receive(100, 300ms);
    EXPECT_LE(rest_of_step.size(), 20U);
    EXPECT_TRUE(machine.send("\x11"));
    const std::size_t left = 80 - rest_of_step.size();
    EXPECT_EQ(machine.receive(left, 3s).size(), left);
    machine.close_line();
    EXPECT_EQ(machine.exit_status(), 0);
    EXPECT_EQ(machine.report("xoffs"), "1");
}

TEST(Simulated_machine, a_switchbox_keeps_both_sides_apart_until_selected) {
    Machine machine({"--switchbox", "<18>C2", "--baud", "115200", "--start-delay", "0", "--read",
                     "out.nc", "--raw", "wire"});
    machine.open_line();
    EXPECT_TRUE(machine.send("\x12\xC3\xB1"));
    EXPECT_EQ(machine.receive(1, 300ms), "");
    EXPECT_TRUE(machine.send("\x12\xC3\xB2"));
    EXPECT_EQ(machine.receive(1, 3s), "\x11");
    EXPECT_TRUE(machine.send(even_wire));
    EXPECT_EQ(machine.receive(1, 3s), "\x93");
    machine.close_line();
    EXPECT_EQ(machine.exit_status(), 0);
    EXPECT_EQ(machine.file("wire"), even_wire);
}

TEST(Simulated_machine, pauses_where_told_and_stops_right_after_percent) {
    Machine machine({"--code", "none", "--baud", "115200", "--pause-at", "4", "--pause-ms", "300",
                     "--dc3-after-percent", "--read", "out.nc"});
    machine.open_line();
    EXPECT_EQ(machine.receive(1, 3s), "\x11");
    EXPECT_TRUE(machine.send("%\nO1"));
    EXPECT_EQ(machine.receive(1, 3s), "\x13");
    const auto paused = steady_clock::now();
    EXPECT_EQ(machine.receive(1, 3s), "\x11");
    EXPECT_GE(steady_clock::now() - paused, 250ms);
    EXPECT_TRUE(machine.send("\n(50% FEED)\n%"));
    EXPECT_EQ(machine.receive(1, 200ms), "\x13");
    machine.close_line();
    EXPECT_EQ(machine.exit_status(), 0);
    EXPECT_EQ(machine.file("out.nc"), "%\r\nO1\r\n(50% FEED)\r\n%");
}

TEST(Simulated_machine, dc2_is_repeated_until_xon_answers_it) {
    Machine machine({"--dc2-until-answered", "--leader", "0", "--trailer", "0", "--punch", "in.nc"},
                    short_program);
    machine.open_line();
    EXPECT_EQ(machine.receive(2, 4s), "\x12\x12");
    EXPECT_TRUE(machine.send("\x11"));
    EXPECT_EQ(machine.receive(99, 1s), even_wire + "\x14");
    machine.close_line();
    EXPECT_EQ(machine.exit_status(), 0);
    EXPECT_EQ(machine.report("dc2_sent"), "2");
}

TEST(Simulated_machine, label_skip_passes_over_readable_letters) {
    Machine machine({"--label-skip", "--baud", "115200", "--read", "out.nc"});
    machine.open_line();
    EXPECT_EQ(machine.receive(1, 3s), "\x11");
    EXPECT_TRUE(machine.send(bytes({18, 0, 1, 2, 4, 10, 37, 32, 0}) + even_wire + bytes({0, 32})));
    EXPECT_EQ(machine.receive(1, 3s), "\x93");
    machine.close_line();
    EXPECT_EQ(machine.exit_status(), 0) << machine.file("messages");
    EXPECT_EQ(machine.file("out.nc"), "%\r\n" + short_program + "%");
}

TEST(Simulated_machine, ends_that_are_not_the_programs_end) {
    const struct {
        std::vector<std::string> options;
        bool closes;
        int signal;
        int status;
    } cases[] = {
        {{"--hang-up-after", "5"}, false, 0, 7},
        {{}, true, 0, 6},
        {{}, false, SIGTERM, 9},
        {{"--timeout", "1"}, false, 0, 8},
    };
    for (const auto& row : cases) {
        std::vector<std::string> options{"--read", "out.nc", "--link", "line", "--idle-ms", "0"};
        options.insert(options.end(), row.options.begin(), row.options.end());
        Machine machine(options);
        EXPECT_TRUE(fs::is_symlink(machine.path("line")));
        machine.open_line();
        EXPECT_EQ(machine.receive(1, 3s), "\x11");
        EXPECT_TRUE(machine.send("\xA5\n\xCF\xB1\n"));
        std::this_thread::sleep_for(100ms);
        if (row.closes) {
            machine.close_line();
        }
        if (row.signal != 0) {
            machine.signal(row.signal);
        }
        EXPECT_EQ(machine.exit_status(), row.status);
        EXPECT_FALSE(fs::is_symlink(machine.path("line")));
    }
}

TEST(Simulated_machine, serves_an_operator) {
    Machine machine({"--serve", "memory", "--code", "none", "--baud", "115200", "--leader", "0",
                     "--trailer", "0"});
    machine.open_line();
    EXPECT_TRUE(machine.send("%\r\nO77\r\n%"));
    EXPECT_EQ(machine.receive(1, 3s), "\x13");
    machine.close_line();
    std::this_thread::sleep_for(100ms);
    machine.open_line();
    machine.order("punch\n");
    EXPECT_EQ(machine.receive(11, 3s), "\x12%\r\nO77\r\n%\x14");
    machine.order("read\nstop\n");
    machine.order("quit\n");
    EXPECT_EQ(machine.exit_status(), 0);
    EXPECT_EQ(machine.file("memory/O77.NC"), "%\r\nO77\r\n%");
}

}  // namespace
