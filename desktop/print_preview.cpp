#include "desktop/print_preview.h"

#include <QPainter>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QScreen>
#include <utility>

namespace kelvane {

namespace {

void paint_pages(QPrinter& printer, const std::vector<Print_page>& pages, const Print_fit& fit) {
    QPainter painter;
    if (!painter.begin(&printer)) {
        return;
    }
    Page_painter page_painter(printer, painter, fit);
    bool first = true;
    for (const Print_page& page : pages) {
        if ((!first && !printer.newPage()) || !page_painter.paint(page)) {
            return;
        }
        first = false;
    }
}

}  // namespace

Task<> show_print_preview(Qt_windows& windows, std::shared_ptr<QPrinter> printer,
                          std::vector<Print_page> pages, Print_fit fit) {
    const Dialog_owner<QPrintPreviewDialog> dialog("print_preview", printer.get(),
                                                   windows.active_window());
    dialog->setWindowTitle("Preview of " + printer->docName());
    // The dialog may outlive its showing, and takes along what it paints and where.
    QObject::connect(&*dialog, &QPrintPreviewDialog::paintRequested,
                     [printer, shown = std::move(pages), fit](QPrinter* asked) {
                         paint_pages(*asked, shown, fit);
                     });
    constexpr double part_of_screen = 0.8;
    dialog->resize(dialog->screen()->availableSize() * part_of_screen);
    co_await windows.run(*dialog);
}

}  // namespace kelvane
