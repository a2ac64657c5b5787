#include "session/file_names.h"

#include "session/shared_state.h"

namespace kelvane {

namespace {

std::string machine_file(std::string_view base, std::string_view machine) {
    std::string name(base);
    if (machine != default_machine) {
        name.append(" for ").append(machine);
    }
    return name;
}

}  // namespace

std::string port_settings_name(std::string_view machine) {
    return machine_file(file_names::port_settings, machine);
}

std::string switchbox_name(std::string_view machine) {
    return machine_file(file_names::switchbox_codes, machine);
}

}  // namespace kelvane
