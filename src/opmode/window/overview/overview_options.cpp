#include "opmode/window/overview/overview_options.h"

#include "config/channels.h"
#include "look/outside_texts.h"
#include "opmode/overview/station_groups.h"
#include "opmode/tree/node_texts.h"
#include "platform/settings_store.h"

#include <QAction>
#include <QMenu>

namespace ktr {

namespace {

constexpr int mostChannels = StationGroups::mostChannels;
constexpr qsizetype longestCaption = 40;
const QString valuesKey = QStringLiteral("overviewValues");

} // namespace

OverviewOptions::OverviewOptions(QWidget *parent) : QToolButton(parent)
{
    setObjectName(QStringLiteral("Cmd_overview_options"));
    setPopupMode(InstantPopup);
    auto *menu = new QMenu(this);
    menu->setToolTipsVisible(true);
    setMenu(menu);
    m_groups = menu->addAction(QString());
    m_groups->setObjectName(QStringLiteral("mnu_overview_groups"));
    m_caption = menu->addSection(QString());
    m_named = menu->addAction(QString());
    m_named->setObjectName(QStringLiteral("mnu_overview_named"));
    m_named->setCheckable(true);
    for (int channel = 1; channel <= channelCount; ++channel) {
        QAction *action = menu->addAction(QString());
        action->setObjectName(QStringLiteral("mnu_overview_value_%1").arg(channel));
        action->setCheckable(true);
        m_channels += action;
        connect(action, &QAction::triggered, this, &OverviewOptions::takeChosen);
    }
    connect(m_groups, &QAction::triggered, this, &OverviewOptions::groupsWanted);
    connect(m_named, &QAction::triggered, this, [this] {
        choose({});
        takeChosen();
    });
    choose({});
}

QList<int> OverviewOptions::chosen() const
{
    QList<int> channels;
    for (int channel = 1; channel <= channelCount; ++channel) {
        if (m_channels[channel - 1]->isChecked()) {
            channels += channel;
        }
    }
    return channels;
}

/// When there are four no further one can be chosen.
void OverviewOptions::choose(const QList<int> &channels)
{
    m_named->setChecked(channels.isEmpty());
    for (int channel = 1; channel <= channelCount; ++channel) {
        QAction *action = m_channels[channel - 1];
        action->setChecked(channels.contains(channel));
        action->setEnabled(action->isChecked() || channels.size() < mostChannels);
    }
}

void OverviewOptions::takeChosen()
{
    const QList<int> channels = chosen();
    choose(channels);
    if (!m_group.isEmpty()) {
        Q_EMIT groupChannelsChosen(m_group, channels);
        return;
    }
    m_all = channels;
    QStringList numbers;
    for (const int channel : channels) {
        numbers += QString::number(channel);
    }
    SettingsStore().SaveSetting(settingsOwner, settings_sections::operationalMode, valuesKey,
                                numbers.join(u','));
    Q_EMIT channelsChosen(channels);
}

void OverviewOptions::restore()
{
    const QString kept =
        SettingsStore().GetSetting(settingsOwner, settings_sections::operationalMode, valuesKey);
    QList<int> channels;
    for (const QString &number : kept.split(u',', Qt::SkipEmptyParts)) {
        const int channel = number.toInt();
        if (channel >= 1 && channel <= channelCount && channels.size() < mostChannels) {
            channels += channel;
        }
    }
    choose(channels);
    m_all = chosen();
    Q_EMIT channelsChosen(m_all);
}

void OverviewOptions::setGroup(const QString &group, const QList<int> &channels)
{
    m_group = group;
    choose(group.isEmpty() ? m_all : channels);
    applyTexts();
}

void OverviewOptions::setGroupsUsable(const QString &why)
{
    m_groups->setEnabled(why.isEmpty());
    m_groups->setToolTip(why);
}

void OverviewOptions::applyTexts()
{
    setText(tr("Options"));
    m_groups->setText(tr("Groups..."));
    m_caption->setText(m_group.isEmpty() ? tr("Values shown (up to %1)").arg(mostChannels)
                                         : tr("Values shown in %1 (up to %2)")
                                               .arg(shortenedLine(m_group, longestCaption))
                                               .arg(mostChannels));
    m_named->setText(m_group.isEmpty() ? tr("Those with names") : tr("As in all groups"));
    for (int channel = 1; channel <= channelCount; ++channel) {
        m_channels[channel - 1]->setText(
            QStringLiteral("%1 %2").arg(channel).arg(channelCaption(channel).trimmed()));
    }
}

} // namespace ktr
