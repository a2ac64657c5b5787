// The whole program in virtual time: any start-up and settings files, any program, any bytes from
// the machine. Whatever happens, closing the window ends it.

#include "frame/program.h"
#include "fuzz_input.h"
#include "session/file_names.h"
#include "shop_whims.h"
#include "support/headless_platform.h"
#include "support/plain_settings.h"

namespace {

using namespace kelvane;
using namespace kelvane::testing;
using namespace std::chrono_literals;

void put_files(Memory_files& files, fuzz::Fuzz_input& input) {
    for (const std::string_view name :
         {file_names::settings, file_names::default_directories, file_names::default_file_types,
          file_names::page_layout, file_names::machine_list, file_names::port_settings,
          file_names::switchbox_codes, file_names::exclamation_delay,
          file_names::resequence_options, file_names::serial_port_devices}) {
        if (input.yes()) {
            files.put(files.program_path(name), std::string(input.text()));
        }
    }
}

/// Plain settings with a few lines that are anything.
std::string settings(fuzz::Fuzz_input& input) {
    Setting_lines lines;
    for (int count = input.choice(5); count > 0; --count) {
        const int number = input.choice(25) + 1;
        lines.emplace_back(number, std::string(input.text()));
    }
    return plain_settings(lines);
}

/// Closes the window until it is gone; one that stays for what could not be saved is ended from
/// outside.
void end(Program& program, Virtual_loop& loop, const bool& ended) {
    for (int times = 0; times < 3 && !ended; ++times) {
        program.window.close();
        loop.run_for(10s);
    }
    if (!ended) {
        program.end_unasked();
    }
    loop.run_for(10s);
}

void run(fuzz::Fuzz_input& input) {
    Headless_platform desk;
    desk.files.put(desk.files.program_path(file_names::port_settings), settings(input));
    put_files(desk.files, input);
    desk.files.put("/nc/PART.NC", std::string(input.text()));
    const auto item = static_cast<std::size_t>(input.choice(6));
    const std::string from_machine(input.text());
    desk.machine.after(150ms, [&] { desk.machine.sends(from_machine); });
    desk.desktop.command = input.text();
    fuzz::answer_by(input, desk, "/nc/BACK.NC");

    Program program(desk.platform);
    program.start();
    if (program.window.loaded()) {
        program.window.FileMenuItem[item].click();
    }
    desk.loop.run_for(20s);
    end(program, desk.loop, desk.windows.ended);
    fuzz::require(desk.windows.ended && !desk.machine.is_open(), "the port is closed at the end");
    fuzz::require(program.window.tasks.empty(), "nothing goes on after the end");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Fuzz_input input(data, size);
    run(input);
    fuzz::require_no_failure();
    return 0;
}
