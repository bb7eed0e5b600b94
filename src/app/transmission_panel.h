#pragma once

#include "config/edit_history.h"
#include "link/module_link.h"
#include "transmissions/transmission_look.h"

#include <QTimer>
#include <QWidget>

class QLabel;
class QProgressBar;
class QPushButton;
class QScrollArea;

namespace ktr {

/// While a configuration is transmitted: step, command, time left, and a way to cancel. Afterwards: what
/// became of it, with links to the pages of what failed, until it is put away.
class TransmissionPanel : public QWidget
{
    Q_OBJECT

public:
    /// Returns where a step is edited, in words for the user.
    using Where = std::function<QString(const EditPlace &)>;

    TransmissionPanel(ModuleLink &link, Document &document, Where where, QWidget *parent = nullptr);

    /// What a transmission is about to do: where nothing is known not to fit, it `go`es on at once, and the
    /// look stands here until the module gets its first command; otherwise when the user agrees.
    void showLook(const TransmissionLook &look, const std::function<void()> &go);

    void applyTexts();

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    /// The user wants to go to what failed.
    void placeChosen(const ktr::EditPlace &place);
    /// He wants a receipt of what was transmitted.
    void receiptWanted();

private:
    void begin();
    void showQuestion();
    void leaveQuestion();
    void takeStep(int step, const QString &command);
    void showRunning();
    void end();
    void showDetail(const QString &text);
    void showSummary();
    void showButtons();
    void fitDetail();
    void holdClose();
    QString links(const QList<int> &steps) const;
    QString timeLeft(int step) const;

    Transmitter &m_transmitter;
    Document &m_document;
    Where m_where;
    QDateTime m_started;
    int m_firstStep = 0;
    int m_step = 0;    ///< the last one done
    QString m_command; ///< what it sent; empty before the first
    bool m_ended = false;
    QLabel *m_title;
    QLabel *m_detail;
    QScrollArea *m_details; ///< holds it: there may be a link for each step
    TransmissionLook m_look;
    std::function<void()> m_go; ///< while it is asked whether to
    QPushButton *m_anyway;
    QPushButton *m_receipt;
    QPushButton *m_cancel;
    QPushButton *m_resume;
    QPushButton *m_close;
    QTimer m_closeHeld; ///< it takes the place of "cancel", and a click may still be meant for that
};

} // namespace ktr
