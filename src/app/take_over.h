#pragma once

#include "app/single_instance.h"
#include "lang/text_table.h"

#include <QMessageBox>
#include <QPointer>
#include <QTimer>

namespace ktr {

/// A start while another instance runs: ends the other one and waits for that, because this one has to read
/// what the other saves at its end. Asks first if the other one watches stations, transmits or sends
/// firmware; beside one that watches stations this one may start to look on. Takes a second at least.
class TakeOver : public QObject
{
    Q_OBJECT

public:
    /// `wait` is Tmr_wait. `programFolder` may hold the helper program that ends the other instance; without
    /// the helper it is asked to close.
    TakeOver(SingleInstance &instance, const TextTable &texts, QTimer &wait, QString programFolder,
             QObject *parent = nullptr);
    ~TakeOver() override;

    void begin();
    /// Whether an open instance was made to end, so that this one takes its place.
    bool hasEndedOther() const { return m_hasEndedOther; }

Q_SIGNALS:
    /// The window should have this title for now.
    void titleWanted(const QString &title);
    /// A line for the status bar.
    void statusMessage(const QString &line);
    /// The start may go on: the other instance has ended, or was skipped for the reason in the remark.
    void done(const QString &remark);
    /// The user keeps the other instance: this one has to end.
    void givenUp();

private:
    enum class Phase {
        Asking,   ///< the other one is asked what it is doing
        Deciding, ///< the user is asked
        Ending,   ///< the second after it was asked to end
        Waiting,  ///< until it has ended
    };

    enum class Other { Ended, Silent, StaysOn };

    void decide(ktr::Works otherWorks);
    void endOther();
    void waited();
    void showNote();
    void giveUp();
    void finish(Other other);

    SingleInstance &m_instance;
    const TextTable &m_texts;
    QTimer &m_wait;
    QString m_programFolder;
    Phase m_phase = Phase::Asking;
    bool m_otherHasEnded = false;
    bool m_hasEndedOther = false;
    bool m_metSilent = false;
    bool m_isBeside = false; ///< of one that goes on watching
    QPointer<QMessageBox> m_question;
    QPointer<QMessageBox> m_note;
};

} // namespace ktr
