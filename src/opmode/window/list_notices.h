#pragma once

#include <QObject>
#include <QWidget>

namespace ktr {

class BesideBanner;
class ListBanner;
class OperationalMode;

/// What is told of the list of stations lastingly, above and below them: why it cannot be used, what of it
/// was lost, who watches it, and what cannot be written.
class ListNotices : public QObject
{
    Q_OBJECT

public:
    /// They become children of `body`, which places them.
    ListNotices(OperationalMode &mode, QWidget &body);

    QList<QWidget *> above() const;
    /// Comes in the middle of the work, and moves nothing down.
    QWidget &below() const;
    /// Those that tell that something is not watched.
    QList<QWidget *> ofWatching() const;
    ListBanner &list() { return *m_list; }
    BesideBanner &beside() { return *m_beside; }

    /// Of a list that is watched elsewhere: who does, or that nobody does any more, or may. A shared one is
    /// that of a record that several keepers have.
    void showKeeper(bool isShared);
    /// Whether the record's rules of alarms are damaged, and the usual ones hold.
    void showRules();
    /// Whether another program could watch the list, too.
    void showLock(bool isUsable);
    void applyTexts(bool isShared);

Q_SIGNALS:
    /// As ListBanner and BesideBanner have them.
    void retryWanted();
    void emptyWanted();
    void watchWanted();
    void groupsWanted();
    /// A line for the status bar.
    void statusMessage(const QString &line);

private:
    void showUnkept();

    OperationalMode &m_mode;
    QWidget &m_body;
    ListBanner *m_list;
    ListBanner *m_lock;
    ListBanner *m_joined;
    BesideBanner *m_beside;
    ListBanner *m_rules;
    ListBanner *m_unkept;
};

} // namespace ktr
