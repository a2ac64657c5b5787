#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "machines/machine_settings.h"
#include "platform/controls.h"

namespace kelvane {

class configure_IO_lite;

/// Check boxes of which at most one is set.
class Box_group {
  public:
    explicit Box_group(std::vector<Check_box*> boxes) : boxes_(std::move(boxes)) {}

    [[nodiscard]] const std::vector<Check_box*>& boxes() const { return boxes_; }
    /// Sets a box, whose click handler runs when it was not set.
    void set(std::size_t position) { boxes_.at(position)->set_checked(true); }
    /// Position of the last box that is set; no value when none is.
    [[nodiscard]] std::optional<std::size_t> last_set() const;
    void clear_all_but(const Check_box& kept);
    void enable(bool enabled);

  private:
    std::vector<Check_box*> boxes_;
};

/// The three groups of the configuration form, which boxes exclude and enable one another in, and
/// the guard that keeps a group from staying empty. The positions of the boxes are the codes of the
/// settings file.
class Record_boxes {
  public:
    /// Takes the click handlers of the form's boxes.
    explicit Record_boxes(configure_IO_lite& form);

    /// Sets the one box and clears the others; all for an unknown end of block. The custom text can
    /// be edited when it counts.
    void show_end_of_block(End_of_block end_of_block, const std::string& custom);
    /// Sets the usual box of a group that has none.
    void guard();

    Box_group tape_codes;
    Box_group handshakes;
    Box_group ends_of_block;

  private:
    void ascii_clicked(Check_box& box);
    void eia_clicked();
    void end_of_block_clicked(Check_box& box);
    void enable_ends_of_block(bool enabled);

    configure_IO_lite& form_;
};

}  // namespace kelvane
