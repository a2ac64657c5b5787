// A listing through a real print queue: a printing service of the test's own, that listens on a
// socket in the test's folder only, with one queue whose back end writes a PDF file.

#include <QDir>
#include <QElapsedTimer>
#include <QThread>
#include <gmock/gmock.h>

#include "support/print_room.h"

namespace kelvane {
namespace {

using ::testing::HasSubstr;

constexpr const char* service_settings =
    "Listen %1/cups.sock\n"
    "Browsing No\nWebInterface No\nDefaultAuthType None\n"
    "<Location />\nOrder allow,deny\nAllow all\n</Location>\n"
    "<Policy default>\n<Limit All>\nOrder deny,allow\nAllow all\n</Limit>\n</Policy>\n";

constexpr const char* service_files =
    "ServerRoot %1\nRequestRoot %1/spool\nCacheDir %1/cache\nStateDir %1/state\n"
    "ErrorLog %1/error_log\nAccessLog %1/access_log\nPageLog %1/page_log\n"
    "FileDevice Yes\nSystemGroup root\n";

/// The description of a printer that takes PDF as it is.
constexpr const char* printer_description = R"ppd(*PPD-Adobe: "4.3"
*Product: "(PDF)"
*NickName: "PDF"
*cupsFilter2: "application/pdf application/pdf 0 pdftopdf"
*OpenUI *PageSize/Page Size: PickOne
*DefaultPageSize: A4
*PageSize A4: ""
*CloseUI: *PageSize
*ImageableArea A4: "12 12 583 830"
*PaperDimension A4: "595 842"
)ppd";

/// The printing service, for as long as the object lives.
class Printing_service {
  public:
    bool start() {
        // The service drops its rights before it prints.
        QFile::setPermissions(folder.path(), QFile::Permissions(0x7755));
        EXPECT_TRUE(QDir(folder.path()).mkdir("out"));
        QFile::setPermissions(folder.filePath("out"), QFile::Permissions(0x7777));
        write("cupsd.conf", QString(service_settings).arg(folder.path()));
        write("cups-files.conf", QString(service_files).arg(folder.path()));
        write("printer.ppd", printer_description);
        service_.start("/usr/sbin/cupsd", {"-f", "-c", folder.filePath("cupsd.conf"), "-s",
                                           folder.filePath("cups-files.conf")});
        constexpr int attempts = 200;
        for (int i = 0; i < attempts && !QFile::exists(socket()); ++i) {
            QThread::msleep(50);
        }
        return QFile::exists(socket());
    }
    ~Printing_service() {
        service_.terminate();
        service_.waitForFinished();
    }
    [[nodiscard]] QString socket() const { return folder.filePath("cups.sock"); }
    QTemporaryDir folder;

  private:
    void write(const QString& name, const QString& content) const {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QFile::WriteOnly) && file.write(content.toUtf8()) > 0);
    }
    QProcess service_;
};

class Print_queue : public testing::Print_room {
  protected:
    static void SetUpTestSuite() {
        service = new Printing_service;
        ASSERT_TRUE(service->start()) << "cupsd (package cups) did not start";
        use_printing_service(service->socket().toStdString());
        testing::run_tool("lpadmin",
                          {"-h", service->socket(), "-p", "Shop", "-E", "-v", "file://" + paper(),
                           "-P", service->folder.filePath("printer.ppd")});
        testing::run_tool("lpadmin", {"-h", service->socket(), "-d", "Shop"});
    }
    static void TearDownTestSuite() { delete service; }

    static QString paper() { return service->folder.filePath("out/paper.pdf"); }
    static void wait_for_jobs() {
        const auto open = [] {
            return testing::run_tool("lpstat", {"-h", service->socket(), "-o"});
        };
        QElapsedTimer waited;
        constexpr int patience_ms = 30000;
        for (waited.start(); !open().empty() && waited.elapsed() < patience_ms;) {
            QThread::msleep(100);
        }
        EXPECT_EQ(open(), "");
    }

    static Printing_service* service;
};

Printing_service* Print_queue::service = nullptr;

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
    EXPECT_THAT(window.status_label.caption(), HasSubstr("Listing sent to Shop"));
    EXPECT_FALSE(QFile::exists(pdf));
    wait_for_jobs();
    EXPECT_EQ(pages_of(paper()), composed());
}

}  // namespace
}  // namespace kelvane
