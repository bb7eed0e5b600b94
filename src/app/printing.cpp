#include "app/printing.h"

#include "look/program_name.h"
#include "printout/printout.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QPainter>
#include <QPointer>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>

#include <algorithm>
#include <memory>
#include <utility>

namespace ktr {

namespace {

constexpr double pointsPerInch = 72;

/// The pages to print, counted from 0, with copies and in the order of printing.
QList<int> chosenPages(const QPrinter &printer, int pageCount)
{
    QList<int> pages;
    const QPageRanges ranges = printer.pageRanges();
    for (int page = 0; page < pageCount; ++page) {
        if (printer.printRange() != QPrinter::PageRange || ranges.isEmpty() || ranges.contains(page + 1)) {
            pages += page;
        }
    }
    if (printer.pageOrder() == QPrinter::LastPageFirst) {
        std::reverse(pages.begin(), pages.end());
    }
    if (printer.supportsMultipleCopies()) {
        return pages; // the driver does it
    }
    QList<int> all;
    const int sets = printer.collateCopies() ? printer.copyCount() : 1;
    const int each = printer.collateCopies() ? 1 : printer.copyCount();
    for (int set = 0; set < sets; ++set) {
        for (const int page : std::as_const(pages)) {
            all += QList<int>(each, page);
        }
    }
    return all;
}

} // namespace

void preparePrinter(QPrinter &printer)
{
    printer.setFullPage(true);
    printer.setPageSize(QPageSize(QPageSize::A4));
    printer.setPageOrientation(QPageLayout::Portrait);
}

Status printTo(QPrinter &printer, const Printout &printout)
{
    const QList<int> pages = chosenPages(printer, printout.pageCount());
    if (pages.isEmpty()) {
        return Status::failed(QCoreApplication::translate(
                                  "Printing", "Not printed: there are %1 pages, none of which was chosen.")
                                  .arg(printout.pageCount()));
    }
    QPainter painter;
    if (!painter.begin(&printer)) {
        return Status::failed(
            QCoreApplication::translate("Printing", "Not printed: the printer \"%1\" cannot be used.")
                .arg(printer.printerName()));
    }
    bool sheetUsed = false;
    for (const int page : pages) {
        if (sheetUsed && !printer.newPage()) {
            return Status::failed(QCoreApplication::translate("Printing", "The printer \"%1\" stopped.")
                                      .arg(printer.printerName()));
        }
        sheetUsed = true;
        painter.save();
        painter.scale(printer.logicalDpiX() / pointsPerInch, printer.logicalDpiY() / pointsPerInch);
        printout.paintPage(painter, page);
        painter.restore();
    }
    return painter.end()
               ? Status::done()
               : Status::failed(QCoreApplication::translate("Printing", "The printer \"%1\" stopped.")
                                    .arg(printer.printerName()));
}

void printWithDialog(QWidget *parent, const Printout &printout)
{
    if (QPrinterInfo::availablePrinterNames().isEmpty()) {
        showFailure(parent,
                    Status::failed(QCoreApplication::translate(
                        "Printing",
                        "No printer is installed. The print preview can save the configuration as a PDF.")));
        return;
    }
    const auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    preparePrinter(*printer);
    auto *const dialog = new QPrintDialog(printer.get(), parent);
    dialog->setObjectName(QLatin1String("PrintDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setOption(QAbstractPrintDialog::PrintPageRange);
    dialog->setMinMax(1, printout.pageCount());
    dialog->setFromTo(1, printout.pageCount());
    dialog->setPrintRange(QAbstractPrintDialog::AllPages);
    // The dialog keeps what it prints, and on what: both may be gone elsewhere by then.
    QObject::connect(
        dialog, qOverload<>(&QDialog::accepted), dialog,
        [parent = QPointer(parent), printer, printout] { showFailure(parent, printTo(*printer, printout)); });
    dialog->open();
}

void showFailure(QWidget *parent, const Status &status)
{
    if (status) {
        return;
    }
    auto *const box =
        new QMessageBox(QMessageBox::Warning, programName, status.message(), QMessageBox::Ok, parent);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

} // namespace ktr
