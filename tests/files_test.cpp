#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <iterator>
#include <map>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <utility>

#include "desktop/disk_files.h"
#include "desktop/qt_desktop_services.h"
#include "session/file_names.h"
#include "support/memory_files.h"

/// The system calls that change files, as the program makes them.
struct System_calls {
    static inline int count = 0;
    /// Told of each before it is made, with its descriptor if it has one; false lets it fail.
    static inline std::function<bool(const char* call, int descriptor)> before;
    static bool fail(const char* call, int descriptor = -1) {
        if (!before) {
            return false;
        }
        ++count;
        const auto asked = std::exchange(before, nullptr);  // it may make such calls itself
        const bool made = asked(call, descriptor);
        before = asked;
        errno = EIO;
        return !made;
    }
};

extern "C" {
int fsync(int descriptor) {
    return System_calls::fail("fsync", descriptor) ? -1 : int(::syscall(SYS_fsync, descriptor));
}
int fchmod(int descriptor, mode_t mode) noexcept {
    return System_calls::fail("fchmod") ? -1 : int(::syscall(SYS_fchmod, descriptor, mode));
}
int rename(const char* from, const char* to) noexcept {
    return System_calls::fail("rename") ? -1 : int(::syscall(SYS_rename, from, to));
}
ssize_t write(int descriptor, const void* bytes, size_t count) {
    // Half of what is asked for is written, then nothing.
    const bool fails = System_calls::fail("write");
    const ssize_t written = ::syscall(SYS_write, descriptor, bytes, fails ? count / 2 : count);
    errno = fails ? ENOSPC : errno;
    return fails ? -1 : written;
}
int close(int descriptor) {
    const bool fails = System_calls::fail("close");
    const int closed = int(::syscall(SYS_close, descriptor));
    return fails ? -1 : closed;
}
}

namespace kelvane {
namespace {

namespace fs = std::filesystem;

class Disk_files_test : public ::testing::Test {
  protected:
    Disk_files_test() { ::umask(022); }
    ~Disk_files_test() override { fs::remove_all(folder); }
    static std::string make_folder() {
        std::string name = ::testing::TempDir() + "kelvane-files-XXXXXX";
        return ::mkdtemp(name.data());
    }
    const std::string folder = make_folder();
    Disk_files disk{folder};
    const std::string a = folder + "/a";
    const std::string b = folder + "/b";
};

/// What both the disk and its double must do, so that what is tested on the double holds on the
/// disk.
class Files_test : public Disk_files_test, public ::testing::WithParamInterface<bool> {
  protected:
    [[nodiscard]] std::string content(const std::string& path) const {
        return files.read(path).value_or("(missing)");
    }
    testing::Memory_files memory{folder};
    Files& files = GetParam() ? static_cast<Files&>(disk) : memory;
};

INSTANTIATE_TEST_SUITE_P(kinds, Files_test, ::testing::Bool(),
                         [](const auto& kind) { return kind.param ? "on_disk" : "in_memory"; });

TEST_P(Files_test, holds_the_bytes_that_were_written) {
    std::string every_byte;
    for (int byte = 0; byte < 256; ++byte) {
        every_byte += static_cast<char>(byte);
    }
    const std::string large(300'000, 'x');
    for (const std::string& text : {every_byte, large + every_byte, std::string(), every_byte}) {
        EXPECT_TRUE(files.replace(a, text));
        EXPECT_EQ(content(a), text);
        EXPECT_EQ(files.length(a), text.size());
    }
    EXPECT_EQ(files.read_start(a, 4), every_byte.substr(0, 4));
    EXPECT_EQ(files.read_start(a, 0), "");
    EXPECT_EQ(files.read_start(a, 999), every_byte);
    EXPECT_TRUE(files.replace(folder + "/Fr\xE4se", "1")) << "a name is text in no character set";
    EXPECT_TRUE(files.exists(folder + "/Fr\xE4se") && !files.exists(folder + "/Fr\xE5se"));
}

TEST_P(Files_test, appends_copies_and_renames_over_what_was_there) {
    for (const char* piece : {"one", "", "two"}) {
        EXPECT_TRUE(files.append(a, piece));
    }
    EXPECT_EQ(content(a), "onetwo");
    ASSERT_TRUE(files.replace(b, "old") && files.replace(folder + "/c", "old"));
    EXPECT_TRUE(files.copy(a, b));
    EXPECT_TRUE(files.copy(a, a));
    EXPECT_TRUE(files.rename(a, folder + "/c"));
    EXPECT_EQ(content(a), "(missing)");
    EXPECT_EQ(content(b), "onetwo");
    EXPECT_EQ(content(folder + "/c"), "onetwo");
}

TEST_P(Files_test, tells_files_folders_and_nothing_apart) {
    ASSERT_TRUE(files.replace(a, "1"));
    EXPECT_TRUE(files.exists(a) && !files.is_folder(a));
    EXPECT_TRUE(files.is_folder(folder) && !files.exists(folder));
    EXPECT_TRUE(files.stamp(a) && !files.stamp(b) && !files.length(b));
    for (const std::string& path : {a, a, folder + "/no folder/a"}) {
        EXPECT_TRUE(files.remove(path)) << "done when the file is gone";
        EXPECT_FALSE(files.exists(path));
    }
    EXPECT_FALSE(files.read(a) || files.copy(a, b) || files.rename(a, b) || files.exists(b));
    EXPECT_TRUE(files.try_out(a) && !files.exists(a) && !files.try_out(folder + "/no folder/a"));
    ASSERT_TRUE(files.replace(b, "stays") && files.try_out(b));
    EXPECT_EQ(content(b), "stays");
    ASSERT_TRUE(files.remove(b));
    for (const Result<>& result : {files.replace(folder + "/no folder/a", "1"),
                                   files.append(folder + "/no folder/a", "1")}) {
        EXPECT_EQ(result.reason(), "No such file or directory");
    }
    EXPECT_TRUE(files.read(a).missing() && !files.read(a).unreadable());
    EXPECT_TRUE(files.read(folder + "/no folder/a").missing());
}

/// What the system is asked to do to the files of a folder.
struct Change {
    const char* what;
    std::function<Result<>(Files& files, const std::string& a, const std::string& b)> make;
    std::string after;  ///< content of "a"; before it was "old"
};
const std::string large(200'000, 'x');
const Change changes[] = {
    {"replace", [](Files& f, auto& a, auto&) { return f.replace(a, large); }, large},
    {"append", [](Files& f, auto& a, auto&) { return f.append(a, "new"); }, "oldnew"},
    {"copy", [](Files& f, auto& a, auto& b) { return f.copy(b, a); }, large},
    {"rename of what is not on the disk yet",
     [](Files& f, auto& a, auto& b) {
         return f.append(b, "new").and_then([&] { return f.rename(b, a); });
     },
     large + "new"},
    {"try out", [](Files& f, auto& a, auto&) { return f.try_out(a + "2"); }, "old"},
};

TEST_F(Disk_files_test, whatever_system_call_fails_the_file_is_the_old_one_or_the_new_one) {
    for (const Change& change : changes) {
        System_calls::count = 0;
        for (int at = 1; System_calls::count >= at - 1; ++at) {
            SCOPED_TRACE(change.what + (" fails at call " + std::to_string(at)));
            ASSERT_TRUE(disk.replace(a, "old") && disk.replace(b, large));
            System_calls::count = 0;
            System_calls::before = [&](const char*, int) { return System_calls::count != at; };
            const Result<> done = change.make(disk, a, b);
            System_calls::before = nullptr;
            EXPECT_EQ(disk.read(a), done ? change.after : "old");
            EXPECT_TRUE(disk.read(a)->starts_with(large) || disk.read(b)->starts_with(large));
            disk.remove_left_behind();
            EXPECT_LE(std::distance(fs::directory_iterator(folder), {}), 2);
        }
    }
}

/// What a power cut leaves of a folder: of each file what has been synced, under the names that the
/// folder had when it was synced, or has now.
class Power_cut {
  public:
    explicit Power_cut(std::string folder) : folder_(std::move(folder)), names_(names_now()) {
        for (const auto& [name, inode] : names_) {
            safe_[inode] = content(name);
        }
    }
    void synced(int descriptor) {
        struct stat file {};
        ::fstat(descriptor, &file);
        for (const auto& [name, inode] : names_now()) {
            if (inode == file.st_ino) {
                safe_[inode] = content(name);
            }
        }
        names_ = S_ISDIR(file.st_mode) ? names_now() : names_;
    }
    [[nodiscard]] std::string under_safe_name(const std::string& name) {
        return safe(names_, name);
    }
    [[nodiscard]] std::string under_name_now(const std::string& name) {
        return safe(names_now(), name);
    }

  private:
    using Names = std::map<std::string, ino_t>;
    [[nodiscard]] Names names_now() const {
        Names names;
        for (const auto& entry : fs::directory_iterator(folder_)) {
            struct stat file {};
            ::stat(entry.path().c_str(), &file);
            names[entry.path().filename()] = file.st_ino;
        }
        return names;
    }
    [[nodiscard]] std::string content(const std::string& name) const {
        std::ifstream file(folder_ + "/" + name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    std::string safe(const Names& names, const std::string& name) {
        return names.contains(name) ? safe_[names.at(name)] : "(missing)";
    }
    std::string folder_;
    Names names_;
    std::map<ino_t, std::string> safe_;
};

TEST_F(Disk_files_test, a_power_cut_at_any_system_call_leaves_the_old_file_or_the_new_one) {
    for (const Change& change : changes) {
        SCOPED_TRACE(change.what);
        ASSERT_TRUE(disk.replace(a, "old") && disk.replace(b, large));
        Power_cut cut(folder);
        const auto look = [&] {
            for (const std::string& left : {cut.under_safe_name("a"), cut.under_name_now("a")}) {
                EXPECT_TRUE(left == "old" || left == change.after) << left.substr(0, 20);
            }
        };
        System_calls::before = [&](const char* call, int descriptor) {
            look();
            if (call == std::string("fsync")) {
                cut.synced(descriptor);
            }
            return true;
        };
        const Result<> done = change.make(disk, a, b);
        System_calls::before = nullptr;
        EXPECT_TRUE(done);
        look();
        if (change.what != std::string("append")) {
            EXPECT_EQ(cut.under_safe_name("a"), change.after) << "what is done stays done";
        }
    }
}

TEST_F(Disk_files_test, what_a_killed_run_leaves_behind_goes_at_the_next_start_and_nothing_else) {
    const auto killed_in_replace = [&] {
        const rlimit small{4096, 4096};
        ::setrlimit(RLIMIT_FSIZE, &small);
        static_cast<void>(disk.replace(a, std::string(100'000, 'x')));
    };
    ASSERT_TRUE(disk.replace(a, "old") && disk.replace(b, "operator's"));
    std::signal(SIGXFSZ, SIG_DFL);
    EXPECT_EXIT(killed_in_replace(), ::testing::KilledBySignal(SIGXFSZ), "");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 4)
        << "a temporary file and a note";
    const std::string journal = disk.program_path(file_names::unfinished);
    // A note that a power failure has cut must not name another file.
    ASSERT_TRUE(disk.append(journal, "99 " + b + '\0' + b + '\0' + b));
    disk.remove_left_behind();
    EXPECT_EQ(disk.read(a), "old");
    EXPECT_EQ(disk.read(b), "operator's");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 2);
}

TEST_F(Disk_files_test, replacing_keeps_access_rights_and_links) {
    ASSERT_TRUE(disk.replace(a, "1"));
    EXPECT_EQ(fs::status(a).permissions(), fs::perms(0644));
    fs::permissions(a, fs::perms(0660));
    fs::create_symlink(a, b);
    ASSERT_TRUE(disk.replace(b, "2"));
    EXPECT_EQ(disk.read(a), "2");
    EXPECT_TRUE(fs::is_symlink(b));
    EXPECT_EQ(fs::status(a).permissions(), fs::perms(0660));
}

TEST_F(Disk_files_test, a_write_protected_file_is_not_replaced) {
    ASSERT_TRUE(disk.replace(a, "old"));
    fs::permissions(folder, fs::perms::all);
    fs::permissions(a, fs::perms(0444));
    const auto try_it = [&] {
        constexpr uid_t nobody = 65534;  // root may write everything
        static_cast<void>(::setuid(nobody) == 0);
        const std::string why = "Permission denied";
        const bool refused =
            disk.replace(a, "new").reason() == why && disk.copy(a, a).reason() == why;
        ::_exit(refused ? 0 : 1);
    };
    EXPECT_EXIT(try_it(), ::testing::ExitedWithCode(0), "");
    EXPECT_EQ(disk.read(a), "old");
}

TEST_F(Disk_files_test, a_program_directory_has_one_user_at_a_time) {
    ::umask(077);
    Qt_desktop_services first("", folder);
    EXPECT_TRUE(first.claim_program_directory());
    fs::permissions(folder, fs::perms::all);
    const auto look_as_another_user = [&](const std::string& says) {
        constexpr uid_t nobody = 65534;
        static_cast<void>(::setuid(nobody) == 0);
        Qt_desktop_services second("", folder);
        const auto claimed = second.claim_program_directory();
        ::_exit(!claimed && claimed.reason().starts_with(says + (says.empty() ? "" : folder)) ? 0
                                                                                              : 1);
    };
    EXPECT_EXIT(look_as_another_user(""), ::testing::ExitedWithCode(0), "");
    fs::permissions(folder + "/Kelvane Lite lock", fs::perms::none);
    EXPECT_EXIT(look_as_another_user("The lock file "), ::testing::ExitedWithCode(0), "");
    fs::permissions(folder, fs::perms::owner_all);
    EXPECT_EXIT(look_as_another_user("The program directory of "), ::testing::ExitedWithCode(0),
                "");
}

TEST_F(Disk_files_test, the_program_directory_is_the_one_that_is_asked_for) {
    const std::string wanted = folder + "/new/folder";
    ::setenv("KELVANE_LITE_DIRECTORY", (wanted + "/").c_str(), 1);
    EXPECT_EQ(find_program_directory(), wanted);
    EXPECT_TRUE(disk.is_folder(wanted));
    EXPECT_EQ(Disk_files(wanted).program_path("\\X"), wanted + "/X");
    ::unsetenv("KELVANE_LITE_DIRECTORY");
}

}  // namespace
}  // namespace kelvane
