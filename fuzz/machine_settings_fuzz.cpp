// A machine's settings file and the file of port devices: any bytes are read; what was read is
// written and read again as the same.

#include "fuzz_input.h"
#include "machines/machine_settings.h"
#include "machines/port_devices.h"

namespace {

using namespace kelvane;
using namespace kelvane::fuzz;

std::string read_and_written(const std::string& text, Old_port_form form) {
    Text_reader reader{std::string(text)};
    MachineSettings settings;
    read_machine_settings(reader, form, settings);
    require(settings.tape_code >= Tape_code::ascii_even && settings.tape_code <= Tape_code::eia,
            "a tape code");
    require(settings.handshake >= Handshake::none && settings.handshake <= Handshake::both,
            "a handshake");
    require(!settings.handshake_check.empty(), "a handshake check");
    return machine_settings_text(settings);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Fuzz_input input(data, size);
    const Old_port_form form =
        input.yes() ? Old_port_form::from_four : Old_port_form::list_position;
    const int port = input.choice(128) + 1;
    const std::string device(input.text());
    const std::string text(input.rest());
    // A custom end of block that begins with a digit is read as another number, and is none then.
    const std::string written = read_and_written(read_and_written(text, form), form);
    require(read_and_written(written, form) == written, "written settings are read as they were");
    const std::string wired = text_with_device(text, port, "/dev/" + one_line(device));
    require(wired_device(wired, port).has_value(), "a wired port has its device");
    return 0;
}
