#pragma once

#include <cstddef>
#include <ctime>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "editing/caret.h"
#include "editing/program_document.h"
#include "editing/recent_programs.h"
#include "platform/event_loop.h"
#include "platform/file_dialog.h"
#include "platform/files.h"
#include "platform/message_box.h"
#include "platform/task.h"

namespace kelvane {

/// The program that the operator reads and edits: a file, or one that has none yet. Its bytes go to
/// the file only by `save` and `save_as`, and nothing drops changes that has not asked before.
class Open_program {
  public:
    Open_program(Event_loop& loop, Files& files, File_dialog& dialog, Message_box& boxes);

    [[nodiscard]] const Program_document& document() const { return document_; }
    /// What is to be shown: of a program that is being read, its first part.
    [[nodiscard]] Text_view view() const;
    /// Only within `document()`; while a program is being read it has no effect.
    Caret caret;
    /// Empty for a new program.
    [[nodiscard]] const std::string& path() const { return path_; }
    /// The file's own name, or "New program".
    [[nodiscard]] std::string title() const;
    /// The name of the file that is being loaded, or was last.
    [[nodiscard]] std::string name_loading() const;
    [[nodiscard]] bool changed() const { return document_.changed(); }
    [[nodiscard]] bool loading() const { return loading_.has_value(); }
    /// Percent of the file that have been read; 100 when none is being read.
    [[nodiscard]] int percent_loaded() const;
    /// False for a program above `Program_document::max_editable`, and while one is read.
    [[nodiscard]] bool editable() const { return !loading() && document_.editable(); }
    [[nodiscard]] const std::vector<std::string>& recent() const { return recent_.paths(); }

    /// Replaces what is selected. False, and nothing changed: not editable, or too long.
    bool type(std::u16string_view text);
    /// Takes the selection away, or the character before (`backwards`) or behind the caret.
    bool erase(bool backwards);
    /// Replaces bytes as one step and puts the caret behind them.
    bool replace(std::size_t at, std::size_t removed, const std::string& added);
    void undo();
    void redo();
    /// The caret to the start of a line, from 0.
    void go_to_line(std::size_t line);
    /// What is typed next is a step of its own for undo.
    void end_step() { document_.end_step(); }

    // Each of the following asks before changes are lost, and says in a box what has failed.

    Task<> start_new();
    Task<> choose_and_open();
    Task<> open(std::string path);
    /// False when the operator has cancelled or the file could not be written; the text is as it
    /// was.
    Task<bool> save();
    Task<bool> save_as();
    /// Save, Discard or Cancel when there are changes. True: they are saved or may be lost.
    Task<bool> may_be_lost();
    /// As `may_be_lost` when `path` is this program's file, which is about to be read for `purpose`
    /// ("sent", "printed"); changes that are not saved stay in the pane.
    Task<bool> may_be_read(std::string path, std::string purpose);
    /// Reads the file again when others have changed it and the operator has not.
    Task<> look_at_file();

    /// For an end of the program that nobody can be asked about. What an earlier run has kept and
    /// this one could not read is put aside, not lost.
    void keep_for_next_run();
    /// The program that was kept so, with its changes; the file goes once they are saved or
    /// discarded. One that cannot be read is told.
    Task<> take_up_from_last_run();

    /// Called after every change of anything above.
    std::function<void()> on_change;

  private:
    /// What the file held when it was read or written last.
    struct On_disk {
        std::size_t length = 0;
        std::size_t hash = 0;
    };
    enum class File_state { as_known, changed, gone, unreadable };

    Task<bool> load(std::string path);
    Task<> load_anew(std::string path);
    Task<bool> saved_or_discarded(std::string text);
    Task<> tell(std::string text);
    [[nodiscard]] File_state file_state() const;
    Task<bool> may_overwrite(std::string path);
    Task<bool> write(std::string path);
    void take_up(const std::string& kept_text, std::size_t path_end);
    void forget_kept();
    void become(std::string path, Program_document document);
    void edited(std::size_t place);
    void tell_change() const;

    Event_loop& loop_;
    Files& files_;
    File_dialog& dialog_;
    Message_box& boxes_;
    Recent_programs recent_;

    std::string path_;
    Program_document document_;
    On_disk on_disk_;
    std::optional<Program_document> loading_;
    std::string loading_path_;
    std::size_t loading_length_ = 0;
    Line_index first_lines_;       ///< of the part of `loading_` that is shown
    std::size_t shown_first_ = 0;  ///< its length
    int newest_load_ = 0;
    bool kept_ = false;  ///< the changes are in the file of kept ones
};

}  // namespace kelvane
