#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace ktr {

/// Tells what must not be missed of the list of stations, as long as it is so or until the user has noted it;
/// says why and what can be done.
class ListBanner : public QWidget
{
    Q_OBJECT

public:
    explicit ListBanner(QWidget *parent = nullptr);

    /// `canBeginEmpty`: the list may be put aside for an empty one.
    void appear(const QString &reason, bool canBeginEmpty);
    /// The list is watched, but not all of it is as it was. It goes when the user has taken note.
    void tellDefects(const QString &defects);
    /// Another program could watch the list, too. It goes when the user has taken note.
    void tellUnlocked(const QString &reason);
    /// Changes cannot be written. It stays until hide().
    void tellUnkept(const QString &reason);
    /// Another program watches the list, which is shown here, too. It stays until hide().
    void tellJoined(const QString &keeper);
    /// The program that watches the list is not heard. It stays until hide().
    void tellUnheard(const QString &since);
    /// Nobody watches the list that is shown any more. It stays until hide(). `canWatch`: this program could.
    void tellUnwatched(const QString &since, bool canWatch);
    /// What is shown cannot be followed. It stays until hide().
    void tellUnreachable(const QString &since);
    /// The stations cannot be shown; who watches them is not known. It stays until hide().
    void tellUnopened(const QString &reason);
    /// What is kept in files beside the list cannot be used as it is. It goes when the user has taken note,
    /// or with hide().
    void tellBeside(const QString &troubles);
    /// Alarms are told by other rules than the record has. It stays until hide().
    void tellRules(const QString &reason);
    /// The stations are not shown yet. It stays until hide().
    void tellOpening(const QString &address);
    /// Puts the captions in place; called again when the language changes.
    void applyTexts();

Q_SIGNALS:
    /// The user wants the list to be opened again.
    void retryWanted();
    /// The user wants to begin with an empty list.
    void emptyWanted();
    /// The user wants the stations to be watched by this program.
    void watchWanted();

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void takeColours();
    enum class Topic {
        NotWatched,
        Defects,
        Unlocked,
        Unkept,
        Joined,
        Unheard,
        Unwatched,
        Unreachable,
        Unopened,
        Opening,
        Beside,
        Rules
    };
    void show(Topic topic, const QString &reason);
    QString headline() const;

    Topic m_topic = Topic::NotWatched;

    QLabel *m_icon;
    QLabel *m_headline;
    QLabel *m_reason;
    QPushButton *m_retry;
    QPushButton *m_empty;
    QPushButton *m_noted;
    QPushButton *m_watch;
};

} // namespace ktr
