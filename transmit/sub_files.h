#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/files.h"
#include "platform/lines.h"
#include "transmit/sub_call.h"

namespace kelvane {

/// Why a program cannot be sent with its sub-files.
struct Expansion_error {
    std::string file;      ///< path of the file that holds the line
    std::size_t line = 0;  ///< 1 is the first; 0: the file as a whole
    std::string reason;    ///< a sentence for the operator

    bool operator==(const Expansion_error&) const = default;
};

/// The text of the critical box: file, line number and reason, a line each.
[[nodiscard]] std::string expansion_error_text(const Expansion_error& error);

/// Levels of sub-files below the main program.
inline constexpr std::size_t max_sub_depth = 7;

/// More than this many bytes of expansion are refused: they could not be sent in a lifetime, and
/// sums beyond would leave 64 bits.
inline constexpr std::uint64_t max_expansion = 1'000'000'000'000'000;

/// Called files are kept in memory from `Sub_file_reader::check` on up to so many bytes in all.
inline constexpr std::size_t kept_sub_file_bytes = std::size_t{8} << 20U;

/// The program's lines one after the other, every call of a sub-file (see `parse_sub_call`)
/// replaced by that file's lines:
///
///     (BEGINNING OF SUB FILE name)      once for all repeats, the name as the call has it
///     the file's lines, as often as the call says, without those of `left_out_of_sub_file`
///     (END OF SUB FILE name)
///     ...
///     (END OF MAIN PROGRAM)             when the main program called a sub-file: last of all, but
///                                       before the tape mark "%" that closes the main program,
///                                       behind which a control may listen no more
///
/// A program without calls passes unchanged. A name that is no absolute path is looked for beside
/// the calling file, then in the default directory if there is one. In the seam comments brackets
/// and "%" of a name stand as "-". A called file is treated as the working copy of a main program
/// is: a tape image loses its parity bits, and an end-of-file mark is left out.
///
/// The expansion is never built: in memory are the called files up to `kept_sub_file_bytes`, so
/// that a slow disk cannot hold the machine in the middle of a cut; beyond that the files that are
/// open at the moment (one a level), read again; and the calls that the files hold.
class Sub_file_reader {
  public:
    /// `fileno` of `Get_next_line` that begins again from the first line.
    static constexpr int reset = 9999;

    explicit Sub_file_reader(const Files& files) : files_(files) {}

    using Content = std::shared_ptr<const std::string>;

    /// `main` is the working copy of the main program, `real_main` the operator's own file, whose
    /// name messages show and whose folder is the first to look in.
    void open(const Content& main, std::string real_main, std::string default_directory);

    /// Looks through the next `budget` bytes of the main program. True when no more are left, of
    /// which `check` looks through all.
    bool look_through_main(std::size_t budget);

    /// Reads every called file once and tries the whole expansion: an unreadable file, a missing
    /// sub-file, a call of itself (directly or through others), an eighth level, a bad repeat count
    /// or an expansion beyond `max_expansion`. No value: all is well and lines can be read.
    [[nodiscard]] std::optional<Expansion_error> check();

    /// The sum of (length + 2) of all lines that one pass gives, seam comments included. Valid
    /// after a `check()` without error.
    [[nodiscard]] std::uint64_t total() const { return total_; }
    /// Lines of the main program. Valid after `check()`.
    [[nodiscard]] std::size_t main_lines() const { return main_file_->lines; }

    /// With `reset` begins again and leaves `line` alone; with any other number the next line,
    /// without its end. False at the end, before a successful `check()`, and after an `error()`.
    bool Get_next_line(int fileno, std::string& line);

    /// The working copy's line, from 1, that has been returned last, or that calls the file whose
    /// lines are being returned; 0 before the first.
    [[nodiscard]] std::size_t main_line() const { return main_line_; }

    /// Byte offset in the working copy at which the line just returned begins; none for the lines
    /// of called files, for seam comments and before the first line.
    [[nodiscard]] std::optional<std::size_t> main_offset() const { return main_offset_; }

    /// Why lines ended before the program did: a called file has gone, or has changed since
    /// `check()` (two versions must not be mixed in one part). One that is kept in memory is looked
    /// at, and read again only if its length or its time of change is another; where the system
    /// cannot look, what is kept is sent.
    [[nodiscard]] const std::optional<Expansion_error>& error() const { return error_; }

  private:
    struct Program_file;

    /// Tells versions of a file apart without reading it.
    struct Version {
        std::uint64_t length = 0;
        File_time stamp;

        bool operator==(const Version&) const = default;
    };

    struct Call_site {
        std::size_t offset = 0;  ///< where its line begins
        std::size_t line = 0;
        Sub_call call;
        const Program_file* target = nullptr;
    };

    struct Program_file {
        std::string path;
        Version version;  ///< on the disk, before it was read; of called files
        std::size_t length = 0;
        std::size_t hash = 0;                     ///< of a called file
        std::size_t looked_through = 0;           ///< bytes
        std::size_t lines = 0;                    ///< in them
        Content kept;                             ///< null: read again at every call
        std::uint64_t own_bytes = 0;              ///< of the lines that are sent themselves
        std::optional<std::size_t> closing_mark;  ///< where the "%" begins with which the file ends
        std::vector<Call_site> calls;

        /// Has seen a line: behind a closing mark are blank lines and other tape marks only.
        void note_closing_mark(std::string_view line, std::size_t offset);
    };

    struct Level {
        Level(const Program_file& the_file, Content its_content, std::string as_called, int passes)
            : file(&the_file),
              content(std::move(its_content)),
              name(std::move(as_called)),
              passes_left(passes) {}
        [[nodiscard]] Lines first_lines() const { return Lines(without_end_mark(*content)); }

        const Program_file* file;
        Content content;
        std::string name;
        int passes_left;  ///< this one included
        Lines lines = first_lines();
        std::size_t next_call = 0;
        bool pass_gave_lines = false;
    };

    [[nodiscard]] Result<Version> version_of(const std::string& path) const;
    [[nodiscard]] Result<Content> sub_content(const std::string& path) const;
    [[nodiscard]] std::string find(const std::string& name, const std::string& caller) const;
    Program_file& add_file(const std::string& path, const Content& content, bool kept);
    bool look_through(Program_file& file, std::string_view content, std::size_t budget) const;
    [[nodiscard]] bool keeps(std::size_t length);
    Program_file* target_of(const Program_file& caller, const Call_site& site);
    [[nodiscard]] std::optional<std::uint64_t> measure(Program_file& file);
    [[nodiscard]] std::optional<std::uint64_t> measure_call(const Program_file& caller,
                                                            Call_site& site);
    std::nullopt_t fail(const Program_file& file, std::size_t line, std::string reason);

    [[nodiscard]] bool calls_sub_files() const { return main_ != nullptr && !main_->calls.empty(); }
    void begin_again();
    [[nodiscard]] bool enter(const Call_site& site, std::string& line);
    [[nodiscard]] bool may_have_changed(const Program_file& file) const;
    [[nodiscard]] Content unchanged_content(const Call_site& site);
    [[nodiscard]] bool leave_pass(std::string& line);
    [[nodiscard]] bool say_end_of_main(std::string& line);
    [[nodiscard]] bool next_of_level(std::string& line);

    const Files& files_;
    std::string real_main_;
    std::string default_directory_;

    std::map<std::string, Program_file> known_;
    Program_file* main_file_ = nullptr;
    const Program_file* main_ = nullptr;  ///< the same once it has been found good
    std::uint64_t total_ = 0;
    std::size_t kept_bytes_ = 0;

    std::vector<const Program_file*> chain_;  ///< of `measure`: the main program first
    std::map<std::pair<const Program_file*, std::size_t>, std::uint64_t> measured_;

    std::vector<Level> levels_;
    bool main_end_said_ = false;
    std::optional<std::size_t> main_offset_;
    std::size_t main_line_ = 0;
    std::optional<Expansion_error> error_;
};

}  // namespace kelvane
