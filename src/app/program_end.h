#pragma once

#include "app/single_instance.h"
#include "lang/text_table.h"

#include <QTimer>
#include <QWidget>

namespace ktr {

/// The end of the program: when the main window may be closed, and whether the user wants to when that ends
/// work that is going on.
class ProgramEnd : public QObject
{
    Q_OBJECT

public:
    /// `isAskingForFile` tells of a file dialog, `works` what is going on.
    ProgramEnd(QWidget &window, const TextTable &texts, std::function<bool()> isAskingForFile,
               std::function<Works()> works);

    /// Closes the window once no question stands open: its window must not go away.
    void closeWhenFree();
    /// The same, without a question about work: the user has been asked by another instance.
    void closeAsAgreed();
    /// Ending a transmission leaves the module with part of it, so the user is asked. "Exit" in the menu does
    /// not ask.
    bool mayEndWork();

private:
    QWidget &m_window;
    const TextTable &m_texts;
    std::function<bool()> m_isAskingForFile;
    std::function<Works()> m_works;
    QTimer m_tryAgain;
    bool m_isAgreed = false;
};

} // namespace ktr
