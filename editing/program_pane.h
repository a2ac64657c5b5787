#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include "editing/caret.h"
#include "editing/open_program.h"
#include "platform/controls.h"
#include "platform/desktop_services.h"

namespace kelvane {

/// The editor pane, which has two contents: the program that is open, and the log, the texts of
/// transfers and reports. The log comes to the front with each text that is written into it and
/// gives way to the program when it is emptied, or put aside by the operator.
class Program_pane : public Control {
  public:
    enum class Content { program, log };

    /// `transfer_runs`: nothing may be edited meanwhile.
    Program_pane(Rich_text& log, Open_program& program, Desktop_services& desktop, Files& files,
                 std::function<bool()> transfer_runs);
    ~Program_pane() override;

    [[nodiscard]] Content content() const;
    /// The content shown; valid until it changes.
    [[nodiscard]] Text_view text() const;
    [[nodiscard]] Caret& caret();
    [[nodiscard]] const Caret& caret() const;
    [[nodiscard]] Open_program& program() { return program_; }
    [[nodiscard]] bool read_only() const;
    /// "PART.NC, changed" or what else is shown, and where the caret stands.
    [[nodiscard]] std::string note() const;

    [[nodiscard]] bool has_log() const { return !log_.text().empty(); }
    /// A log text is put aside or brought back; without one nothing happens.
    void show_program();
    void show_log();

    // --- The block being sent
    /// Its first byte and length; no value while none is marked.
    struct Band {
        std::size_t begin, length;
        bool operator==(const Band&) const = default;
    };
    [[nodiscard]] std::optional<Band> band() const;
    /// A block is marked, and the pane does not scroll with it or shows something else.
    [[nodiscard]] bool band_is_away() const;
    /// The pane scrolls with the band, until the operator scrolls.
    [[nodiscard]] bool following() const { return following_; }
    void stop_following();
    void follow();

    // --- Editing; nothing happens while the pane is read-only.
    void type(std::u16string_view text);
    void erase(bool backwards);
    bool replace(std::size_t at, std::size_t removed, const std::string& added);
    void undo();
    void redo();
    void cut();
    void copy() const;
    void paste();
    void select_all();
    /// The operator moves the caret by key or mouse.
    void step(Caret_step step, bool select, std::size_t page);
    void moved();

    /// Letters in percent of their usual size, 50 to 400; remembered from run to run.
    [[nodiscard]] int zoom() const { return zoom_; }
    void set_zoom(int percent);
    /// Larger by so many steps, smaller by negative ones.
    void zoom_by(int steps);

    /// Finds the lines of a long log, `budget` bytes at a time. True when all is done; before that
    /// the part is shown that is.
    bool prepare(std::size_t budget);
    /// Grows when another text is shown, or the same with other bytes.
    [[nodiscard]] std::uint64_t revision() const { return revision_; }

  private:
    void log_changed();
    void content_changed();
    [[nodiscard]] bool may_edit() const { return !read_only(); }

    Rich_text& log_;
    Open_program& program_;
    Desktop_services& desktop_;
    Files& files_;
    std::function<bool()> transfer_runs_;

    unsigned log_revision_;
    Line_index log_lines_;
    Text_encoding log_encoding_ = Text_encoding::latin1;
    bool log_ready_ = true;
    Caret log_caret_;
    bool log_aside_ = false;
    bool following_ = true;
    int zoom_ = 100;
    std::uint64_t revision_ = 0;
};

}  // namespace kelvane
