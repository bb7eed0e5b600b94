#pragma once

#include <QToolButton>

namespace ktr {

/// What is set seldom: the groups, and which values tiles show.
class OverviewOptions : public QToolButton
{
    Q_OBJECT

public:
    explicit OverviewOptions(QWidget *parent = nullptr);

    /// Takes the channels that were chosen last, and tells them.
    void restore();
    /// Why the groups cannot be changed; empty when they can.
    void setGroupsUsable(const QString &why);
    /// Which group's values are chosen from now on, and the ones that it has; with an empty name those of all
    /// stations.
    void setGroup(const QString &group, const QList<int> &channels);
    void applyTexts();

Q_SIGNALS:
    void groupsWanted();
    /// Up to four, in their order; empty for those that have names or values.
    void channelsChosen(const QList<int> &channels);
    /// The same for one group; empty for those that all stations show.
    void groupChannelsChosen(const QString &group, const QList<int> &channels);

private:
    QList<int> chosen() const;
    void choose(const QList<int> &channels);
    void takeChosen();

    QString m_group;
    QList<int> m_all; ///< of all stations
    QAction *m_groups;
    QAction *m_caption;
    QAction *m_named;            ///< those that have names
    QList<QAction *> m_channels; ///< each of 1 to 18
};

} // namespace ktr
