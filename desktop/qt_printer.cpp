#include "desktop/qt_printer.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFontDatabase>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QTemporaryDir>
#include <algorithm>
#include <utility>

#include "desktop/code39_bars.h"
#include "desktop/print_preview.h"
#include "desktop/qt_text.h"
#include "platform/basic_text.h"
#include "session/file_names.h"

namespace kelvane {

namespace {

constexpr double page_margin_mm = 10;

/// Makes the printing service spool into `folder` while it lives, in place of the system's folder
/// for temporary files.
class Spool_folder {
  public:
    explicit Spool_folder(const QString& folder)
        : was_set_(qEnvironmentVariableIsSet(variable)), before_(qgetenv(variable)) {
        qputenv(variable, QFile::encodeName(folder));
    }
    Spool_folder(const Spool_folder&) = delete;
    Spool_folder& operator=(const Spool_folder&) = delete;
    ~Spool_folder() {
        if (was_set_) {
            qputenv(variable, before_);
        } else {
            qunsetenv(variable);
        }
    }

  private:
    static constexpr const char* variable = "TMPDIR";
    bool was_set_;
    QByteArray before_;
};

bool is_complete_pdf(const std::string& content) {
    constexpr std::size_t tail = 16;
    const std::size_t start = content.size() - std::min(content.size(), tail);
    return content.find("%%EOF", start) != std::string::npos;
}

std::shared_ptr<QPrinter> with_margins(std::shared_ptr<QPrinter> printer) {
    printer->setPageMargins(
        QMarginsF(page_margin_mm, page_margin_mm, page_margin_mm, page_margin_mm),
        QPageLayout::Millimeter);
    return printer;
}

std::shared_ptr<QPrinter> printer_without_service(const Files& files) {
    auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    printer->setOutputFormat(QPrinter::PdfFormat);
    printer->setOutputFileName(QFile::decodeName(files.program_path(file_names::listing).c_str()));
    return with_margins(std::move(printer));
}

Result<> done_or_failed(bool done, std::string reason) {
    return done ? Result<>() : Failure{std::move(reason)};
}

}  // namespace

/// The document in work. Members end in reverse order: the painter before its printer.
struct Qt_printer::Document {
    Print_destination destination = Print_destination::paper;
    QTemporaryDir spool;
    QString pdf_target;  ///< the PDF file to write; empty for a real printer
    std::shared_ptr<QPrinter> printer;
    QPainter painter;
    Print_fit fit;
    Print_page page;                ///< the page in work
    std::vector<Print_page> pages;  ///< of a preview
};

Qt_printer::Qt_printer(Files& files, Qt_windows& windows) : files_(files), windows_(windows) {}

Qt_printer::~Qt_printer() {
    drop_document();
}

void Qt_printer::set_font_name(const std::string& name) {
    font_.name = to_screen(name);
}

void Qt_printer::set_font_size(int points) {
    font_.points = std::max(points, 1);
}

bool Qt_printer::font_available(const std::string& name) const {
    return font_installed(to_screen(name));
}

std::vector<std::string> Qt_printer::fixed_fonts() const {
    std::vector<std::string> names;
    for (const QString& family : QFontDatabase::families()) {
        if (QFontDatabase::isFixedPitch(family) && !QFontDatabase::isPrivateFamily(family)) {
            names.push_back(from_screen(family.section(" [", 0, 0)));
        }
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

std::string Qt_printer::kept_name() const {
    std::string name;
    Text_reader(files_.read(files_.program_path(file_names::printer))).line(name);
    return name;
}

/// A file that the operator has chosen in the place of a printer is for this run only. A name that
/// cannot be kept costs another choice after the next start.
void Qt_printer::keep_name(const QPrinter& printer) {
    if (printer.outputFormat() == QPrinter::NativeFormat) {
        const std::string name = from_screen(printer.printerName());
        static_cast<void>(files_.replace(files_.program_path(file_names::printer),
                                         Text_writer().line(name).text()));
    }
}

std::shared_ptr<QPrinter> Qt_printer::usual_printer() const {
    const std::string kept = kept_name();
    const QPrinterInfo info =
        kept.empty() ? QPrinterInfo::defaultPrinter() : QPrinterInfo::printerInfo(to_screen(kept));
    if (info.isNull() && !kept.empty()) {
        return nullptr;
    }
    return info.isNull() ? printer_without_service(files_)
                         : with_margins(std::make_shared<QPrinter>(info, QPrinter::HighResolution));
}

Task<> Qt_printer::select_printer() {
    auto printer = usual_printer();
    if (!printer) {
        printer = with_margins(std::make_shared<QPrinter>(QPrinter::HighResolution));
    }
    if (chosen_ && chosen_->outputFormat() == QPrinter::NativeFormat) {
        printer->setPrinterName(chosen_->printerName());
        printer->setPageLayout(chosen_->pageLayout());
    }
    const Dialog_owner<QPrintDialog> dialog("select_printer", printer.get(),
                                            windows_.active_window());
    dialog->setWindowTitle("Select printer");
    QObject::connect(&*dialog, &QObject::destroyed, [printer] {});  // it ends after its dialog
    const bool accepted = co_await windows_.run(*dialog);
    if (accepted) {
        chosen_ = printer;
        keep_name(*printer);
    }
}

Result<> Qt_printer::begin_document(const std::string& title, Print_destination destination) {
    abort_document();
    destination_.clear();
    destination_file_.clear();
    auto document = std::make_unique<Document>();
    document->destination = destination;
    document->printer = chosen_ ? chosen_ : usual_printer();
    if (!document->printer) {
        return Failure{"The printer " + kept_name() +
                       " is not there; another can be chosen with Select printer"};
    }
    document->printer->setDocName(to_screen(title));
    if (destination == Print_destination::paper) {
        if (auto started = start_painting(*document); !started) {
            return started;
        }
    }
    document_ = std::move(document);
    return {};
}

Result<> Qt_printer::start_painting(Document& document) {
    QPrinter& printer = *document.printer;
    if (!document.spool.isValid()) {
        return Failure{from_screen(document.spool.errorString())};
    }
    document.pdf_target = printer.outputFileName();
    if (!document.pdf_target.isEmpty()) {
        printer.setOutputFileName(document.spool.filePath("listing.pdf"));
    } else if (!printer.isValid()) {
        return Failure{"The printer " + from_screen(printer.printerName()) + " is not there"};
    }
    const Spool_folder spool(document.spool.path());
    if (!document.painter.begin(&printer)) {
        return Failure{"The printer " + from_screen(printer.printerName()) + " takes no document"};
    }
    return {};
}

void Qt_printer::fit_page(int rows, int columns) {
    if (document_) {
        document_->fit = {font_, rows, columns};
    }
}

Result<> Qt_printer::print(std::string_view text) {
    if (!document_) {
        return Failure{"No document is open"};
    }
    document_->page.push_back({font_, std::string(text)});
    return {};
}

Result<> Qt_printer::draw_barcode(std::string_view text, int rows, int columns) {
    const auto modules = code39_modules(text);
    if (!document_ || modules.empty() ||
        Page_metrics(*document_->printer, document_->fit)
                .module_width(font_, columns, modules.size()) == 0) {
        return Failure{"The text is too long for bars that can be read: " + std::string(text)};
    }
    document_->page.push_back({font_, std::string(text), rows, columns});
    return {};
}

Result<> Qt_printer::new_page() {
    if (!document_) {
        return Failure{"No document is open"};
    }
    if (document_->destination == Print_destination::preview) {
        document_->pages.push_back(std::exchange(document_->page, {}));
        return {};
    }
    return paint_page().and_then(
        [this] { return done_or_failed(document_->printer->newPage(), "The printer failed"); });
}

Result<> Qt_printer::paint_page() {
    const Print_page page = std::exchange(document_->page, {});
    Page_painter painter(*document_->printer, document_->painter, document_->fit);
    return done_or_failed(painter.paint(page), "The printer failed");
}

Task<Result<>> Qt_printer::end_document() {
    if (!document_) {
        co_return Failure{"No document is open"};
    }
    if (document_->destination == Print_destination::paper) {
        co_return paint_page().and_then(
            [this] { return finish_paper(*std::exchange(document_, nullptr)); });
    }
    const auto document = std::exchange(document_, nullptr);
    document->pages.push_back(std::move(document->page));
    co_await show_print_preview(windows_, document->printer, document->pages, document->fit);
    co_return Result<>();
}

Result<> Qt_printer::finish_paper(Document& document) {
    const bool ended = document.painter.end();
    if (document.pdf_target.isEmpty()) {
        destination_ = from_screen(document.printer->printerName());
        return done_or_failed(ended && document.printer->printerState() != QPrinter::Error,
                              "The printer " + destination_ + " refused the document");
    }
    const QString written = document.printer->outputFileName();
    document.printer->setOutputFileName(document.pdf_target);
    destination_ = from_screen(QFileInfo(document.pdf_target).fileName());
    destination_file_ = QFile::encodeName(document.pdf_target).toStdString();
    const auto content = files_.read(QFile::encodeName(written).toStdString());
    if (!ended || !content || !is_complete_pdf(*content)) {
        return Failure{"The temporary file of the listing could not be written"};
    }
    const auto stored =
        files_.replace(QFile::encodeName(document.pdf_target).toStdString(), *content);
    return done_or_failed(stored.has_value(),
                          "Can't write " + destination_ + ": " + stored.reason());
}

void Qt_printer::abort_document() {
    drop_document();
}

void Qt_printer::drop_document() {
    const auto document = std::exchange(document_, nullptr);
    if (!document || !document->painter.isActive()) {
        return;
    }
    // The printing service takes the spooled file when the painter ends, and Qt has no call to keep
    // it from that: without the file the job is cancelled empty.
    if (!document->printer->abort()) {
        document->spool.remove();
    }
    document->painter.end();
    if (!document->pdf_target.isEmpty()) {
        document->printer->setOutputFileName(document->pdf_target);
    }
}

}  // namespace kelvane
