#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

/// What a window shows and the operator works with, as plain values. The window layer binds a
/// widget to each control, shows what it holds whenever `observe`'s callback runs, and reports the
/// operator's doings through the members named below; so a form behaves the same without windows.
class Control {
  public:
    /// `name` is the control's name in the program, also the widget's object name.
    explicit Control(std::string name, std::string caption = {});
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;
    virtual ~Control() = default;

    [[nodiscard]] const std::string& name() const { return name_; }
    /// "&" marks the access key, "&&" is one "&".
    [[nodiscard]] const std::string& caption() const { return caption_; }
    void set_caption(std::string caption);
    [[nodiscard]] bool enabled() const { return enabled_; }
    void set_enabled(bool enabled);
    [[nodiscard]] bool visible() const { return visible_; }
    void set_visible(bool visible);

    /// The window layer's callback, run after every change of anything the control shows; an empty
    /// function ends the observation. There is at most one observer.
    void observe(std::function<void()> changed) { observer_ = std::move(changed); }

  protected:
    void changed() const;

  private:
    std::string name_;
    std::string caption_;
    bool enabled_ = true;
    bool visible_ = true;
    std::function<void()> observer_;
};

/// A push button or a menu item.
class Button : public Control {
  public:
    using Control::Control;
    /// The operator's click; nothing happens on a disabled button.
    void click();
    std::function<void()> on_click;
    /// Of a menu item: "Ctrl+S"; and whether a line parts it from the items above.
    std::string shortcut;
    bool begins_group = false;
};

/// A check box: 0 cleared, 1 checked, 2 greyed. A value that differs from the old one runs
/// `on_click`, whether code or the operator set it.
class Check_box : public Control {
  public:
    using Control::Control;
    [[nodiscard]] int value() const { return value_; }
    [[nodiscard]] bool checked() const { return value_ == 1; }
    /// Values outside 0..2 are ignored.
    void set_value(int value);
    void set_checked(bool checked) { set_value(checked ? 1 : 0); }
    /// The operator's click, which toggles; nothing happens on a disabled box.
    void click();
    std::function<void()> on_click;

  private:
    int value_ = 0;
};

/// One of a group of options, of which setting one clears the others.
class Option_button : public Control {
  public:
    using Control::Control;
    /// The other members of the group; given once, when the form is built.
    void join(Option_button& other);
    [[nodiscard]] bool value() const { return value_; }
    void set_value(bool value);
    void click();
    std::function<void()> on_click;

  private:
    std::vector<Option_button*> others_;
    bool value_ = false;
};

/// A line of text.
class Text_box : public Control {
  public:
    using Control::Control;
    [[nodiscard]] const std::string& text() const { return text_; }
    /// Runs `on_change` when the text differs.
    void set_text(std::string text);
    /// Enter pressed in the field.
    void press_enter();

    /// Which typed characters the window layer takes; empty: all. Pasted text is not filtered.
    std::function<bool(char)> accepts_key;
    std::function<void()> on_change;
    std::function<void()> on_enter;
    /// The whole text is selected when the field receives the focus.
    bool selects_all_on_focus = false;

  private:
    std::string text_;
};

/// A list of texts of which one may be selected.
class List_box : public Control {
  public:
    using Control::Control;
    [[nodiscard]] const std::vector<std::string>& items() const { return items_; }
    [[nodiscard]] std::size_t count() const { return items_.size(); }
    void set_items(std::vector<std::string> items);
    void add(std::string item);
    /// Out of range: nothing happens. The selection stays on its item, or is gone with it.
    void remove(int position);
    void clear();
    /// -1: none.
    [[nodiscard]] int selected() const { return selected_; }
    /// Empty when nothing is selected.
    [[nodiscard]] std::string selected_text() const;
    /// Selection by code, which is no mouse click: no handler runs. Positions that do not exist
    /// clear the selection.
    void select(int position);
    /// The operator chooses an item, by mouse or keyboard: selects it, then runs `on_mouse_down`.
    void choose(int position);
    void double_click();
    std::function<void()> on_mouse_down;
    std::function<void()> on_double_click;
    /// Changes whenever the items do, so that the window layer fills its list only then.
    [[nodiscard]] unsigned revision() const { return revision_; }

  private:
    void items_changed();
    std::vector<std::string> items_;
    int selected_ = -1;
    unsigned revision_ = 0;
};

/// A text that is only shown; what it shows is its caption.
class Label : public Control {
  public:
    using Control::Control;
    /// Set when the caption is a plain text, in which "&" is just that.
    bool plain = false;
};

/// A spinner's or scroll bar's position.
class Scroll_bar : public Control {
  public:
    Scroll_bar(std::string name, int minimum, int maximum);
    [[nodiscard]] int minimum() const { return minimum_; }
    [[nodiscard]] int maximum() const { return maximum_; }
    [[nodiscard]] int value() const { return value_; }
    /// Values outside the range are brought to its ends. A change runs `on_change`.
    void set_value(int value);
    std::function<void()> on_change;

  private:
    int minimum_;
    int maximum_;
    int value_;
};

/// Progress in percent, 0..100.
class Progress_bar : public Control {
  public:
    using Control::Control;
    [[nodiscard]] int value() const { return value_; }
    void set_value(int percent);
    /// Something goes on of which nobody knows how much there is.
    [[nodiscard]] bool busy() const { return busy_; }
    void set_busy(bool busy);

  private:
    int value_ = 0;
    bool busy_ = false;
};

/// What goes on, to be read from a distance.
class State_field : public Control {
  public:
    using Control::Control;
    enum class Kind : char { none, running, waiting, held, done, stopped, failed };
    struct View {
        Kind kind = Kind::none;  ///< `none`: nothing has gone on yet
        std::string words;       ///< "Held by Xoff"
        std::string share;       ///< "21 %"
        std::string details;     ///< whose, how far, since when
        std::string advice;      ///< what to look at; empty unless something is
        bool operator==(const View&) const = default;
    };
    [[nodiscard]] const View& view() const { return view_; }
    void set_view(View view);

  private:
    View view_;
};

/// A log that is only shown, and copied: parts of one or more lines, which are added at its end and
/// fall off its start. None but the last part ever changes.
class Log_text : public Control {
  public:
    enum class Side : char { plain, outgoing, incoming };
    struct Part {
        std::string text;  ///< lines with a line feed between them
        Side side = Side::plain;
    };
    using Control::Control;
    [[nodiscard]] const std::deque<Part>& parts() const { return parts_; }
    /// How many parts have fallen off so far.
    [[nodiscard]] std::uint64_t position_of_first() const { return fallen_; }
    void add(std::vector<Part> parts);
    /// There is one.
    void replace_last(std::string text);
    /// All, when there are fewer.
    void drop_first(std::uint64_t count);
    void clear() { drop_first(parts_.size()); }
    /// Puts what the operator has selected, or else all, on the clipboard.
    void copy() const;
    /// The window layer's.
    std::function<void()> on_copy;

  private:
    std::deque<Part> parts_;
    std::uint64_t fallen_ = 0;
};

/// Rows of texts under columns with headings, which are only shown.
class Table : public Control {
  public:
    using Control::Control;
    using Row = std::vector<std::string>;
    [[nodiscard]] const std::vector<std::string>& columns() const { return columns_; }
    [[nodiscard]] const std::vector<Row>& rows() const { return rows_; }
    void set_columns(std::vector<std::string> columns);
    void set_rows(std::vector<Row> rows);

  private:
    std::vector<std::string> columns_;
    std::vector<Row> rows_;
};

/// The editor pane: a read-only text with a selection. Positions are byte offsets into the text as
/// it was set, so a CR LF counts two.
class Rich_text : public Control {
  public:
    using Control::Control;
    [[nodiscard]] const std::string& text() const { return *text_; }
    /// Sets the whole text; the selection becomes empty at the start.
    void set_text(std::string text);
    /// The same with a text that is there already, and is not copied.
    void share_text(std::shared_ptr<const std::string> text);
    /// Inserts at the start of the selection and leaves the caret before what was inserted.
    void insert(std::string_view text);
    [[nodiscard]] std::size_t selection_start() const { return selection_start_; }
    [[nodiscard]] std::size_t selection_length() const { return selection_length_; }
    /// Positions beyond the end are brought to it.
    void select(std::size_t start, std::size_t length);
    /// Changes whenever the text does, so that the window layer sets its text only then.
    [[nodiscard]] unsigned revision() const { return revision_; }

  private:
    std::shared_ptr<const std::string> text_ = std::make_shared<const std::string>();
    std::size_t selection_start_ = 0;
    std::size_t selection_length_ = 0;
    unsigned revision_ = 0;
};

}  // namespace kelvane
