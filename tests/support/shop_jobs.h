#pragma once

#include <functional>
#include <string>
#include <vector>

#include "support/shop_floor.h"

namespace kelvane::testing {

/// What an operator does in one go, from the click until all is done or has been given up.
struct Shop_job {
    /// What may be gone when it is done: the program that stood in a file, what had been received
    /// and not saved.
    enum May_go { nothing = 0, old_program = 1, left = 2 };

    const char* what;
    std::function<void(Shop_floor&)> run;
    const char* machine = "Mill";  ///< "Lathe" saves programs separately
    const char* command_line = "";
    int may_go = nothing;
};

inline const std::string job_part = "%\r\nO1\r\nN1G0X1\r\nCALL SUB.NC\r\n!\r\nN2M30\r\n%\r\n";
/// What an earlier run has received and not saved.
inline const std::string job_left = "LEFT\n";
inline const std::string job_wire = "%\r\nO1\r\nN1G0X7\r\nO2\r\nN1G0X8\r\n%\r\n";

/// Files of two machines with all that they can have, and an operator's folder. Boxes are answered
/// as by one who wants the work done.
inline void furnish(Shop_floor& shop, const std::string& machine = "Mill") {
    using namespace file_names;
    const auto own = [&shop](std::string_view name, const std::string& content) {
        shop.desk.files.put(shop.desk.files.program_path(name), content);
    };
    shop.machine_file("Lathe", {{18, "1"}});
    shop.machine_file("Mill");
    own(settings, machine == "Mill" ? "1\r\nMill\r\n" : "2\r\nLathe\r\n");
    own(machine_list, "Mill\r\nLathe\r\n");
    own(port_settings, plain_settings());
    own("\\Switchbox codes for Mill", "<2>\r\n");
    own(serial_port_devices, "COM1=/dev/ttyUSB0\r\n");
    own(exclamation_delay, "10\r\n");
    own(default_directories, "/nc\r\n\r\n\r\n\r\n\r\n\r\n");
    own(default_file_types, "NC|*.nc\r\n\r\n1\r\n0\r\n");
    own(transfer_log, "a line\r\n");
    own(unsaved_program, "/nc/KEPT.NC\nkept text\r\n");
    own(reception_note, "Mill\r\n/nc/LOST.NC\r\nraw\r\n");
    own(scratch, job_left);
    for (const char* name : {"PART.NC", "OTHER.NC", "PART.NC O 1"}) {
        shop.program(name, job_part + "(" + name + ")\r\n");
    }
    shop.program("SUB.NC", "N7G1\r\n");
    shop.boxes().otherwise = [](const Message& message) {
        return message.buttons == Message_buttons::yes_no                ? Message_answer::yes
               : message.buttons == Message_buttons::save_discard_cancel ? Message_answer::save
                                                                         : Message_answer::ok;
    };
}

/// Lets the window's tasks end; what waits longer than a minute is stopped.
inline void until_done(Shop_floor& shop) {
    for (int presses = 0; presses < 3 && !shop.window().tasks.empty(); ++presses) {
        const Clock_time end = shop.desk.loop.now() + 60s;
        shop.desk.loop.after(60s, [] {});
        shop.desk.loop.run_until(
            [&] { return shop.window().tasks.empty() || shop.desk.loop.now() >= end; });
        if (!shop.window().tasks.empty()) {
            shop.window().Stop_button.click();
        }
    }
    shop.desk.file_dialog.answers.clear();
}
/// A File command, with bytes that the machine begins to send 300 ms later.
inline void file_job(Shop_floor& shop, std::size_t item, const std::string& bytes,
                     const std::string& name = "PART.NC") {
    shop.machine().after(300ms, [&shop, bytes] { shop.machine().sends(bytes); });
    shop.pick(item, name);
    until_done(shop);
}

/// False when PART.NC could not be opened.
inline bool open_in_editor(Shop_floor& shop) {
    shop.all().edit_commands.open_file("/nc/PART.NC");
    until_done(shop);
    return shop.all().open_program.title() == "PART.NC";
}

inline const std::vector<Shop_job>& shop_jobs() {
    static const std::vector<Shop_job> jobs = {
        {"send", [](Shop_floor& shop) { file_job(shop, 0, xon); }},
        {"binary send", [](Shop_floor& shop) { file_job(shop, 4, xon); }},
        {"receive", [](Shop_floor& shop) { file_job(shop, 1, job_wire); }, "Mill", "",
         Shop_job::old_program | Shop_job::left},
        {"receive separately", [](Shop_floor& shop) { file_job(shop, 1, job_wire); }, "Lathe", "",
         Shop_job::left},
        {"binary receive", [](Shop_floor& shop) { file_job(shop, 5, job_wire); }, "Mill", "",
         Shop_job::old_program | Shop_job::left},
        {"end while receiving",
         [](Shop_floor& shop) {
             shop.machine().after(300ms, [&shop] { shop.machine().sends(job_wire); });
             shop.pick(1, "PART.NC");
             shop.pass(1s);
         },
         "Mill", "", Shop_job::left},
        {"print", [](Shop_floor& shop) { file_job(shop, 2, ""); }},
        {"receive as a job",
         [](Shop_floor& shop) {
             shop.machine().after(500ms, [&shop] { shop.machine().sends(job_wire); });
             shop.pass(10s);
         },
         "Mill", "2|/nc/PART.NC|Drill", Shop_job::left},
        {"resequence",
         [](Shop_floor& shop) {
             shop.desk.windows.when_shown("resequence_form_lite", [&shop] {
                 shop.all().resequence_form.increment_txt.set_text("5");
                 shop.all().resequence_form.Resequence_button.click();
             });
             shop.desk.loop.after(30s, [&shop] { shop.all().resequence_form.unload(); });
             file_job(shop, 3, "");
         }},
        {"apply the machine's settings",
         [](Shop_floor& shop) {
             auto& form = shop.all().configure_form;
             shop.window().ConfigMenuItem[0].click();
             form.BAUD_lst.select(5);
             shop.all().advanced_form.Switchbox_txt.set_text("<4>");
             form.wiring.Device_txt.set_text("/dev/ttyUSB7");
             form.apply_button.click();
             shop.pass(2s);
             form.unload();
         }},
        {"add a machine",
         [](Shop_floor& shop) {
             shop.window().ConfigMenuItem[0].click();
             if (auto& form = shop.all().configure_form; form.loaded()) {
                 form.New_name_txt.set_text("Saw");
                 form.Command2.click();
             }
         }},
        {"delete a machine",
         [](Shop_floor& shop) {
             shop.window().ConfigMenuItem[0].click();
             if (auto& form = shop.all().configure_form; form.loaded()) {
                 form.IO_device_lst.select(2);
                 form.Command3.click();
             }
         }},
        {"select a machine",
         [](Shop_floor& shop) {
             shop.window().ConfigMenuItem[1].click();
             shop.all().select_device_form.IO_device_lst.select(2);
             shop.all().select_device_form.Command1.click();
         }},
        {"page layout",
         [](Shop_floor& shop) {
             shop.window().ConfigMenuItem[3].click();
             shop.all().page_layout_form.margin.box.set_text("7");
             shop.all().page_layout_form.OK_button.click();
             shop.pass(1s);
             shop.all().page_layout_form.unload();
             until_done(shop);
         }},
        {"files and directories",
         [](Shop_floor& shop) {
             shop.window().ConfigMenuItem[4].click();
             shop.all().directories_form.Add_button.click();
             shop.all().directories_form.OK_button.click();
             shop.pass(1s);
             shop.all().directories_form.unload();
             until_done(shop);
         }},
        {"edit and save",
         [](Shop_floor& shop) {
             if (open_in_editor(shop)) {
                 shop.all().open_program.type(u"/");
                 shop.all().edit_commands.EditMenuItem[Edit_commands::save].click();
                 until_done(shop);
             }
         },
         "Mill", "", Shop_job::old_program},
        {"save over another program",
         [](Shop_floor& shop) {
             if (open_in_editor(shop)) {
                 shop.desk.file_dialog.answers = {{File_purpose::save, "/nc/OTHER.NC"}};
                 shop.all().edit_commands.EditMenuItem[Edit_commands::save_as].click();
                 until_done(shop);
             }
         },
         "Mill", "", Shop_job::old_program},
        {"end with changes", [](Shop_floor& shop) { shop.all().open_program.type(u"/"); }},
    };
    return jobs;
}

/// Start, the job, and the end of the program; a window that stays for what could not be saved is
/// ended from outside.
inline void run_job(Shop_floor& shop, const Shop_job& job) {
    shop.start(job.command_line);
    shop.pass(1s);
    job.run(shop);
    shop.window().close();
    shop.pass(1s);
    if (!shop.desk.windows.ended) {
        shop.all().end_unasked();
        shop.pass(1s);
    }
}

}  // namespace kelvane::testing
