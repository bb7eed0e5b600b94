#pragma once

class QApplication;

namespace ktr {

/// What is pasted or dropped into any field of one line, such as a cell of a spreadsheet, comes without its
/// line breaks and tabs (see pastedLine()): the toolkit's fields would keep them unseen. Done once; calling
/// it again does nothing.
void keepFieldsOnOneLine(QApplication &application);

} // namespace ktr
