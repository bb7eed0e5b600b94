#pragma once

#include "link/module_line.h"

namespace ktr {

/// The one command of the user that waits until the module next reads an SMS. It is meant for one module:
/// it is taken back when the line is closed, and when a transmission begins.
///
///     place("F,1") -> Waits     place("F,2") -> Waits, in place of "F,1"     the module reads: "F,2" leaves
class WaitingCommand : public QObject
{
    Q_OBJECT

public:
    /// What becomes of a command that the user wants to send.
    enum class Placing {
        Waits,        ///< until the module next reads an SMS
        NoConnection, ///< refused
        Transmitting, ///< refused: the steps of the transmission go first
    };

    /// `line` must outlive this.
    explicit WaitingCommand(ModuleLine &line, QObject *parent = nullptr) : QObject(parent), m_line(line) {}

    /// Places a command instead of the one that waits.
    Placing place(const QString &command);
    /// The same with the command that sets the module's clock, to the time at which the module gets it.
    Placing placeClock();

    /// Empty when none waits.
    const QString &text() const { return m_line.session().waiting(); }

    /// Gives up what waits, if anything does, and tells so.
    void takeBack();

    // What became of it.
    void noteSent(const QString &command);
    void noteRefused();

Q_SIGNALS:
    /// A command began to wait, or does so no longer: see text().
    void changed();
    /// It was handed to the module.
    void sent(const QString &command);
    /// A line for the status bar.
    void statusMessage(const QString &line);

private:
    Placing mayPlace() const;

    ModuleLine &m_line;
};

} // namespace ktr
