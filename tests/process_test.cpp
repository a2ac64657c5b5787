// The finished program as a process: on the simulated machine, and on a line whose other end the
// test holds.

#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <memory>
#include <new>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "modem_lines/modem_lines.h"
#include "support/program_process.h"
#include "support/pty_line.h"

namespace kelvane::testing {
namespace {

using namespace std::chrono_literals;

enum Event { send = 1, receive = 2, binary_send = 5, binary_receive = 6 };

constexpr auto quiet = 400ms;  // silence that tells that nothing more comes

constexpr const char* staging = "scratchpad data 5";
constexpr const char* settings_file = "Kelvane Lite settings";
constexpr const char* xon = "\x11";
constexpr const char* xoff = "\x13";

// Only characters that every tape code carries there and back.
std::string part_program(int blocks) {
    std::string text = "O1234\r\nG90 G17\r\n";
    for (int block = 1; block <= blocks; ++block) {
        const std::string number = std::to_string(block * 10);
        text.append("N").append(number).append(" G1 X").append(number).append(
            ".125 Y-37.5 F250\r\n");
    }
    return text + "M30\r\n";
}

std::string all_bytes() {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

/// A pipe with a name, in which nobody reads; both its ends are open until they are closed here.
class Named_pipe {
  public:
    explicit Named_pipe(const std::string& path) {
        ::mkfifo(path.c_str(), 0600);
        reader_ = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        writer_ = ::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    }
    Named_pipe(const Named_pipe&) = delete;
    Named_pipe& operator=(const Named_pipe&) = delete;
    ~Named_pipe() {
        close_reader();
        close_writer();
    }

    void fill() const {
        while (::write(writer_, "full", 4) == 4) {
        }
    }
    void close_reader() { ::close(std::exchange(reader_, -1)); }
    void close_writer() { ::close(std::exchange(writer_, -1)); }

  private:
    int reader_ = -1;
    int writer_ = -1;
};

/// A program directory, the program at work in it, and a line to it.
class Workshop : public ::testing::Test {
  protected:
    /// The simulated machine with these options, wired to COM1.
    void machine(std::vector<std::string> options, const Setting_lines& settings = {}) {
        const std::string link = folder.path("line");
        std::vector<std::string> command{SIMULATED_MACHINE,    "--link", link,
                                         "--timeout",          "120",    "--report",
                                         folder.path("report")};
        command.insert(command.end(), options.begin(), options.end());
        machine_ = std::make_unique<Process>(command, std::vector<std::string>{},
                                             folder.path("machine log"));
        ASSERT_TRUE(wait_until([&] { return folder.exists("line"); }, in_time));
        folder.connect(link, settings);
    }
    void expect_satisfied_machine() {
        EXPECT_EQ(machine_->exit_within(in_time), 0)
            << folder.content("machine log") << folder.content("report");
    }
    [[nodiscard]] int reported(const std::string& key) const {
        const std::string report = "\n" + folder.content("report");
        const std::size_t at = report.find("\n" + key + "=");
        return at == std::string::npos ? -1 : std::stoi(report.substr(at + key.size() + 2));
    }

    /// Starts the program with a job on a file of the directory.
    void start_job(Event event, const std::string& file) {
        start(Program_directory::job(event, folder.path(file)));
    }
    void start(const std::string& job = {}) { program = folder.start(job, environment); }
    void run_job(Event event, const std::string& file) {
        start_job(event, file);
        EXPECT_EQ(program->exit_within(in_time), 0) << log();
    }
    /// The transfer has opened the line and thrown away what was old on it.
    void expect_armed() {
        EXPECT_TRUE(wait_until([&] { return folder.exists(staging); }, in_time)) << log();
    }
    void expect_box(const std::string& part) {
        EXPECT_TRUE(wait_until([&] { return log().find(part) != std::string::npos; }, in_time))
            << "no box says \"" << part << "\": " << log();
        EXPECT_TRUE(program->runs()) << "the box has not been answered";
    }
    /// What has just begun may take a busy computer a while; a busy loop has no end.
    void expect_calm() {
        const auto is_calm = [&] {
            const auto before = program->processor_time();
            EXPECT_FALSE(program->exit_within(1s));
            return program->processor_time() - before < 300ms;
        };
        EXPECT_TRUE(wait_until(is_calm, 20s)) << "a busy loop";
    }
    void expect_orderly_end(Process& process, int status) {
        process.signal(SIGTERM);
        EXPECT_EQ(process.exit_within(in_time), status) << log();
    }
    /// With the status of a job that has not been done.
    void expect_orderly_end(int status = 1) { expect_orderly_end(*program, status); }
    [[nodiscard]] std::string log() const { return folder.content("log"); }

    Program_directory folder;
    std::vector<std::string> environment = patient_environment();
    std::unique_ptr<Process> program;

  private:
    std::unique_ptr<Process> machine_;
};

// --- Whole jobs against the simulated machine

struct Code_row {
    const char* name;
    const char* setting;
    const char* leader;
};

class Every_tape_code : public Workshop, public ::testing::WithParamInterface<Code_row> {};

// The alarm limit leaves room for a computer at work on something else, whose DC3 comes late; what
// ignores it sends all the rest, which is more. The exact figure is measured in bench/.
TEST_P(Every_tape_code, carries_a_program_to_the_machine_and_back) {
    machine({"--code", GetParam().name, "--baud", "4800", "--buffer", "1000", "--high-water", "12",
             "--low-water", "4", "--drain", "80", "--alarm-after", "140", "--read",
             folder.path("memory"), "--punch", folder.path("memory")},
            {{2, "BAUD 4"},
             {4, GetParam().setting},
             {7, GetParam().leader},
             {8, "%"},
             {9, "YES"},
             {10, "YES"}});
    const std::string text = part_program(5);
    folder.put("PART.NC", text);
    run_job(send, "PART.NC");
    run_job(receive, "BACK.NC");
    expect_satisfied_machine();
    EXPECT_GT(reported("xoffs"), 0);
    EXPECT_EQ(folder.content("memory"), "%\r\n" + text + "%");
    EXPECT_EQ(folder.content("BACK.NC"), text);
    EXPECT_FALSE(folder.exists(staging));
    EXPECT_EQ(log(), "");
}

INSTANTIATE_TEST_SUITE_P(
    codes, Every_tape_code,
    ::testing::Values(Code_row{"even", " 0", "%CRLF"}, Code_row{"odd", " 1", "%CRLF"},
                      Code_row{
                          "none", " 2",
                          "%CRLF"},  // EIA has one end of block, so a "CR" would be a second one.
                      Code_row{"eia", " 3", "%LF"}),
    [](const auto& code) { return std::string(code.param.name); });

TEST_F(Workshop, every_byte_goes_both_ways_in_binary_transfers) {
    machine({"--binary", "--code", "none", "--baud", "115200", "--idle-ms", "1000", "--read",
             folder.path("memory"), "--punch", folder.path("memory")});
    folder.put("PART.BIN", all_bytes() + all_bytes());
    run_job(binary_send, "PART.BIN");
    start_job(binary_receive, "BACK.BIN");
    EXPECT_TRUE(wait_until([&] { return folder.exists("Received Binary data"); }, in_time));
    expect_satisfied_machine();
    EXPECT_EQ(folder.content("memory"), all_bytes() + all_bytes());
    EXPECT_EQ(folder.content("Received Binary data"), all_bytes() + all_bytes());
    EXPECT_TRUE(program->runs()) << "the operator sees the count of bytes";
    expect_orderly_end(0);
}

TEST_F(Workshop, a_machine_that_stops_the_line_with_its_percent_ends_the_send) {
    machine({"--dc3-after-percent", "--code", "none", "--baud", "57600", "--read",
             folder.path("memory")},
            {{2, "BAUD-1"}});
    folder.put("PART.NC", "%\r\n" + part_program(3) + "%\r\n");
    run_job(send, "PART.NC");
    expect_satisfied_machine();
    EXPECT_EQ(folder.content("memory"), "%\r\n" + part_program(3) + "%");
}

// --- Every state of a transfer

struct State_row {
    const char* name;
    Event event;
    const char* from_machine;
    std::size_t to_machine;  ///< characters that the machine sees
    const char* then;        ///< what it sends after them
    const char* kept;        ///< received so far, in the staging file
};

class Every_state : public Workshop, public ::testing::WithParamInterface<State_row> {
  protected:
    /// Brings the program into the state.
    void SetUp() override {
        const State_row& row = GetParam();
        folder.connect(line.device(), {{2, "BAUD 3"}});
        folder.put("PART.NC", part_program(200));
        start_job(row.event, row.event == receive ? "BACK.NC" : "PART.NC");
        expect_armed();
        line.send(row.from_machine);
        EXPECT_EQ(line.receive(row.to_machine, in_time).size(), row.to_machine);
        line.send(row.then);
        if (*row.then != '\0') {
            const std::size_t all = part_program(200).size();
            EXPECT_LT(row.to_machine + line.receive(all, quiet).size(), all);
        }
        EXPECT_TRUE(wait_until([&] { return all_is_stored(); }, in_time));
        EXPECT_TRUE(program->holds_open(line.device()));
    }
    [[nodiscard]] bool all_is_stored() const {
        return *GetParam().kept == '\0' || folder.content(staging) == GetParam().kept;
    }

    Pty_line line;
};

TEST_P(Every_state, ends_in_time_when_told_to) {
    if (*GetParam().from_machine == '\0') {
        expect_calm();
        EXPECT_EQ(line.receive(1, 0ms), "") << "nobody has asked for anything";
    }
    expect_orderly_end();
    EXPECT_EQ(folder.content(staging), GetParam().kept);
    EXPECT_EQ(folder.content(settings_file), std::string("1\r\n") + test_machine + "\r\n");
    EXPECT_EQ(log(), "");
}

TEST_P(Every_state, a_line_that_goes_away_is_told_once_and_let_go) {
    const std::string device = line.device();
    line.hang_up();
    expect_box(" is no longer there.\n");
    EXPECT_FALSE(program->holds_open(device));
    expect_calm();
    expect_orderly_end();
    EXPECT_EQ(folder.content(staging), GetParam().kept);
    EXPECT_FALSE(folder.exists("BACK.NC"));
    EXPECT_EQ(log().find("Com port error"), log().rfind("Com port error")) << log();
    EXPECT_TRUE(folder.exists(settings_file));
}

INSTANTIATE_TEST_SUITE_P(states, Every_state,
                         ::testing::Values(State_row{"waiting_for_xon", send, "", 0, "", ""},
                                           State_row{"sending", send, xon, 60, "", ""},
                                           State_row{"held_by_xoff", send, xon, 60, xoff, ""},
                                           State_row{"waiting_for_data", receive, "", 0, "", ""},
                                           State_row{"receiving", receive, "%\nO1\nM3", 0, "",
                                                     "%\nO1\nM3"}),
                         [](const auto& row) { return std::string(row.param.name); });

// --- Beside a transfer

TEST_F(Workshop, every_end_signal_ends_an_idle_program) {
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        ::unlink(folder.path("Kelvane Lite lock").c_str());
        start();
        ASSERT_TRUE(wait_until([&] { return folder.exists("Kelvane Lite lock"); }, in_time));
        program->signal(number);
        EXPECT_EQ(program->exit_within(in_time), 0) << number << log();
        EXPECT_EQ(folder.content(settings_file), "0\r\n(default)\r\n");
        ::unlink(folder.path(settings_file).c_str());
    }
}

// Nobody may be there to press OK, whatever has just failed, and whatever fails in addition.
TEST_F(Workshop, an_end_signal_answers_every_box) {
    const struct {
        Event event;
        const char* file;
        const char* from_machine;
        const char* box;
        int status;
    } cases[] = {
        {send, "MISSING.NC", "", "MISSING.NC does not exist", 1},
        {send, "PART.NC", xon, "Cannot write the settings file", 0},  // at its own end
        {receive, "BACK.NC", "%\r\nO1\r\n", "BACK.NC", 1},            // cannot be saved
    };
    folder.put("PART.NC", "M30\r\n");
    for (const auto& c : cases) {
        SCOPED_TRACE(c.box);
        Pty_line line;
        folder.connect(line.device());
        ::unlink(folder.path("log").c_str());
        ::rmdir(folder.path("BACK.NC").c_str());
        start_job(c.event, c.file);
        if (*c.from_machine != '\0') {
            expect_armed();
            ::mkdir(folder.path("BACK.NC").c_str(), 0755);
            ::mkdir(folder.path(settings_file).c_str(), 0755);
            line.send(c.from_machine);
        }
        expect_box(c.box);
        ::mkdir(folder.path(settings_file).c_str(), 0755);
        expect_orderly_end(c.status);
        EXPECT_NE(log().find("Cannot write the settings file"), std::string::npos);
        ::rmdir(folder.path(settings_file).c_str());
        ::unlink(folder.path(staging).c_str());
    }
}

TEST_F(Workshop, an_end_signal_ends_a_program_that_hangs_in_a_file) {
    Pty_line line;
    folder.connect(line.device());
    environment.clear();
    start_job(receive, "BACK.NC");
    expect_armed();
    ::unlink(folder.path(staging).c_str());
    Named_pipe pipe(folder.path(staging));
    pipe.fill();
    line.send("%");  // to be added to what takes nothing
    ASSERT_TRUE(wait_until([&] { return program->holds_open(folder.path(staging)); }, in_time));
    program->signal(SIGTERM);
    EXPECT_EQ(program->exit_within(in_time), -SIGTERM);
}

TEST_F(Workshop, a_second_instance_refuses_and_leaves_the_settings_alone) {
    start();
    ASSERT_TRUE(wait_until([&] { return folder.exists("Kelvane Lite lock"); }, in_time));
    folder.put(settings_file, "as they were");
    std::unique_ptr<Process> first = std::move(program);
    for (const char* job : {"", "2|nowhere"}) {
        ::unlink(folder.path("log").c_str());
        start(job);
        expect_box("Sorry...: Kelvane Lite is currently busy.\nTry sending your file later.");
        expect_orderly_end(3);
    }
    EXPECT_EQ(folder.content(settings_file), "as they were");
    EXPECT_TRUE(first->runs());
    expect_orderly_end(*first, 0);
}

TEST_F(Workshop, a_port_that_cannot_be_opened_is_told_and_the_box_does_not_hold_the_end) {
    for (const char* device : {"/dev/no-such-tty", "/dev/null"}) {
        ::unlink(folder.path("log").c_str());
        folder.connect(device);
        folder.put("PART.NC", part_program(1));
        start_job(send, "PART.NC");
        expect_box("Com port error: COM1 port is not available\nSelect a different COM port");
        expect_orderly_end();
    }
}

TEST_F(Workshop, a_standard_error_that_takes_nothing_neither_ends_nor_blocks_the_program) {
    enum Kind { closed, never_read, reader_gone };
    for (const Kind kind : {closed, never_read, reader_gone}) {
        SCOPED_TRACE(kind);
        Pty_line line;
        folder.connect(line.device());
        folder.log = kind == closed ? "" : folder.path("pipe" + std::to_string(kind));
        Named_pipe pipe(folder.log);
        if (kind == never_read) {
            pipe.fill();
        }
        start_job(receive, "BACK.NC");
        expect_armed();
        pipe.close_writer();
        if (kind == reader_gone) {
            pipe.close_reader();
        }
        const std::string device = line.device();
        line.hang_up();
        EXPECT_TRUE(wait_until([&] { return !program->holds_open(device); }, in_time));
        expect_calm();
        EXPECT_TRUE(kind != closed || program->stream_target(STDERR_FILENO) == "/dev/null");
        expect_orderly_end();
        ::unlink(folder.path(staging).c_str());
    }
}

// --- Modem lines, which a pseudo-terminal has only by the preloaded library

class Modem_line_workshop : public Workshop, public ::testing::WithParamInterface<const char*> {
  protected:
    void SetUp() override {
        const std::string name = folder.path("modem lines");
        const int handle = ::open(name.c_str(), O_RDWR | O_CREAT, 0600);
        ASSERT_EQ(::ftruncate(handle, sizeof(Modem_lines)), 0);
        void* memory =
            ::mmap(nullptr, sizeof(Modem_lines), PROT_READ | PROT_WRITE, MAP_SHARED, handle, 0);
        ::close(handle);
        ASSERT_NE(memory, MAP_FAILED);
        lines = new (memory) Modem_lines;
        line.device().copy(lines->device.data(), lines->device.size() - 1);
        environment.front() += ":" MODEM_LINES_LIBRARY;
        environment.push_back("KELVANE_MODEM_LINES=" + name);
        folder.connect(line.device(), {{2, "BAUD 3"}, {5, GetParam()}});
        folder.put("PART.NC", whole);
        start_job(send, "PART.NC");
        expect_armed();
    }
    void TearDown() override { ::munmap(lines, sizeof(Modem_lines)); }
    /// The machine asks, and takes so many characters.
    std::string first_characters(std::size_t count) {
        line.send(xon);
        std::string text = line.receive(count, in_time);
        EXPECT_EQ(text.size(), count);
        return text;
    }
    void expect_silence(std::string& text) {
        text += line.receive(whole.size(), quiet);
        EXPECT_LT(text.size(), whole.size());
        EXPECT_EQ(line.receive(1, quiet), "");
        EXPECT_TRUE(program->holds_open(line.device()));
    }
    void expect_rest(std::string text) {
        text += line.receive(whole.size() - text.size(), in_time);
        EXPECT_EQ(text, whole);
        EXPECT_EQ(program->exit_within(in_time), 0) << log();
        EXPECT_EQ(lines->set_by_program, 0);
    }

    /// Of a second: so much later may a busy computer hear of a hold.
    const std::string whole = part_program(30);
    Pty_line line;
    Modem_lines* lines = nullptr;
};

TEST_P(Modem_line_workshop, low_cts_holds_the_send_and_raised_cts_lets_it_go_on) {
    EXPECT_EQ(lines->set_by_program, TIOCM_RTS | TIOCM_DTR);
    std::string text = first_characters(20);
    lines->cts = false;
    expect_silence(text);
    expect_calm();
    EXPECT_GT(lines->cts_looks, 0);
    lines->cts = true;
    expect_rest(text);
}

TEST_P(Modem_line_workshop, a_driver_that_keeps_characters_holds_the_send) {
    std::string text = first_characters(20);
    lines->queued = 3;
    expect_silence(text);
    lines->queued = 2;
    text += line.receive(5, in_time);
    lines->queued = 0;
    expect_rest(text);
}

TEST_P(Modem_line_workshop, low_cts_does_not_hold_the_end_of_the_program) {
    lines->cts = false;
    line.send(xon);
    EXPECT_TRUE(wait_until([&] { return lines->cts_looks > 0; }, in_time));
    EXPECT_EQ(line.receive(1, quiet), "");
    expect_orderly_end();
    EXPECT_EQ(lines->set_by_program, 0);
}

INSTANTIATE_TEST_SUITE_P(handshakes, Modem_line_workshop, ::testing::Values(" 2", " 3"),
                         [](const auto& row) {
                             return std::string(row.param[1] == '2' ? "rts_cts" : "both");
                         });

}  // namespace
}  // namespace kelvane::testing
