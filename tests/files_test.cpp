#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "desktop/disk_files.h"
#include "support/memory_files.h"

// What both the disk and its double must do, so that what is tested on the double holds on the
// disk.

namespace kelvane {
namespace {

struct On_disk {
    On_disk() { ::umask(022); }
    ~On_disk() { std::filesystem::remove_all(folder); }
    static std::string make_folder() {
        std::string name = ::testing::TempDir() + "kelvane-files-XXXXXX";
        return ::mkdtemp(name.data());
    }
    std::string folder = make_folder();
    Disk_files files{folder};
};

struct In_memory {
    std::string folder = "/kelvane";
    testing::Memory_files files{folder};
};

template <typename Kind>
class Files_test : public ::testing::Test {
  protected:
    [[nodiscard]] std::string path(const std::string& name) const {
        return path_in(kind_.folder, name);
    }
    [[nodiscard]] std::string content(const std::string& name) const {
        return kind_.files.read(path(name)).value_or("(missing)");
    }
    Files& files() { return kind_.files; }

  private:
    Kind kind_;
};

using Kinds = ::testing::Types<On_disk, In_memory>;
TYPED_TEST_SUITE(Files_test, Kinds);

TYPED_TEST(Files_test, holds_the_bytes_that_were_written) {
    std::string every_byte;
    for (int byte = 0; byte < 256; ++byte) {
        every_byte += static_cast<char>(byte);
    }
    std::string large;
    while (large.size() < 300'000) {
        large += every_byte;
    }
    for (const std::string& text : {every_byte, large, std::string(), std::string("\r\n")}) {
        EXPECT_TRUE(this->files().replace(this->path("a"), text));
        EXPECT_EQ(this->content("a"), text);
        EXPECT_EQ(this->files().length(this->path("a")), text.size());
    }
    // A name need not be text in any character set.
    EXPECT_TRUE(this->files().replace(this->path("Fr\xE4se"), "1"));
    EXPECT_TRUE(this->files().exists(this->path("Fr\xE4se")));
    EXPECT_FALSE(this->files().exists(this->path("Fr\xE5se")));
}

TYPED_TEST(Files_test, reads_no_more_than_the_start_that_is_asked_for) {
    ASSERT_TRUE(this->files().replace(this->path("a"), "abcdef"));
    EXPECT_EQ(this->files().read_start(this->path("a"), 4), "abcd");
    EXPECT_EQ(this->files().read_start(this->path("a"), 0), "");
    EXPECT_EQ(this->files().read_start(this->path("a"), 99), "abcdef");
}

TYPED_TEST(Files_test, appends_and_creates) {
    EXPECT_TRUE(this->files().append(this->path("a"), "one"));
    EXPECT_TRUE(this->files().append(this->path("a"), ""));
    EXPECT_TRUE(this->files().append(this->path("a"), "two"));
    EXPECT_EQ(this->content("a"), "onetwo");
}

TYPED_TEST(Files_test, copies_and_renames_over_what_was_there) {
    ASSERT_TRUE(this->files().replace(this->path("a"), "new"));
    ASSERT_TRUE(this->files().replace(this->path("b"), "old"));
    ASSERT_TRUE(this->files().replace(this->path("c"), "old"));
    EXPECT_TRUE(this->files().copy(this->path("a"), this->path("b")));
    EXPECT_TRUE(this->files().copy(this->path("a"), this->path("a")));
    EXPECT_TRUE(this->files().rename(this->path("a"), this->path("c")));
    EXPECT_EQ(this->content("a"), "(missing)");
    EXPECT_EQ(this->content("b"), "new");
    EXPECT_EQ(this->content("c"), "new");
}

TYPED_TEST(Files_test, removing_is_done_when_the_file_is_gone) {
    ASSERT_TRUE(this->files().replace(this->path("a"), "1"));
    EXPECT_TRUE(this->files().remove(this->path("a")));
    EXPECT_FALSE(this->files().exists(this->path("a")));
    EXPECT_TRUE(this->files().remove(this->path("a")));
    EXPECT_TRUE(this->files().remove(this->path("no folder/a")));
}

TYPED_TEST(Files_test, tells_files_folders_and_nothing_apart) {
    ASSERT_TRUE(this->files().replace(this->path("a"), "1"));
    EXPECT_TRUE(this->files().exists(this->path("a")));
    EXPECT_FALSE(this->files().is_folder(this->path("a")));
    EXPECT_FALSE(this->files().exists(folder_of(this->path("a"))));
    EXPECT_TRUE(this->files().is_folder(folder_of(this->path("a"))));
    EXPECT_TRUE(this->files().stamp(this->path("a")).has_value());
    EXPECT_FALSE(this->files().stamp(this->path("b")).has_value());
    EXPECT_FALSE(this->files().length(this->path("b")).has_value());
}

TYPED_TEST(Files_test, missing_sources_and_folders_are_failures) {
    EXPECT_FALSE(this->files().read(this->path("a")).has_value());
    EXPECT_FALSE(this->files().copy(this->path("a"), this->path("b")));
    EXPECT_FALSE(this->files().rename(this->path("a"), this->path("b")));
    EXPECT_FALSE(this->files().exists(this->path("b")));
    EXPECT_FALSE(this->files().replace(this->path("no folder/a"), "1"));
    EXPECT_FALSE(this->files().append(this->path("no folder/a"), "1"));
    EXPECT_EQ(this->files().last_error(), "No such file or directory");
}

/// No file may grow beyond `bytes` while this lives: a full disk for one process.
class Full_disk {
  public:
    explicit Full_disk(rlim_t bytes) : old_handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &old_);
        const rlimit limit{bytes, old_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    Full_disk(const Full_disk&) = delete;
    Full_disk& operator=(const Full_disk&) = delete;
    ~Full_disk() {
        ::setrlimit(RLIMIT_FSIZE, &old_);
        std::signal(SIGXFSZ, old_handler_);
    }

  private:
    void (*old_handler_)(int);
    rlimit old_{};
};

TEST(Disk_files_test, a_full_disk_leaves_the_old_content_and_nothing_beside_it) {
    On_disk disk;
    const std::string file = path_in(disk.folder, "a");
    const std::string large(100'000, 'x');
    ASSERT_TRUE(disk.files.replace(file, "old"));
    ASSERT_TRUE(disk.files.replace(path_in(disk.folder, "large"), large));
    {
        const Full_disk full(4096);
        EXPECT_FALSE(disk.files.replace(file, large));
        EXPECT_FALSE(disk.files.append(file, large));
        EXPECT_FALSE(disk.files.append(path_in(disk.folder, "new"), large));
        EXPECT_FALSE(disk.files.copy(path_in(disk.folder, "large"), file));
        EXPECT_EQ(disk.files.last_error(), "File too large");
    }
    EXPECT_EQ(disk.files.read(file), "old");
    const auto entries = std::filesystem::directory_iterator(disk.folder);
    EXPECT_EQ(std::distance(begin(entries), end(entries)), 2);
}

TEST(Disk_files_test, replacing_keeps_access_rights_and_links) {
    On_disk disk;
    const std::string file = path_in(disk.folder, "a");
    const std::string link = path_in(disk.folder, "link");
    ASSERT_TRUE(disk.files.replace(file, "1"));
    const auto mode = [&] { return std::filesystem::status(file).permissions(); };
    EXPECT_EQ(mode(), std::filesystem::perms(0644));
    std::filesystem::permissions(file, std::filesystem::perms(0660));
    std::filesystem::create_symlink(file, link);
    ASSERT_TRUE(disk.files.replace(link, "2"));
    EXPECT_EQ(disk.files.read(file), "2");
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(mode(), std::filesystem::perms(0660));
}

TEST(Disk_files_test, a_write_protected_file_is_not_replaced) {
    On_disk disk;
    const std::string file = path_in(disk.folder, "a");
    ASSERT_TRUE(disk.files.replace(file, "old"));
    std::filesystem::permissions(disk.folder, std::filesystem::perms::all);
    std::filesystem::permissions(file, std::filesystem::perms(0444));
    const auto try_it = [&] {
        constexpr uid_t nobody = 65534;  // root may write everything
        static_cast<void>(::setuid(nobody) == 0);
        const bool refused = !disk.files.replace(file, "new") && !disk.files.copy(file, file);
        ::_exit(refused && disk.files.last_error() == "Permission denied" ? 0 : 1);
    };
    EXPECT_EXIT(try_it(), ::testing::ExitedWithCode(0), "");
    EXPECT_EQ(disk.files.read(file), "old");
}

TEST(Disk_files_test, the_program_directory_is_the_one_that_is_asked_for) {
    On_disk disk;
    const std::string wanted = disk.folder + "/new/folder";
    ::setenv("KELVANE_LITE_DIRECTORY", (wanted + "/").c_str(), 1);
    EXPECT_EQ(find_program_directory(), wanted);
    EXPECT_TRUE(disk.files.is_folder(wanted));
    EXPECT_EQ(Disk_files(wanted).program_path("\\X"), wanted + "/X");
    ::unsetenv("KELVANE_LITE_DIRECTORY");
}

}  // namespace
}  // namespace kelvane
