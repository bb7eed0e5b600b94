#pragma once

#include "editor/page.h"

#include <QTimer>

class QGridLayout;
class QPushButton;
class QScrollBar;

namespace ktr {

/// Calibration of the two analog outputs at two reference points.
class CalibrationPage : public Page
{
    Q_OBJECT

public:
    explicit CalibrationPage(EditorContext &context, QWidget *parent = nullptr);

    bool eventFilter(QObject *watched, QEvent *event) override;

    /// What the module answered: the button that was pressed last is done. The earlier answers can be
    /// scrolled back to.
    void confirm(const QString &text);
    /// What the module answered, which is a failure. It is shown while a button waits, unless it names
    /// another command than a service.
    void showFailure(const QString &answer);
    /// Takes all marks and answers away.
    void clear();

    /// The command that waits for the module, and the command that was just sent to it. The button of any
    /// other command can be pressed again.
    void showWaiting(const QString &command);
    void commandLeft(const QString &command);

Q_SIGNALS:
    void commandPlaced(const QString &command);

private:
    QWidget *buttonsCard();
    QWidget *confirmationsCard();
    void addButton(QGridLayout *grid, int index);

    void release();
    void addAnswer(const QString &text);
    void setDone(QPushButton *button, bool done);

    std::vector<QPushButton *> m_buttons;
    QPushButton *m_waiting = nullptr; ///< not to be pressed again before the module has confirmed
    QString m_command;                ///< its command, until that is sent
    QTimer m_patience;
    QScrollBar *m_scroll = nullptr;
    QLabel *m_done = nullptr;
    QStringList m_confirmations;
};

} // namespace ktr
