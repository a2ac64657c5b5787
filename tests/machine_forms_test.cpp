#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "machines/advanced_form.h"
#include "machines/configure_form.h"
#include "machines/select_device_form.h"
#include "support/headless_platform.h"

namespace kelvane::testing {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using ::testing::ElementsAre;
using ::testing::StartsWith;

/// The configuration form with its advanced half, and the files it works on.
class Machine_forms : public ::testing::Test {
  protected:
    /// A file of the program directory; a machine's settings.
    void put(const std::string& name, const std::string& text) {
        house.files.put("/kelvane/" + name, text);
    }
    std::string file(const std::string& name) { return house.files.content("/kelvane/" + name); }
    std::string settings_of(const std::string& machine) { return file(settings + machine); }
    void list(const std::string& names) { put("Editor IO device list", names); }
    std::string listed() { return file("Editor IO device list"); }

    /// A machine's file that differs from a new machine's in some lines, counted from 1.
    void machine_file(const std::string& machine, const std::map<int, std::string>& changes = {}) {
        Text_reader reader(machine_settings_text(MachineSettings()));
        Text_writer writer;
        std::string line;
        for (int number = 1; reader.line(line); ++number) {
            writer.line(changes.contains(number) ? changes.at(number) : line);
        }
        put(settings + machine, writer.text());
    }
    void choose(const std::string& machine) {
        const auto& items = form.IO_device_lst.items();
        form.IO_device_lst.choose(
            static_cast<int>(std::ranges::find(items, machine) - items.begin()));
    }

    /// The captions of the boxes that are set: tape code, handshake, end of block.
    std::string boxes() {
        std::string names;
        for (const Check_box* box :
             {&form.chk_even, &form.chk_odd, &form.chk_no, &form.chk_EIA, &form.chk_none,
              &form.chk_Xon, &form.chk_RTS, &form.chk_both, &form.chk_LF, &form.chk_CR,
              &form.chk_LFCR, &form.chk_CRLF, &form.Chk_custom_EOB}) {
            names += box->checked() ? box->caption() + " " : "";
        }
        return names;
    }

    const std::string settings = "Editor COM port settings for ";
    Headless_platform house;
    Shared_state state;
    Configure_IO_advanced_lite advanced{house.windows};
    configure_IO_lite form{house.platform, state, advanced};
};

TEST_F(Machine_forms, load_shows_the_current_machine_or_the_defaults) {
    form.show();
    EXPECT_EQ(form.COM_lst.count(), 128U);
    EXPECT_EQ(form.COM_lst.items().front(), " 128");
    EXPECT_EQ(form.COM_lst.selected_text(), " 1");
    EXPECT_EQ(form.BAUD_lst.selected_text(), "28800");
    EXPECT_EQ(boxes(), "ASCII even Xon/Xoff CR/LF ");
    EXPECT_TRUE(form.Opt_7_bits.value());
    EXPECT_FALSE(advanced.visible());
    form.close();
    EXPECT_FALSE(advanced.loaded());

    list("Lathe\r\nMill\r\n");
    machine_file("Mill", {{1, "COM7"}, {2, "BAUD 3"}, {4, " 3"}, {6, " 2"}, {25, "True"}});
    state.IO_device_name = "Mill";
    form.show();
    EXPECT_EQ(form.IO_device_lst.selected_text(), "Mill");
    EXPECT_EQ(form.COM_lst.selected_text(), " 7");
    EXPECT_EQ(boxes(), "EIA RS244 Xon/Xoff LF/CR ");
    EXPECT_FALSE(form.chk_CR.enabled());

    list("New\r\n");  // no file of its own: the default machine's
    state.IO_device_name = "New";
    put("Editor COM port settings", "COM4\r\nBAUD 9\r\n");
    form.close();
    form.show();
    EXPECT_EQ(form.IO_device_lst.selected_text(), "(default)");
    EXPECT_EQ(form.BAUD_lst.selected_text(), "110");
    choose("New");
    EXPECT_EQ(form.COM_lst.selected_text(), " 113") << "a click without a file";
    EXPECT_EQ(form.BAUD_lst.selected_text(), "28800");
}

TEST_F(Machine_forms, a_click_resets_all_but_two_fields_and_reads_the_file) {
    list("Mill\r\nLathe\r\n");
    machine_file("Mill", {{4, " 3"}, {6, "4%"}, {15, "*9"}, {17, "O"}, {18, " 1 "}});
    put(settings + "Lathe", "COM2\r\n");
    put("Switchbox codes", "A1\r\nrest\r\n");
    form.show();
    EXPECT_EQ(advanced.Switchbox_txt.text(), "A1");
    choose("Mill");
    EXPECT_EQ(advanced.Switchbox_txt.text(), "");
    EXPECT_EQ(form.Custom_EOB_txt.text(), "%");
    EXPECT_FALSE(form.Custom_EOB_txt.enabled()) << "EIA";
    EXPECT_FALSE(advanced.Timeout_txt.enabled());
    choose("Lathe");
    EXPECT_EQ(boxes(), "ASCII even Xon/Xoff CR/LF ");
    EXPECT_EQ(form.COM_lst.selected_text(), " 2");
    EXPECT_EQ(advanced.Timeout_txt.text(), "3");
    EXPECT_TRUE(advanced.Chk_RX_until_timeout.checked());
    EXPECT_EQ(advanced.skip_upto_txt.text(), "O");
    EXPECT_TRUE(advanced.Chk_Separate_files.checked());
}

TEST_F(Machine_forms, reading_then_apply_changes_no_byte) {
    list("Mill\r\n");
    put("Switchbox codes", "A1\r\n");
    put("Switchbox codes for Mill", "B2\r\n");
    state.IO_device_name = "Mill";
    const std::map<int, std::string> files[] = {
        {},
        {{1, "COM128"}, {2, "BAUD-2"}, {3, " 0"}, {4, " 1"}, {5, " 0"}, {6, " 0"}},
        {{4, " 2"}, {6, " 1"}, {25, "True"}, {7, "<27>LF"}, {15, "0"}, {18, " 1 "}},
        {{4, " 3"}, {5, " 3"}, {6, " 2"}, {25, "True"}, {15, "*65"}},
        {{4, " 3"}, {6, "4<10>"}, {9, "NO"}, {11, "YES"}, {25, "True"}},
        {{5, " 2"}, {6, "4 7"}, {12, "8 "}, {13, "NO"}, {19, "soon"}, {20, "YES"}},
    };
    for (const auto& changes : files) {
        machine_file("Mill", changes);
        const std::string before = settings_of("Mill");
        form.show();
        form.apply_button.click();
        EXPECT_FALSE(form.loaded());
        EXPECT_EQ(settings_of("Mill"), before);
        EXPECT_EQ(file("Switchbox codes for Mill"), "B2\r\n");
    }
}

TEST_F(Machine_forms, boxes_of_a_group_exclude_each_other) {
    form.show();
    form.chk_no.click();
    EXPECT_EQ(boxes(), "ASCII none Xon/Xoff CR/LF ");
    EXPECT_TRUE(form.Opt_8_bits.value());
    form.chk_odd.click();
    form.chk_both.click();
    form.Chk_custom_EOB.click();
    EXPECT_EQ(boxes(), "ASCII odd Both Custom: ");
    EXPECT_TRUE(form.Opt_7_bits.value() && form.Custom_EOB_txt.enabled());
    form.chk_LF.click();
    EXPECT_EQ(boxes(), "ASCII odd Both LF ");
    EXPECT_FALSE(form.Custom_EOB_txt.enabled());

    form.chk_EIA.click();
    EXPECT_EQ(boxes(), "EIA RS244 Both ");
    form.chk_CR.click();
    house.loop.run_for(2s);
    EXPECT_EQ(boxes(), "EIA RS244 Both ") << "no end of block is chosen while EIA is";
    form.chk_EIA.click();
    EXPECT_FALSE(form.chk_CR.enabled()) << "clearing EIA enables nothing";
    form.chk_both.click();
    EXPECT_EQ(boxes(), "");
    house.loop.run_for(751ms);
    EXPECT_EQ(boxes(), "ASCII even Xon/Xoff LF/CR ");
    EXPECT_TRUE(form.chk_CR.enabled());
    form.cancel_button.click();
    form.chk_Xon.set_checked(false);
    house.loop.run_for(5s);
    EXPECT_EQ(boxes(), "ASCII even LF/CR ") << "the guard ends with the form";
}

TEST_F(Machine_forms, illegal_data_bits_are_asked_about) {
    form.show();
    form.Opt_8_bits.click();
    house.boxes.expect("8 data bits + EVEN pariy", Message_answer::no);
    form.apply_button.click();
    EXPECT_TRUE(form.loaded());
    EXPECT_TRUE(house.files.names().empty());
    house.boxes.expect("Continue with this setting non-standard setting anyway?",
                       Message_answer::yes);
    form.apply_button.click();
    const std::string saved = file("Editor COM port settings");
    EXPECT_THAT(saved, ::testing::HasSubstr("\r\n 0\r\n 1\r\n 3\r\n"));
    EXPECT_THAT(saved, ::testing::EndsWith("True\r\n"));
    EXPECT_EQ(house.boxes.shown()[0].title, "This setting is illegal!");

    form.show();
    form.chk_EIA.click();
    form.Opt_7_bits.click();
    house.boxes.expect("7 data bits + NO pariy or 7 data bits + EIA code", Message_answer::no);
    form.apply_button.click();
    EXPECT_TRUE(form.loaded());
}

TEST_F(Machine_forms, apply_writes_the_record_the_list_and_the_switchbox_codes) {
    list("Mill\r\n\r\nLathe\r\n");
    machine_file("Mill");
    form.show();
    choose("Mill");
    form.COM_lst.choose(128 - 9);
    advanced.Timeout_txt.set_text("");
    advanced.Switchbox_txt.set_text("<16>A");
    form.apply_button.click();
    EXPECT_THAT(settings_of("Mill"), StartsWith("COM9\r\n"));
    EXPECT_EQ(advanced.Timeout_txt.text(), "3");
    EXPECT_EQ(listed(), "Mill\r\nLathe\r\n");
    EXPECT_EQ(file("Switchbox codes for Mill"), "<16>A\r\n");
}

TEST_F(Machine_forms, add_keeps_the_machine_and_hurts_no_file) {
    const struct {
        const char *name, *old_file;  // of that bare name in the current directory
        bool overwritten;
    } cases[] = {
        {"Mill", "(missing)", true},
        {"Lathe 2", "COM3\r\nBAUD 1\r\n", true},
        {"PART.NC", "%\nO0001\n", false},
        {"COMMENT", "COMMENTS ON THE MILL\n", false},
        {"editor com port settings for Mill", "COM3\r\nBAUD 1\r\n", false},
        {"..", "(missing)", false},
        {"FR\xC4SE", "(missing)", true},
    };
    form.show();
    std::string all;
    for (const auto& c : cases) {
        if (*c.old_file != '(') {
            house.files.put(c.name, c.old_file);
        }
        form.New_name_txt.set_text(c.name);
        form.New_name_txt.press_enter();
        EXPECT_EQ(house.files.content(c.name) != c.old_file, c.overwritten) << c.name;
        EXPECT_EQ(form.IO_device_lst.selected_text(), c.name);
        EXPECT_EQ(form.New_name_txt.text(), "");
        all += std::string(c.name) + "\r\n";
        EXPECT_EQ(listed(), all);
    }
    const auto before = house.files.names();
    const std::string listed_already = "I/O device name is already in the list";
    for (const auto& [name, reason] : {std::pair("MILL"s, listed_already),
                                       {"(DEFAULT)", listed_already},
                                       {"fr\xE4se", listed_already},
                                       {"fr\u00E4se", listed_already},
                                       {"../x", "This cannot be part of a file name."},
                                       {std::string(300, 'x'), "too long for a file name"}}) {
        house.boxes.expect(reason);
        form.New_name_txt.set_text(name);
        form.Command2.click();
        EXPECT_EQ(form.New_name_txt.text(), name) << "to be corrected";
    }
    form.New_name_txt.set_text("");
    form.Command2.click();
    EXPECT_EQ(house.files.names(), before);
}

TEST_F(Machine_forms, what_cannot_be_read_is_told_and_never_written_over) {
    const std::string wiring = "COM1=/dev/ttyUSB5\r\n";
    const struct {
        const char *file, *said, *machine;  // the file that fails; the selected machine
        bool opens;
    } cases[] = {
        {"IO device list", "Cannot read the list of machines.\nInput/output error", "Mill", false},
        {"settings for Mill", "Cannot read the settings of Mill.\nInput/output error", "Mill",
         true},
        {"Switchbox codes for Mill", "Cannot read the settings of Mill", "Mill", true},
        {"port settings", "Cannot read the settings of (default)", "(default)", true},
        {"Serial port devices", "", "Mill", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.file);
        list("Mill\r\n");
        machine_file("Mill", {{1, "COM2"}});
        put("Editor COM port settings", "COM3\r\n");
        put("Switchbox codes for Mill", "A1\r\n");
        put("Serial port devices", wiring);
        state.IO_device_name = c.machine;
        house.files.fail("read", c.file);
        if (*c.said != '\0') {
            house.boxes.expect(c.said);
        }
        form.show();
        house.loop.run_for(0s);  // the box opens over the shown form
        EXPECT_EQ(form.visible(), c.opens);
        form.wiring.Device_txt.set_text("/dev/other");
        if (*c.said == '\0') {
            EXPECT_FALSE(form.wiring.Device_txt.enabled());
            EXPECT_THAT(form.wiring.device_hint.caption(),
                        ::testing::EndsWith("Input/output error"));
        } else {
            form.apply_button.click();  // does nothing: what is shown is not the machine's
        }
        form.close();
        house.files.repair();
        EXPECT_EQ(listed(), "Mill\r\n");
        EXPECT_THAT(settings_of("Mill"), StartsWith("COM2\r\n"));
        EXPECT_EQ(file("Editor COM port settings"), "COM3\r\n");
        EXPECT_EQ(file("Switchbox codes for Mill"), "A1\r\n");
        EXPECT_EQ(file("Serial port devices"), wiring);
    }
    form.show();
    choose("Mill");
    EXPECT_TRUE(form.apply_button.enabled()) << "can be read again";
    form.wiring.Device_txt.set_text("/dev/other");
    for (const char* lost : {"settings for Mill", "Serial port devices"}) {
        house.files.fail("read", lost);
        house.boxes.expect("Input/output error");
        form.apply_button.click();
        EXPECT_TRUE(form.loaded()) << "nothing is lost of what was typed";
        house.files.repair();
    }
    form.close();
    EXPECT_EQ(file("Serial port devices"), wiring);

    select_device_form_lite selection(house.platform, state);
    house.files.fail("read", "IO device list");
    house.boxes.expect("Cannot read the list of machines.\nInput/output error");
    selection.show();
    EXPECT_FALSE(selection.visible());
}

TEST_F(Machine_forms, changes_are_neither_dropped_nor_lost_without_a_word) {
    list("Mill\r\nLathe\r\n");
    machine_file("Mill");
    machine_file("Lathe", {{1, "COM2"}});
    state.IO_device_name = "Mill";
    std::string applied;
    form.on_applied = [&](const std::string& machine, const Result<>& stored) {
        applied += machine + (stored ? " " : " not: " + stored.reason() + " ");
    };
    form.show();
    choose("Lathe");
    EXPECT_EQ(form.COM_lst.selected_text(), " 2") << "nothing was changed";
    advanced.leader_txt.set_text("%");
    house.boxes.expect("The settings of Lathe have been changed and not applied",
                       Message_answer::no);
    choose("Mill");
    EXPECT_EQ(form.IO_device_lst.selected_text(), "Lathe");
    EXPECT_EQ(advanced.leader_txt.text(), "%");
    house.boxes.expect("Drop the changes?", Message_answer::yes);
    choose("Mill");
    EXPECT_EQ(form.COM_lst.selected_text(), " 1");
    form.apply_button.click();
    EXPECT_EQ(std::exchange(applied, {}), "Mill ");
    for (const char* lost : {"settings for Mill", "device list", "codes for Mill"}) {
        form.show();
        house.files.fail("replace", lost, "No space left on device");
        form.apply_button.click();
        EXPECT_FALSE(form.loaded()) << lost;
        EXPECT_EQ(std::exchange(applied, {}), "Mill not: No space left on device ") << lost;
        house.files.repair();
    }
}

TEST_F(Machine_forms, delete_takes_the_machine_and_leaves_its_switchbox_codes) {
    list("Mill\r\nLathe\r\nMill\r\n");
    machine_file("Mill");
    machine_file("Lathe");
    put("Switchbox codes for Mill", "A\r\n");
    form.show();
    form.Command3.click();  // "(default)": nothing to ask
    choose("Mill");
    house.boxes.expect("the COM port settings for: Mill", Message_answer::cancel);
    form.Command3.click();
    EXPECT_EQ(form.IO_device_lst.selected_text(), "Mill");
    house.boxes.expect("Warning - You are about to delete\nthe COM port settings for: Mill");
    form.Command3.click();
    EXPECT_EQ(form.IO_device_lst.selected(), 0);
    EXPECT_EQ(listed(), "Lathe\r\n");
    EXPECT_EQ(settings_of("Mill"), "(missing)");
    EXPECT_EQ(file("Switchbox codes for Mill"), "A\r\n");

    choose("Lathe");
    house.files.fail("replace", "(tempfile)");
    house.boxes.expect("Lathe");
    form.Command3.click();
    EXPECT_NE(settings_of("Lathe"), "(missing)") << "still listed, so not lost";
}

TEST_F(Machine_forms, a_com_number_is_wired_on_apply_only) {
    const std::string wiring = "# adapters\r\nCOM2=/dev/ttyUSB5\r\n";
    put("Serial port devices", wiring);
    form.show();
    EXPECT_EQ(form.wiring.Device_txt.text(), "/dev/ttyS0");
    house.desktop.devices = {{"/dev/ttyUSB0", "USB serial"}, {"/dev/ttyACM0", ""}};
    house.loop.run_for(3s);
    EXPECT_THAT(form.wiring.Device_lst.items(),
                ElementsAre("/dev/ttyUSB0  USB serial", "/dev/ttyACM0"));
    EXPECT_EQ(form.wiring.device_hint.caption(), "This device is not among those found now.");
    form.wiring.Device_lst.choose(0);
    EXPECT_EQ(form.wiring.device_hint.caption(), "");
    form.COM_lst.choose(126);
    EXPECT_EQ(form.wiring.Device_txt.text(), "/dev/ttyUSB5");
    form.wiring.Device_txt.set_text("");
    form.COM_lst.choose(127);
    EXPECT_EQ(form.wiring.Device_txt.text(), "/dev/ttyUSB0") << "kept until Apply";
    form.cancel_button.click();
    EXPECT_EQ(file("Serial port devices"), wiring);

    form.show();
    EXPECT_EQ(form.wiring.Device_txt.text(), "/dev/ttyS0");
    form.wiring.Device_lst.choose(0);
    form.apply_button.click();
    EXPECT_EQ(file("Serial port devices"), wiring + "COM1=/dev/ttyUSB0\r\n");
}

TEST_F(Machine_forms, a_name_that_may_become_anothers_is_told_and_replaced_with_one_press) {
    put("Serial port devices", "COM1=/dev/ttyUSB1\r\n");
    house.desktop.devices = {{"/dev/serial/by-id/a", "Maker, A1", "/dev/ttyUSB0"},
                             {"/dev/serial/by-path/b",
                              "",
                              "/dev/ttyUSB1",
                              5,
                              {"/dev/serial/by-id/shared", "/dev/serial/by-path/b2"}}};
    form.show();
    EXPECT_THAT(form.wiring.Device_lst.items(),
                ElementsAre("Maker, A1  /dev/serial/by-id/a", "/dev/serial/by-path/b"));
    EXPECT_EQ(form.wiring.Device_lst.selected(), 1);
    EXPECT_EQ(form.wiring.device_hint.caption(),
              "After a restart this name may be another adapter's.");
    form.wiring.lasting_button.click();
    EXPECT_EQ(form.wiring.Device_txt.text(), "/dev/serial/by-path/b");
    EXPECT_EQ(form.wiring.device_hint.caption(), "");
    EXPECT_FALSE(form.wiring.lasting_button.enabled());
    for (const auto& [name, stays] : {std::pair("/dev/serial/by-id/shared", false),
                                      std::pair("/dev/serial/by-path/b2", true)}) {
        form.wiring.Device_txt.set_text(name);
        EXPECT_EQ(form.wiring.Device_lst.selected(), 1);
        EXPECT_EQ(form.wiring.lasting_button.enabled(), !stays) << name;
        EXPECT_EQ(form.wiring.device_hint.caption().empty(), stays) << name;
    }

    form.Advanced_button.click();
    advanced.HS_loop_txt.set_text("3");
    EXPECT_FALSE(advanced.HS_loop_hint.visible());
    advanced.HS_loop_txt.set_text("4");
    EXPECT_TRUE(advanced.HS_loop_hint.visible());
    EXPECT_EQ(advanced.HS_loop_hint.caption(),
              "Up to 11 characters follow an Xoff; many controls accept only 10.");
    form.apply_button.click();
    EXPECT_EQ(file("Serial port devices"), "COM1=/dev/serial/by-path/b2\r\n");
}

TEST_F(Machine_forms, the_two_ends_of_a_reception_exclude_each_other) {
    form.show();
    form.Advanced_button.click();
    EXPECT_TRUE(advanced.visible());
    EXPECT_TRUE(advanced.Timeout_txt.accepts_key('0') && !advanced.Timeout_txt.accepts_key('x'));
    advanced.Timeout_txt.set_text("0");
    advanced.Chk_RX_until_aborted.click();
    EXPECT_FALSE(advanced.Chk_RX_until_timeout.checked() || advanced.Timeout_txt.enabled());
    advanced.Chk_RX_until_aborted.click();
    EXPECT_TRUE(advanced.Chk_RX_until_timeout.checked());
    EXPECT_EQ(advanced.Timeout_txt.text(), "3");
    advanced.Chk_RX_until_timeout.click();
    EXPECT_TRUE(advanced.Chk_RX_until_aborted.checked());

    EXPECT_FALSE(advanced.HS_loop_hint.visible());
    advanced.HS_loop_txt.set_text("9");
    EXPECT_TRUE(advanced.HS_loop_hint.visible());
    advanced.OK_button.click();
    EXPECT_FALSE(advanced.visible());
    form.cancel_button.click();
    EXPECT_TRUE(house.files.names().empty());
    form.show();
    EXPECT_EQ(advanced.HS_loop_txt.text(), "5");
}

TEST_F(Machine_forms, a_machine_is_selected_or_the_choice_is_closed) {
    select_device_form_lite selection(house.platform, state);
    int told = 0;
    selection.on_selected = [&told] { ++told; };
    list("Mill\r\n\r\nLathe\r\n");
    state.IO_device_name = "gone";
    selection.show();
    EXPECT_EQ(selection.IO_device_lst.selected(), 0);
    selection.IO_device_lst.choose(2);
    selection.Command2.click();
    EXPECT_EQ(state.IO_device_name, "gone");
    selection.show();
    selection.IO_device_lst.choose(2);
    selection.IO_device_lst.double_click();
    EXPECT_EQ(state.IO_device_name, "Lathe");
    EXPECT_TRUE(state.IO_device == 2 && told == 1 && !selection.loaded());
    selection.show();
    EXPECT_EQ(selection.IO_device_lst.selected_text(), "Lathe");
}

}  // namespace
}  // namespace kelvane::testing
