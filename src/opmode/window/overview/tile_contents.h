#pragma once

#include "opmode/overview/overview_model.h"
#include "opmode/window/overview/tile_painter.h"

#include <QCoreApplication>

namespace ktr {

class OperationalMode;

/// What tiles and headings show and what is said of them: by tool tips and assistive tools, in words.
class TileContents
{
    Q_DECLARE_TR_FUNCTIONS(ktr::TileContents)

public:
    TileContents(const OperationalMode &mode, const OverviewModel &model) : m_mode(mode), m_model(model) {}

    /// Up to four channels that are shown of each station; empty for those that have names or values.
    void setChannels(const QList<int> &channels) { m_channels = channels; }

    TileTexts textsOf(const StationGlance &glance, const TileLevel &level, const QLocale &locale) const;
    TilePainter::Heading headingOf(int group, const QLocale &locale) const;
    /// How a station is, in words, over several lines.
    QString description(const StationGlance &glance, const TileLevel &level, const QLocale &locale) const;
    QString headingDescription(int group) const;

private:
    QString stateOf(const StationGlance &glance) const;
    QList<int> channelsFor(const QString &kennung) const;
    QStringList valueDescriptions(const QString &kennung, const TileLevel &level,
                                  const QLocale &locale) const;

    const OperationalMode &m_mode;
    const OverviewModel &m_model;
    QList<int> m_channels;
};

} // namespace ktr
