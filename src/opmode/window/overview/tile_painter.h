#pragma once

#include "opmode/overview/station_glance.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPalette>

#include <optional>
#include <span>

class QPainter;

namespace ktr {

/// What a tile shows of a station, as texts.
struct TileTexts
{
    QString state; ///< its worst alarm, or how it is
    QString heard;
    std::optional<int> bars; ///< of the signal, as in QualityBars
    struct Value
    {
        QString caption;
        QString value; ///< empty when there is none
        QString unit;
        std::optional<bool> state;
        QList<QPointF> trend;
        QString age;  ///< in a few words; empty when it is not known
        QString mark; ///< of a value that is beyond a limit; empty for none
    };
    QList<Value> values;
    bool isStale = false; ///< the values are of before
};

/// How large tiles are, and what fits into them, the largest first.
struct TileLevel
{
    double width = 0; ///< in heights of a line of text; tiles are stretched so that they fill their row
    double height = 0;

    bool isCell() const { return height < 1.4 || width < 3; }
    bool hasState() const { return height >= 2.2; }
    bool hasFoot() const { return height >= 3.4; }
    /// How many values fit.
    int values() const { return height >= 7 ? 4 : height >= 5 ? 2 : 0; }
};

std::span<const TileLevel> tileLevels();

/// Draws stations as tiles, told apart by their form as well as by their colour: what waits is red with as
/// many "!" as its priority has, an acknowledged alarm has a red frame and one "!", silence a mark with a bar
/// through it; offline ones have a broken frame. Who is in alarm and silent has both marks; a cell, which has
/// room for one, a corner cut off for the other.
class TilePainter
{
public:
    struct Place
    {
        QRectF rect;
        bool isChosen = false;
        bool isPointed = false;
    };

    TilePainter(const TileLevel &level, const QFont &font, const QPalette &palette);

    void paint(QPainter &painter, const Place &place, const StationGlance &glance,
               const TileTexts &texts) const;
    void paintCell(QPainter &painter, const Place &place, const StationGlance &glance) const;
    struct Heading
    {
        QString name;
        QString count;
        QString waiting; ///< how many are in alarm, in words; empty for none
        QString silent;  ///< likewise
        bool isFolded = false;
    };
    void paintHeading(QPainter &painter, const Place &place, const Heading &heading) const;

    /// Marks one of several stations that are chosen. What is urgent keeps its colour and its frame.
    void paintChosen(QPainter &painter, const QRectF &where, Urgency urgency) const;

private:
    void paintGround(QPainter &painter, const Place &place, Urgency urgency) const;
    void paintHead(QPainter &painter, QRectF where, const StationGlance &glance) const;
    void paintCorner(QPainter &painter, const QRectF &where, const StationGlance &glance) const;
    double paintMark(QPainter &painter, const QRectF &where, const StationGlance &glance) const;
    void paintValue(QPainter &painter, const QRectF &where, const TileTexts::Value &value,
                    Urgency urgency) const;
    void paintState(QPainter &painter, const QRectF &where, const QString &state) const;
    void paintFoot(QPainter &painter, const QRectF &where, const TileTexts &texts) const;
    void paintChoice(QPainter &painter, const Place &place, double inset = 0) const;
    void drawText(QPainter &painter, const QRectF &where, const QString &text, int flags = 0) const;
    QColor ink(Urgency urgency) const;
    QColor faintInk(Urgency urgency) const;

    TileLevel m_level;
    QFont m_font;
    QFont m_bold;
    QFont m_small;
    QFontMetricsF m_boldMetrics;
    QFontMetricsF m_smallMetrics;
    QPalette m_palette;
    double m_line; ///< its height
};

} // namespace ktr
