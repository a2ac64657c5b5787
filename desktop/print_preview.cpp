#include "desktop/print_preview.h"

#include <QApplication>
#include <QPainter>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QScreen>

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

void show_print_preview(QPrinter& printer, const std::vector<Print_page>& pages,
                        const Print_fit& fit) {
    QPrintPreviewDialog dialog(&printer, QApplication::activeWindow());
    dialog.setObjectName("print_preview");
    dialog.setWindowTitle("Preview of " + printer.docName());
    QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested, &dialog,
                     [&](QPrinter* asked) { paint_pages(*asked, pages, fit); });
    constexpr double part_of_screen = 0.8;
    dialog.resize(dialog.screen()->availableSize() * part_of_screen);
    dialog.exec();
}

}  // namespace kelvane
