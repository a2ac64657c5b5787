// Start-up, shut-down, the command line and the main window's commands.

#include <functional>
#include <gtest/gtest.h>

#include "frame/command_line.h"
#include "frame/file_filter.h"
#include "frame/resize_layout.h"
#include "support/shop_floor.h"

namespace kelvane::testing {
namespace {

TEST(CommandLine, IsEventFileAndMachine) {
    const struct {
        const char* line;
        int command_line, event;
        const char *file, *machine;
    } cases[] = {
        {"", 0, 0, "", ""},
        {"no bar", -1, 0, "", ""},
        {"1|/nc/A.NC", -1, 1, "/nc/A.NC", ""},
        {"2|/nc/A B.NC|My mill", -1, 2, "/nc/A B.NC", "My mill"},
        {"3|/nc/A.NC|", -1, 3, "/nc/A.NC", ""},
        {"x|", -1, 0, "", ""},
        {"1|a|b|c", -1, 1, "a", "b|c"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.line);
        Shared_state state;
        parse_command_line(c.line, state);
        EXPECT_EQ(state.Command_line, c.command_line);
        EXPECT_EQ(state.Command_line_event, c.event);
        EXPECT_EQ(state.Command_line_filename, c.file);
        EXPECT_EQ(state.Command_line_machine, c.machine);
    }
}

TEST(StartUp, ReadsItsFilesAndKeepsDefaultsForWhatIsMissing) {
    Shop_floor shop;
    Memory_files& files = shop.desk.files;
    files.put("/kelvane/Kelvane Lite settings", " 2 \r\nLathe\r\n");
    files.put("/kelvane/default directories", "/nc\r\n");
    files.put("/kelvane/default file types", "NC|*.nc\r\nkept\r\n2\r\n1\r\n");
    files.put("/kelvane/Editor page layout settings", "60,0,\"Mono, Bold\"\r\n");
    shop.start();
    const Shared_state& state = shop.state();
    EXPECT_EQ(state.IO_device, 2);
    EXPECT_EQ(state.IO_device_name, "Lathe");
    EXPECT_NE(shop.status().find("Lathe"), std::string::npos);
    EXPECT_EQ(shop.desk.file_dialog.initial_directory, "/nc");
    EXPECT_EQ(shop.desk.file_dialog.filter, "NC|*.nc");
    EXPECT_EQ(shop.desk.file_dialog.filter_index, 2);
    EXPECT_EQ(state.Add_extension, 1);
    EXPECT_EQ(state.page_layout.Lines_per_page, 60);
    EXPECT_EQ(state.page_layout.Print_description, 0);
    EXPECT_EQ(state.page_layout.line_length, 70);
    EXPECT_EQ(state.page_layout.Printer_font, "Courier");
    EXPECT_TRUE(shop.window().visible());
}

TEST(ShutDown, WritesTheSelectionAndUnloadsAll) {
    Shop_floor shop;
    shop.start();
    shop.state().IO_device = 3;
    shop.state().IO_device_name = "Mill";
    shop.all().configure_form.show();
    shop.window().close();
    EXPECT_EQ(shop.desk.files.content("/kelvane/Kelvane Lite settings"), "3\r\nMill\r\n");
    EXPECT_FALSE(shop.all().configure_form.loaded());
    EXPECT_TRUE(shop.desk.windows.ended);
}

TEST(ShutDown, WhatCouldNotBeReadAtTheStartIsNotWrittenOver) {
    const std::string list = "/kelvane/Editor IO device list";
    const std::pair<const char*, const char*> cases[] = {
        {"Lathe", "Cannot read the list of machines.\nInput/output error"},
        {"New", "Machine New is not in the list of machines, and which one was selected"}};
    for (const auto& [machine, box] : cases) {
        Shop_floor shop({}, "");
        const std::string before = shop.desk.files.content("/kelvane/Kelvane Lite settings");
        shop.desk.files.put(list, "Lathe\r\nMill\r\n");
        shop.desk.files.fail("read", "Kelvane Lite settings");
        if (*machine == 'L') {
            shop.desk.files.fail("read", "IO device list");
        }
        shop.boxes().expect(box);
        shop.start(std::string("1|/nc/PART.NC|") + machine);
        shop.pass(200ms);
        EXPECT_TRUE(shop.desk.windows.ended) << "the job is not done for another machine";
        EXPECT_EQ(shop.desk.windows.exit_status, 1);
        EXPECT_EQ(shop.received(), "");
        EXPECT_EQ(shop.desk.files.content("/kelvane/Kelvane Lite settings"), before);
        EXPECT_EQ(shop.desk.files.content(list), "Lathe\r\nMill\r\n");
    }
}

TEST(StartUp, RefusesASecondInstanceAndTouchesNothing) {
    for (const char* trouble : {"", "The lock file belongs to another user"}) {
        Shop_floor shop({}, "");
        const std::string before = shop.desk.files.content("/kelvane/Kelvane Lite settings");
        shop.desk.desktop.another_runs = true;
        shop.desk.desktop.trouble = trouble;
        shop.boxes().expect(
            *trouble != '\0'
                ? trouble
                : "Sorry...\nKelvane Lite is currently busy.\nTry sending your file later.");
        shop.start("1|/nc/A.NC");
        EXPECT_TRUE(shop.desk.windows.ended);
        EXPECT_FALSE(shop.window().visible());
        EXPECT_EQ(shop.desk.files.content("/kelvane/Kelvane Lite settings"), before);
    }
}

TEST(CommandJob, SelectsTheMachineAndRunsOnce) {
    Shop_floor shop({}, "G0\r\n");
    shop.desk.files.put("/kelvane/Editor IO device list", "Lathe\r\nMILL\r\n");
    shop.machine_file("MILL");
    shop.machine().after(1s, [&] { shop.machine().sends(xon); });
    shop.start("1|/nc/PART.NC|mill");
    EXPECT_TRUE(shop.window().visible());
    shop.desk.loop.run_until([&] { return shop.desk.windows.ended; });
    EXPECT_EQ(shop.received(), "G0\r\n");
    EXPECT_EQ(shop.state().IO_device, 2);
    EXPECT_EQ(shop.state().IO_device_name, "MILL");
}

TEST(CommandJob, AddsAnUnknownMachineWithoutSelectingIt) {
    const struct {
        const char *list, *list_file, *list_after, *told;
    } cases[] = {
        {"Lathe", "/kelvane/Editor IO device list", "Lathe\r\nNew\r\n", "has been added to it; "},
        {nullptr, "/kelvaneEditor IO device list", "(default)\r\nNew\r\n",
         "put into /kelvaneEditor IO device list; "},
    };
    for (const auto& c : cases) {
        Shop_floor shop;
        shop.machine_file("(default)");
        if (c.list != nullptr) {
            shop.desk.files.put(c.list_file, c.list);
        }
        shop.start("9|/nc/A.NC|New");
        shop.pass(200ms);
        EXPECT_EQ(shop.desk.files.content(c.list_file), c.list_after);
        EXPECT_EQ(shop.state().IO_device_name, "(default)");
        EXPECT_NE(shop.desk.desktop.told.find(c.told), std::string::npos);
        EXPECT_TRUE(shop.desk.files.exists("/kelvane/Editor COM port settings for New"));
    }
    Shop_floor shop;
    shop.desk.files.put("/kelvane/Editor IO device list", "Lathe\r\n");
    shop.start("9|/nc/A.NC|A/B");
    shop.pass(200ms);
    EXPECT_EQ(shop.desk.files.content("/kelvane/Editor IO device list"), "Lathe\r\n");
    EXPECT_NE(shop.desk.desktop.told.find("Machine A/B could not be added"), std::string::npos);
}

TEST(CommandJob, TakesTheBuiltInMachineByItsName) {
    Shop_floor shop;
    shop.machine_file("Mill");
    shop.desk.files.put("/kelvane/Editor IO device list", "Mill\r\n");
    shop.start("9|/nc/A.NC|(DEFAULT)");
    shop.pass(200ms);
    EXPECT_EQ(shop.state().IO_device_name, "(default)");
    EXPECT_EQ(shop.desk.files.content("/kelvane/Editor IO device list"), "Mill\r\n");
}

TEST(CommandJob, AMissingFileOrNameEndsTheProgram) {
    const std::pair<const char*, const char*> cases[] = {
        {"3|/nc/NONE", "File /nc/NONE does not exist"}, {"1|", "No file name has been given"}};
    for (const auto& [line, text] : cases) {
        Shop_floor shop;
        shop.boxes().expect(text);
        shop.start(line);
        shop.pass(200ms);
        EXPECT_TRUE(shop.desk.windows.ended);
    }
}

TEST(CommandJob, EndsTheProgramWhateverHasEndedItAndSaysHow) {
    using Step = std::function<void(Shop_floor&)>;
    const Step none = [](Shop_floor&) {};
    const Step close = [](Shop_floor& shop) { shop.window().close(); };
    const struct {
        const char* what;
        const char* job;
        const char* box;
        Step before, during;
        int status;
        Message_answer answer = Message_answer::ok;
    } cases[] = {
        {"sent", "1|/nc/PART.NC|Mill", "", none,
         [](Shop_floor& shop) { shop.machine().sends(xon); }, 0},
        {"stopped", "1|/nc/PART.NC|Mill", "", none,
         [](Shop_floor& shop) { shop.window().Stop_button.click(); }, 1},
        {"no port", "5|/nc/PART.NC|Mill", "port is not available",
         [](Shop_floor& shop) { shop.machine().refuse(""); }, none, 1},
        {"lost line", "1|/nc/PART.NC|Mill", "no longer there", none,
         [](Shop_floor& shop) { shop.machine().hang_up(); }, 1},
        {"received", "2|/nc/NEW.NC|Mill", "", none,
         [](Shop_floor& shop) { shop.machine().sends("%\r\n"); }, 0},
        {"aborted", "6|/nc/NEW.NC|Mill", "", none,
         [](Shop_floor& shop) { shop.window().Stop_button.click(); }, 1},
        {"no text", "2|/nc/NEW.NC|Mill", "Illegal characters",
         [](Shop_floor& shop) {
             shop.machine_file("Mill", {{10, "YES"}, {13, "NO"}});
         },
         [](Shop_floor& shop) { shop.machine().sends("X"); }, 1},
        {"full disk", "2|/nc/NEW.NC|Mill", "Disk write error",
         [](Shop_floor& shop) { shop.desk.files.fail("append", "data 5"); },
         [](Shop_floor& shop) { shop.machine().sends("X"); }, 1},
        {"printed", "3|/nc/PART.NC", "", none, close, 0},
        {"no printer", "3|/nc/PART.NC", "out of paper",
         [](Shop_floor& shop) { shop.desk.printer.works = false; }, close, 1},
        {"renumbered", "4|/nc/PART.NC", "", none,
         [&](Shop_floor& shop) {
             shop.all().resequence_form.Resequence_button.click();
             shop.machine().after(1s, [&] { close(shop); });
         },
         0},
        {"not renumbered", "4|/nc/PART.NC", "", none,
         [&](Shop_floor& shop) {
             shop.all().resequence_form.Cancel_button.click();
             shop.machine().after(1s, [&] { close(shop); });
         },
         1},
        {"window closed", "2|/nc/NEW.NC|Mill", "NEW.NC is being received. Stop it?", none,
         [](Shop_floor& shop) { shop.window().close(); }, 1, Message_answer::yes},
        {"ended by a signal", "2|/nc/NEW.NC|Mill", "", none,
         [](Shop_floor& shop) { shop.window().unload(); }, 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        Shop_floor shop({}, "G0\r\n");
        shop.desk.files.put("/kelvane/Editor IO device list", "Mill\r\n");
        c.before(shop);
        if (*c.box != '\0') {
            shop.boxes().expect(c.box, c.answer);
        }
        shop.machine().after(1s, [&] { c.during(shop); });
        shop.start(c.job);
        shop.desk.loop.run_until([&] { return shop.desk.windows.ended; });
        EXPECT_EQ(shop.desk.windows.exit_status, c.status);
        EXPECT_TRUE(shop.idle());
    }
}

TEST(CommandLine, WhatIsNoJobAndNoOptionIsRefused) {
    const std::pair<const char*, const char*> cases[] = {{"", ""},
                                                         {"1|/nc/P.NC", ""},
                                                         {"6|/nc/P.NC|Mill", ""},
                                                         {"/nc/P.NC", ""},
                                                         {"--hlep", "Unknown option --hlep"},
                                                         {"9|/nc/P.NC", "There is no job 9"},
                                                         {"|x", "There is no job "}};
    for (const auto& [line, error] : cases) {
        EXPECT_EQ(command_line_error(line), error) << line;
    }
}

TEST(StatusBar, KeepsTheMachineOfATransferAndTheWarningOfAJob) {
    Shop_floor shop({}, "G0\r\n");
    shop.desk.files.put("/kelvane/Editor IO device list", "Mill\r\n");
    shop.desk.files.fail("replace", "IO device list", "disk full");
    shop.start("9|/nc/PART.NC|New");
    shop.pass(200ms);
    shop.machine().after(50ms, [&] {
        shop.state().IO_device_name = "Lathe";
        shop.window().show_machine();
        EXPECT_TRUE(shop.status().starts_with("Mill on COM1")) << shop.status();
    });
    shop.send();
    EXPECT_TRUE(shop.status().starts_with("Lathe \xb7 COM1 ")) << shop.status();
    EXPECT_NE(
        shop.status().find("Machine New could not be added: disk full; this job goes to Mill"),
        std::string::npos);
    EXPECT_NE(shop.desk.desktop.told.find("Machine New could not be added"), std::string::npos);
}

TEST(FileMenu, CompletesNamesWithTheFiltersExtension) {
    const struct {
        const char *path, *filter, *completed;
    } cases[] = {
        {"/nc/A", "NC|*.nc;*.tap|All|*", "/nc/A.nc"},
        {"/nc/A.txt", "NC|*.nc", "/nc/A.txt"},
        {"/n.c/A", "All|*.*|NC|*.nc", "/n.c/A.nc"},
        {"/nc/A", "All|*", "/nc/A"},
        {"/nc/A", "", "/nc/A"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(with_extension(c.path, c.filter), c.completed) << c.filter;
    }
}

TEST(ResizeLayout, KeepsOneRowUnderTheEditor) {
    const struct {
        int width, height, bar, text_height, row;
    } cases[] = {{800, 600, 20, 570, 575}, {800, 600, 25, 562, 568}, {300, 10, 20, 0, 5}};
    for (const auto& c : cases) {
        const auto layout = resize_layout(c.width, c.height, c.bar);
        EXPECT_EQ(layout.text_width, c.width);
        EXPECT_EQ(layout.text_height, c.text_height);
        EXPECT_EQ(layout.row_top, c.row);
    }
}

}  // namespace
}  // namespace kelvane::testing
