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
    struct Questions
    {
        std::function<bool()> areOutside;                 ///< a helper program asks, or closing is refused
        std::function<bool(const QWidget &)> mayBeClosed; ///< nothing is lost where it is not answered
    };
    /// `works` tells what is going on.
    ProgramEnd(QWidget &window, const TextTable &texts, Questions questions, std::function<Works()> works);

    /// Closes the window once no question stands open: its window must not go away.
    void closeWhenFree();
    /// The same at the system's request: questions that may be closed are not waited for.
    void closeOnRequest();
    /// The same, without a question about work: the user has been asked by another instance.
    void closeAsAgreed();
    /// Ending a transmission leaves the module with part of it, so the user is asked. "Exit" in the menu does
    /// not ask.
    bool mayEndWork();
    /// Whether the window is closed by its user, who has not been asked yet, and not by the system or for
    /// another instance.
    bool isUsersWish() const;

private:
    QWidget &m_window;
    const TextTable &m_texts;
    Questions m_questions;
    std::function<Works()> m_works;
    QTimer m_tryAgain;
    bool m_isRequested = false; ///< by the system
    bool m_isAgreed = false;
    bool m_isEnding = false; ///< by the system
};

} // namespace ktr
