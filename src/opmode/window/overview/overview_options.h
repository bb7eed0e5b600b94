#pragma once

#include <QToolButton>

namespace ktr {

/// What is set seldom: the groups, and which values tiles show.
class OverviewOptions : public QToolButton
{
    Q_OBJECT

public:
    static constexpr int mostChannels = 4;

    explicit OverviewOptions(QWidget *parent = nullptr);

    /// Takes the channels that were chosen last, and tells them.
    void restore();
    /// Why the groups cannot be changed; empty when they can.
    void setGroupsUsable(const QString &why);
    void applyTexts();

Q_SIGNALS:
    void groupsWanted();
    /// Up to four, in their order; empty for those that have names or values.
    void channelsChosen(const QList<int> &channels);

private:
    QList<int> chosen() const;
    void choose(const QList<int> &channels);
    void takeChosen();

    QAction *m_groups;
    QAction *m_caption;
    QAction *m_named;            ///< those that have names
    QList<QAction *> m_channels; ///< each of 1 to 18
};

} // namespace ktr
