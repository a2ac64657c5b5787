#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "platform/message_box.h"
#include "platform/task.h"

namespace kelvane {

/// The operator at the main window, as the routines see them: the editor that doubles as the
/// transfer log, the progress bar, the status bar's note, questions and the beep.
class Operator {
  public:
    virtual ~Operator() = default;

    /// Replaces the editor's text, by a program or a line of the transfer log; caret at its start.
    virtual void show_text(const std::string& text) = 0;
    /// The same with a text that may be long: it is shared, not copied.
    virtual void show_program(std::shared_ptr<const std::string> program) = 0;
    /// The editor's text as it stands, with what the operator has typed.
    [[nodiscard]] virtual const std::string& shown_text() const = 0;
    /// Inserts at the caret, which stays where it is.
    virtual void insert_text(const std::string& text) = 0;
    /// Selects `length` bytes of the editor's text from byte `offset` on and scrolls to them.
    virtual void select_text(std::size_t offset, std::size_t length) = 0;
    /// Paints at once what the editor holds, without waiting for the next wait.
    virtual void repaint() = 0;

    /// 0..100.
    virtual void set_progress(int percent) = 0;
    /// A note in the status bar beside the idle machine; it stays until the next transfer begins.
    virtual void set_note(const std::string& note) = 0;
    /// Offers to open that file with the system's program for it, until the next offer; an empty
    /// path takes the offer back.
    virtual void offer_file(const std::string& path) = 0;
    virtual void beep() = 0;

    /// Asks in the file dialog, which has that title and proposes that path, where to save, and
    /// before a file is written over. No value when the operator cancels.
    virtual Task<std::optional<std::string>> ask_save_path(std::string title,
                                                           std::string proposed) = 0;
    /// Opens the configuration of the serial port.
    virtual void configure() = 0;
    /// Shows a modal message and waits for its answer.
    virtual Task<Message_answer> ask(Message message) = 0;
    /// A critical, or other, box with the product's name, or `title`.
    Task<Message_answer> box(std::string text, Message_icon icon = Message_icon::critical,
                             Message_buttons buttons = Message_buttons::ok,
                             std::string title = std::string(product_name)) {
        return ask({std::move(text), std::move(title), icon, buttons});
    }
};

}  // namespace kelvane
