// A listing through a real print queue, of a printing service that the test starts for itself.

#include <QThread>
#include <gmock/gmock.h>

#include "support/print_room.h"

namespace kelvane {
namespace {

class Print_queue : public testing::Print_room {
  protected:
    static void SetUpTestSuite() {
        service_folder = new QTemporaryDir;
        service = new QProcess;
        service->start(PRINTING_SERVICE, {service_folder->path()});
        ASSERT_TRUE(wait([] { return QFile::exists(service_folder->filePath("ready")); }));
        use_printing_service(service_folder->filePath("cups.sock").toStdString());
    }
    static void TearDownTestSuite() {
        service->terminate();
        service->waitForFinished();
        delete service;
        delete service_folder;
    }
    template <typename Condition>
    static bool wait(Condition condition) {
        for (int patience = 300; patience > 0 && !condition(); --patience) {
            QThread::msleep(100);
        }
        return condition();
    }
    static void wait_for_jobs() {
        EXPECT_TRUE(wait([] { return testing::run_tool("lpstat", {"-o"}).empty(); }));
    }
    static QString paper() { return service_folder->filePath("out/paper.pdf"); }

    static inline QTemporaryDir* service_folder = nullptr;
    static inline QProcess* service = nullptr;
};

TEST_F(Print_queue, the_default_printer_gets_the_listing_but_nothing_of_a_stopped_one) {
    ASSERT_TRUE(printer.begin_document("stopped.nc", Print_destination::paper));
    ASSERT_TRUE(printer.print("M30\n") && printer.new_page());
    printer.abort_document();
    wait_for_jobs();
    EXPECT_FALSE(QFile::exists(paper()));
    std::string program;
    for (int line = 1; line <= 100; ++line) {
        program += "N" + decimal(line) + " G01\r\n";
    }
    print("part.nc", program);
    EXPECT_THAT(window.status_label.caption(), ::testing::HasSubstr("Listing sent to Shop"));
    EXPECT_FALSE(QFile::exists(pdf));
    wait_for_jobs();
    EXPECT_EQ(pages_of(paper()), composed());
}

TEST_F(Print_queue, the_printer_chosen_last_is_kept_and_no_other_takes_its_place) {
    const std::string kept = files.program_path("\\Selected printer");
    ASSERT_TRUE(files.replace(kept, "Old\r\n"));
    doubles.boxes.expect("The printer Old is not there");
    print("part.nc", "M30\r\n");
    Task_keeper keeper(doubles.loop);
    keeper.start(printer.select_printer());
    auto* const dialog = qobject_cast<QDialog*>(windows.active_window());
    ASSERT_NE(dialog, nullptr);
    dialog->accept();
    doubles.loop.wake();
    doubles.loop.run_until([&keeper] { return keeper.empty(); });
    EXPECT_EQ(files.read(kept), std::string("Shop\r\n"));
}

}  // namespace
}  // namespace kelvane
