#pragma once

#include <QStatusBar>

class QLabel;
class QProgressBar;
class QToolButton;

namespace ktr {

class Lamp;
class ShortenedLabel;

/// The status bar: the state of the link, the last event, whether the configuration is modified, and how far
/// a transmission has got.
class StatusLine : public QStatusBar
{
    Q_OBJECT

public:
    explicit StatusLine(QWidget *parent = nullptr);

    /// Shows an event; it stays until the next one.
    void tell(const QString &line);
    QString lastEvent() const { return m_events.isEmpty() ? QString() : m_events.constLast(); }
    /// The latest events, a line each, the newest last.
    QString events() const { return m_events.join(u'\n'); }

    /// Shows what the link is doing; green once the module was heard.
    void showLink(const QString &text, bool connected);

    void showModified(bool modified);

    /// Shows progress in steps of a transmission or bytes of a firmware image; nothing for 0.
    void showProgress(int done, int of = stepsShown);

    /// Shows the command that is waiting for the module; empty for none.
    void showWaiting(const QString &command);

    /// Shows in a few words what is amiss until it is no longer; `details` for who points at it. Empty for
    /// nothing.
    void showNotice(const QString &text, const QString &details);

    /// Tells that the operational mode is closed and nobody watches so many stations; 0: nothing of it.
    void showUnwatched(int stations);

Q_SIGNALS:
    /// The operational mode is to be opened again.
    void watchWanted();
    /// The user takes the waiting command back.
    void takeBackWanted();

protected:
    void changeEvent(QEvent *event) override;

private:
    static constexpr int stepsShown = 77; ///< while nothing is under way; a transmission tells its own number

    void applyTexts();

    static constexpr qsizetype eventsKept = 200;

    QStringList m_events;
    QString m_waitingCommand;
    int m_stationsUnwatched = 0;
    Lamp *m_lamp; ///< Opt_connected
    QLabel *m_link;
    ShortenedLabel *m_event;
    QToolButton *m_waiting;   ///< takes back the command that waits
    QToolButton *m_unwatched; ///< opens the operational mode
    QLabel *m_notice;
    QLabel *m_modified;
    QProgressBar *m_progress;
};

} // namespace ktr
