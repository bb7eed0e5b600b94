#pragma once

#include "platform/status.h"

class QPrinter;
class QWidget;

namespace ktr {

class Printout;

/// Sets a printer to what a printout is made for: A4 upright, measured from the sheet's corner.
void preparePrinter(QPrinter &printer);

/// Prints the pages, copies and order that the printer is set to. Pages that do not exist are left out; fails
/// when none is left or the printer cannot be opened.
Status printTo(QPrinter &printer, const Printout &printout);

/// Lets the user choose a printer, pages and copies, then prints; returns while the dialog is open. A box
/// says when printing fails or no printer is installed.
void printWithDialog(QWidget *parent, const Printout &printout);

/// Shows in a box why something was not printed or written, and returns at once. Does nothing on success.
void showFailure(QWidget *parent, const Status &status);

} // namespace ktr
