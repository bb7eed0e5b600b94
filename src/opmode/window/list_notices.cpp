#include "opmode/window/list_notices.h"

#include "opmode/operational_mode.h"
#include "opmode/window/alarm_look.h"
#include "opmode/window/beside_banner.h"
#include "opmode/window/list_banner.h"

#include <QLocale>

namespace ktr {

namespace {

ListBanner *createBanner(const QString &name, QWidget &body)
{
    auto *banner = new ListBanner(&body);
    banner->setObjectName(name);
    return banner;
}

} // namespace

ListNotices::ListNotices(OperationalMode &mode, QWidget &body)
    : QObject(&body),
      m_mode(mode),
      m_body(body),
      m_list(new ListBanner(&body)),
      m_lock(createBanner(QStringLiteral("LockBanner"), body)),
      m_joined(createBanner(QStringLiteral("JoinedBanner"), body)),
      m_beside(new BesideBanner(mode.configurations(), &body)),
      m_rules(createBanner(QStringLiteral("RulesBanner"), body)),
      m_unkept(createBanner(QStringLiteral("UnkeptBanner"), body))
{
    connect(m_list, &ListBanner::retryWanted, this, &ListNotices::retryWanted);
    connect(m_list, &ListBanner::emptyWanted, this, &ListNotices::emptyWanted);
    connect(m_joined, &ListBanner::watchWanted, this, &ListNotices::watchWanted);
    connect(m_beside, &BesideBanner::groupsWanted, this, &ListNotices::groupsWanted);
    connect(&mode.alarmActions(), &AlarmActions::minutePassed, this, &ListNotices::showRules);
    connect(&mode, &OperationalMode::unkeptChangesChanged, this, &ListNotices::showUnkept);
}

QList<QWidget *> ListNotices::above() const
{
    return {m_list, m_lock, m_joined, m_beside, m_rules};
}

QWidget &ListNotices::below() const
{
    return *m_unkept;
}

QList<QWidget *> ListNotices::ofWatching() const
{
    return {m_list, m_lock, m_joined, m_rules, m_unkept};
}

void ListNotices::applyTexts(bool isShared)
{
    m_list->applyTexts();
    m_lock->applyTexts();
    m_beside->applyTexts();
    showKeeper(isShared);
    showRules();
    showUnkept();
}

void ListNotices::showRules()
{
    const QString kept = m_mode.record().settings().value(AlarmActions::rulesSetting);
    if (!m_mode.isOpen() || kept.isEmpty() || AlarmRules::fromJson(kept)) {
        m_rules->hide();
        return;
    }
    m_rules->tellRules(
        tr("They are damaged. Until others are set, a text with \"fail\" is an alarm and no other. The "
           "menu Alarms, Alarm rules, shows these; OK keeps them in the place of the damaged ones."));
}

void ListNotices::showLock(bool isUsable)
{
    m_lock->hide();
    if (isUsable && !m_mode.lockTrouble().isEmpty()) {
        m_lock->tellUnlocked(m_mode.lockTrouble());
    }
}

void ListNotices::showKeeper(bool isShared)
{
    if (const std::optional<QDateTime> lost = m_mode.unreachableSince()) {
        const QString line = tr("Since %1 nothing arrives here. The stations may be watched all the same; "
                                "what is shown is how "
                                "it was then. It is tried again all the time. %2")
                                 .arg(shownMoment(lost->toMSecsSinceEpoch()), m_mode.unreachableReason());
        m_joined->tellUnreachable(line);
        Q_EMIT statusMessage(tr("The record cannot be reached") + QLatin1String(". ") + line);
    } else if (const std::optional<QDateTime> since = m_mode.unwatchedSince()) {
        const QString line = tr("Since %1 no alarm arrives. What is shown is how it was then.")
                                 .arg(shownMoment(since->toMSecsSinceEpoch()));
        m_joined->tellUnwatched(line, !isShared);
        Q_EMIT statusMessage(tr("Nobody watches the stations") + QLatin1String(". ") + line);
    } else if (const std::optional<QDateTime> last = m_mode.unheardSince()) {
        const QString line =
            tr("For more than %1 s, since %2, nothing has come from it: perhaps nobody watches, and what is "
               "shown is how it was then. If it hangs, end it (%3); then the stations can be watched here.")
                .arg(KeeperBeat::patience.count())
                .arg(shownMoment(last->toMSecsSinceEpoch()), m_mode.keeper());
        m_joined->tellUnheard(line);
        Q_EMIT statusMessage(tr("The program that watches the stations is not heard") + QLatin1String(". ") +
                             line);
    } else if (m_mode.isJoined() && !isShared) {
        m_joined->tellJoined(tr("Watched by %1").arg(m_mode.keeper()));
    } else { // several keepers are as it should be, and the title has their names
        m_joined->hide();
    }
}

void ListNotices::showUnkept()
{
    const std::optional<UnkeptChanges> unkept = m_mode.unkeptChanges();
    if (!unkept) {
        m_unkept->hide();
        return;
    }
    m_unkept->tellUnkept(
        tr("Since %1; changes that wait: %2. It is tried again all the time; what is not written when the "
           "program or the system ends is lost. %3")
            .arg(shownMoment(unkept->since.toMSecsSinceEpoch()), m_body.locale().toString(unkept->count),
                 unkept->reason));
}

} // namespace ktr
