#pragma once

#include <string>

#include "desktop/unfinished_files.h"
#include "platform/files.h"

namespace kelvane {

/// The files of the disk, by the system's own calls: a path's bytes reach the system as they are,
/// whether or not they are text in the user's character set, and a failed sync is noticed.
class Disk_files : public Files {
  public:
    /// `program_directory` exists and has no separator at its end.
    explicit Disk_files(std::string program_directory);

    [[nodiscard]] std::string program_directory() const override { return program_directory_; }
    [[nodiscard]] bool exists(const std::string& path) const override;
    [[nodiscard]] bool is_folder(const std::string& path) const override;
    [[nodiscard]] Result<std::string> read(const std::string& path) const override;
    [[nodiscard]] Result<std::string> read_part(const std::string& path, std::uint64_t from,
                                                std::size_t count) const override;
    [[nodiscard]] Result<> replace(const std::string& path, std::string_view content) override;
    [[nodiscard]] Result<> try_out(const std::string& path) override;
    [[nodiscard]] Result<> append(const std::string& path, std::string_view content) override;
    [[nodiscard]] Result<> sync(const std::string& path) override;
    [[nodiscard]] Result<> copy(const std::string& from, const std::string& to) override;
    [[nodiscard]] Result<> rename(const std::string& from, const std::string& to) override;
    Result<> remove(const std::string& path) override;
    [[nodiscard]] Result<std::uint64_t> length(const std::string& path) const override;
    [[nodiscard]] Result<File_time> stamp(const std::string& path) const override;

    /// Removes the temporary files that an earlier run has left behind; only one that runs alone on
    /// the program directory may.
    void remove_left_behind() const { unfinished_.remove_left_behind(); }

  private:
    std::string program_directory_;
    Unfinished_files unfinished_;
};

/// Where the program keeps its own files: `KELVANE_LITE_DIRECTORY` when that is set, else the
/// executable's folder when it can be written, else the user's data folder. It is created when it
/// is missing.
std::string find_program_directory();

}  // namespace kelvane
