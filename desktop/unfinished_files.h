#pragma once

#include <string>
#include <utility>

namespace kelvane {

/// Remembers, in a journal, the files that are being written under a temporary name, so that what a
/// killed run leaves behind is removed by the next one. Only files that this program has just
/// created are put down, so no other's is ever touched.
class Unfinished_files {
  public:
    /// `journal` is the path of a file that belongs to this object; it exists only while it has
    /// something to tell.
    explicit Unfinished_files(std::string journal) : journal_(std::move(journal)) {}

    /// A file on its way to its final name, or to its end, as long as this object lives.
    class Entry {
      public:
        /// `path` has just been created. A journal that cannot be written keeps nothing from going
        /// on.
        Entry(const Unfinished_files& files, const std::string& path);
        Entry(const Entry&) = delete;
        Entry& operator=(const Entry&) = delete;
        ~Entry();

      private:
        const std::string& journal_;
        std::string before_;  ///< what the journal has told before
    };

    /// Removes what an earlier run has left; files in folders that are not there now (a disk that
    /// is not plugged in) stay in the journal.
    void remove_left_behind() const;

  private:
    std::string journal_;
};

}  // namespace kelvane
