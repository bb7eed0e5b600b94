#pragma once

#include "app/single_instance.h"
#include "lang/text_table.h"

#include <QMessageBox>
#include <QPointer>
#include <QTimer>

namespace ktr {

/// A start while another instance runs: the other one is ended, after a question where it watches stations,
/// transmits or sends firmware, and this one waits for its end, since what the other one still saves is to be
/// read here. A second passes in any case.
class TakeOver : public QObject
{
    Q_OBJECT

public:
    /// `wait` is Tmr_wait; `programFolder` is where the program that ends the other one is looked for.
    /// Without it, the other one is asked to close.
    TakeOver(SingleInstance &instance, const TextTable &texts, QTimer &wait, QString programFolder,
             QObject *parent = nullptr);
    ~TakeOver() override;

    void begin();

Q_SIGNALS:
    /// The application goes by this title now.
    void titleWanted(const QString &title);
    /// A line for the status bar.
    void statusMessage(const QString &line);
    /// The other instance has ended, or was passed over for the reason that the remark tells; the start goes
    /// on.
    void done(const QString &remark);
    /// The user leaves the other instance running: this one is to end.
    void givenUp();

private:
    enum class Phase {
        Asking,   ///< what the other one does
        Deciding, ///< the user is asked
        Ending,   ///< the second after the other one was told
        Waiting,  ///< until it has ended
    };

    void decide(ktr::Works otherWorks);
    void endOther();
    void waited();
    void showNote();
    void giveUp();
    void finish(bool otherIsSilent);

    SingleInstance &m_instance;
    const TextTable &m_texts;
    QTimer &m_wait;
    QString m_programFolder;
    Phase m_phase = Phase::Asking;
    bool m_otherHasEnded = false;
    bool m_metSilent = false;
    QPointer<QMessageBox> m_question;
    QPointer<QMessageBox> m_note;
};

} // namespace ktr
