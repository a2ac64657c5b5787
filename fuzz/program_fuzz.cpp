// The whole program in virtual time: any start-up and settings files, any program, any bytes from
// the machine. Whatever happens, closing the window ends it.

#include "frame/program.h"
#include "fuzz_input.h"
#include "session/file_names.h"
#include "support/headless_platform.h"
#include "support/plain_settings.h"

namespace {

using namespace kelvane;
using namespace kelvane::testing;
using namespace std::chrono_literals;

/// Answers every box with "no" or "yes".
class Quick_boxes : public Message_box {
  public:
    explicit Quick_boxes(bool yes) : yes_(yes) {}
    Task<Message_answer> ask(Message message) override {
        if (message.buttons == Message_buttons::yes_no) {
            co_return yes_ ? Message_answer::yes : Message_answer::no;
        }
        co_return Message_answer::ok;
    }

  private:
    bool yes_;
};

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

void run(fuzz::Fuzz_input& input) {
    Headless_platform doubles;
    Quick_boxes boxes(input.yes());
    Platform platform{doubles.loop,    doubles.windows, boxes,           doubles.file_dialog,
                      doubles.printer, doubles.machine, doubles.desktop, doubles.files};
    const std::string port_settings = doubles.files.program_path(file_names::port_settings);
    doubles.files.put(port_settings, settings(input));
    put_files(doubles.files, input);
    doubles.files.put("/nc/PART.NC", std::string(input.text()));
    const auto item = static_cast<std::size_t>(input.choice(6));
    const std::string from_machine(input.text());
    doubles.machine.after(150ms, [&] { doubles.machine.sends(from_machine); });
    doubles.desktop.command = input.text();

    Program program(platform);
    doubles.loop.after(20s, [&program] { program.window.close(); });
    program.start();
    doubles.file_dialog.answers = {"/nc/PART.NC", "/nc/BACK.NC", "/nc/BACK.NC"};
    if (program.window.loaded()) {
        program.window.FileMenuItem[item].click();
    }
    doubles.loop.run_for(30s);
    fuzz::require(!doubles.machine.is_open(), "the port is closed at the end");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Fuzz_input input(data, size);
    run(input);
    return 0;
}
