#include "support/program_process.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <spawn.h>
#include <sstream>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace kelvane::testing {

namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> all;
    all.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        all.push_back(text.data());
    }
    all.push_back(nullptr);
    return all;
}

std::vector<std::string> own_environment() {
    std::vector<std::string> all;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        all.emplace_back(*entry);
    }
    return all;
}

}  // namespace

bool wait_until(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= end) {
            return false;
        }
        std::this_thread::sleep_for(2ms);
    }
    return true;
}

Process::Process(const std::vector<std::string>& command,
                 const std::vector<std::string>& environment, const std::string& log) {
    std::vector<std::string> arguments = command;
    // The first of two entries of a name counts.
    std::vector<std::string> variables = environment;
    for (std::string& entry : own_environment()) {
        variables.push_back(std::move(entry));
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    if (log.empty()) {
        posix_spawn_file_actions_addclose(&actions, STDOUT_FILENO);
        posix_spawn_file_actions_addclose(&actions, STDERR_FILENO);
    } else {
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, log.c_str(),
                                         O_WRONLY | O_CREAT | O_APPEND, 0600);
        posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
    }
    const int error = ::posix_spawn(&id_, command.front().c_str(), &actions, nullptr,
                                    pointers(arguments).data(), pointers(variables).data());
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        throw std::system_error(error, std::generic_category(), command.front());
    }
}

Process::~Process() {
    if (runs()) {
        signal(SIGKILL);
        ::waitpid(id_, nullptr, 0);
    }
}

void Process::signal(int number) const {
    if (!status_) {
        ::kill(id_, number);
    }
}

std::optional<int> Process::exit_within(std::chrono::milliseconds limit) {
    static_cast<void>(wait_until(
        [this] {
            int status = 0;
            if (!status_ && ::waitpid(id_, &status, WNOHANG) == id_) {
                status_ = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
            }
            return status_.has_value();
        },
        limit));
    return status_;
}

bool Process::holds_open(const std::string& path) const {
    std::error_code error;
    const fs::path target = fs::canonical(path, error);
    fs::directory_iterator handles("/proc/" + std::to_string(id_) + "/fd", error);
    for (; !error && handles != fs::directory_iterator(); handles.increment(error)) {
        std::error_code gone;
        if (fs::read_symlink(handles->path(), gone) == target) {
            return true;
        }
    }
    return false;
}

std::string Process::stream_target(int stream) const {
    std::error_code error;
    return fs::read_symlink("/proc/" + std::to_string(id_) + "/fd/" + std::to_string(stream),
                            error);
}

std::chrono::milliseconds Process::processor_time() const {
    std::ifstream file("/proc/" + std::to_string(id_) + "/stat");
    std::string text{std::istreambuf_iterator<char>(file), {}};
    // The name in brackets may hold blanks; the times are the 12th and 13th field after it.
    std::istringstream fields(text.substr(text.rfind(')') + 1));
    std::string skipped;
    for (int i = 0; i < 11; ++i) {
        fields >> skipped;
    }
    long in_program = 0;
    long in_kernel = 0;
    fields >> in_program >> in_kernel;
    return std::chrono::milliseconds((in_program + in_kernel) * 1000 / ::sysconf(_SC_CLK_TCK));
}

std::vector<std::string> patient_environment() {
    return {"LD_PRELOAD=" PATIENCE_LIBRARY, "ASAN_OPTIONS=verify_asan_link_order=0"};
}

Program_directory::Program_directory() {
    std::string name = (fs::temp_directory_path() / "kelvane_test_XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), name);
    }
    folder_ = name;
    log = path("log");
}

Program_directory::~Program_directory() {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
}

std::string Program_directory::path(std::string_view name) const {
    return folder_ + "/" + std::string(name);
}

void Program_directory::put(std::string_view name, std::string_view content) const {
    std::ofstream(path(name), std::ios::binary) << content;
}

std::string Program_directory::content(std::string_view name) const {
    std::ifstream file(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

bool Program_directory::exists(std::string_view name) const {
    return fs::exists(path(name));
}

void Program_directory::connect(const std::string& device, const Setting_lines& lines) const {
    Setting_lines settings{{2, "BAUD-2"}, {15, "1"}};
    settings.insert(settings.end(), lines.begin(), lines.end());
    const std::string machine = test_machine;
    put("Editor COM port settings for " + machine, plain_settings(settings));
    put("Editor IO device list", machine + "\r\n");
    put("Serial port devices", "COM1=" + device + "\r\n");
}

std::unique_ptr<Process> Program_directory::start(const std::string& job,
                                                  std::vector<std::string> environment) const {
    environment.push_back("KELVANE_LITE_DIRECTORY=" + folder_);
    environment.emplace_back("QT_QPA_PLATFORM=offscreen");
    environment.emplace_back("QT_LOGGING_RULES=*.warning=false");
    std::vector<std::string> command{KELVANE_LITE};
    if (!job.empty()) {
        command.push_back(job);
    }
    return std::make_unique<Process>(command, environment, log);
}

std::string Program_directory::job(int event, const std::string& file) {
    return std::to_string(event) + "|" + file + "|" + test_machine;
}

}  // namespace kelvane::testing
