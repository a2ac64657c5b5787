#pragma once

#include <span>
#include <string>
#include <string_view>

#include "machines/machine_settings.h"

namespace kelvane {

class configure_IO_lite;
class Configure_IO_advanced_lite;

/// The two forms between which a record's controls are divided.
struct Record_forms {
    configure_IO_lite& port;
    Configure_IO_advanced_lite& options;
};

/// How a field stands in its line of the settings file.
struct Field_text {
    std::string (*write)(const MachineSettings&);
    /// A line that says nothing valid leaves the record's value.
    void (*read)(const std::string& line, Old_port_form, MachineSettings&);
};

/// How a field stands in its control.
struct Field_control {
    /// Runs the click handlers of boxes whose value differs. A value that the control cannot have
    /// leaves it as it is.
    void (*show)(Record_forms, const MachineSettings&);
    void (*take)(Record_forms, MachineSettings&);
};

/// One field of a machine's record: all that reading, writing, the forms and docs/manual/files.md
/// know of it.
struct Machine_field {
    std::string_view name;  ///< as docs/manual/files.md has it
    std::string_view form;  ///< of its line, as docs/manual/files.md has it
    Field_text text;
    Field_control control;
};

/// The fields in the order of their lines, line 1 first. A new setting is one row here, beside its
/// member in `MachineSettings`, its control in one of the forms and that control's place in the
/// dialog.
extern const std::span<const Machine_field> machine_fields;

}  // namespace kelvane
