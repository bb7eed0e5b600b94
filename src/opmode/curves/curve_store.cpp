#include "opmode/curves/curve_store.h"

#include "opmode/operational_mode.h"

#include <algorithm>

namespace ktr {

namespace {

/// A little more at both sides, into which the time can be dragged.
CurveRange withMargins(const CurveRange &range)
{
    constexpr qint64 parts = 8;
    const qint64 margin = range.length() / parts;
    return {range.from - margin, range.to + margin};
}

} // namespace

CurveStore::CurveStore(OperationalMode &mode, QObject *parent) : QObject(parent), m_mode(mode) {}

CurveStore::~CurveStore() = default;

/// Another list has another record.
void CurveStore::openRecord()
{
    const QString path = m_mode.recordPath();
    if (path != m_path) {
        clear();
        m_path = path;
        m_queries = path.isEmpty() ? nullptr : std::make_unique<RecordQueries>(path);
        if (m_queries) {
            m_queries->setFoundDamage([this] { m_mode.mendRecord(); });
        }
    }
}

void CurveStore::clear()
{
    m_queries.reset(); // no answer arrives any more
    m_path.clear();
    m_curves.clear();
    m_marks = {};
    m_marksOf.clear();
    m_marksAsked = {};
}

CurveStore::Held &CurveStore::held(const SeriesId &id)
{
    const auto found = std::ranges::find_if(m_curves, [&id](const auto &each) { return each->id == id; });
    if (found != m_curves.end()) {
        return **found;
    }
    m_curves.push_back(std::make_unique<Held>());
    m_curves.back()->id = id;
    return *m_curves.back();
}

std::shared_ptr<const CurvePoints> CurveStore::points(const SeriesId &series) const
{
    const auto found =
        std::ranges::find_if(m_curves, [&series](const auto &each) { return each->id == series; });
    return found == m_curves.end() ? nullptr : (*found)->points;
}

bool CurveStore::isReading() const
{
    return std::ranges::any_of(m_curves, [](const auto &each) { return each->isAsked; });
}

QString CurveStore::trouble() const
{
    const auto found =
        std::ranges::find_if(m_curves, [](const auto &each) { return !each->trouble.isEmpty(); });
    return found != m_curves.end() ? (*found)->trouble
           : m_marks.status        ? QString()
                                   : m_marks.status.message();
}

void CurveStore::want(const QList<SeriesId> &series, const CurveRange &range, bool anew)
{
    openRecord();
    std::erase_if(m_curves, [&](const auto &each) {
        const bool isOld = !series.contains(each->id);
        if (isOld && m_queries) {
            m_queries->withdraw(each.get());
        }
        return isOld;
    });
    const HistoryLevel level = levelOf(range);
    for (const SeriesId &id : series) {
        Held &curve = held(id);
        const bool isThere =
            curve.points && curve.points->level == level && curve.points->read.contains(range);
        const bool isComing = curve.isAsked && curve.askedLevel == level && curve.asked.contains(range);
        if (!isComing && (!isThere || anew)) {
            ask(curve, withMargins(range), level);
        }
    }
    askMarks(series, range, anew);
}

void CurveStore::ask(Held &curve, const CurveRange &range, HistoryLevel level)
{
    if (!m_queries) {
        curve.points = std::make_shared<CurvePoints>(
            treeCurve(m_mode.tree(), curve.id.kennung, curve.id.channel, range, level).curve);
        return;
    }
    const qint64 station = m_mode.alarmActions().numberOf(curve.id.kennung);
    curve.isAsked = true;
    curve.asked = range;
    curve.askedLevel = level;
    m_queries->ask(
        &curve,
        [station, channel = curve.id.channel, range, level](RecordReader &reader) {
            return readCurve(reader, station, channel, range, level);
        },
        [this, &curve](ReadCurve read) { // it was withdrawn where the curve is gone
            curve.isAsked = false;
            curve.trouble = read.status ? QString() : read.status.message();
            if (read.status) {
                curve.points = std::make_shared<CurvePoints>(std::move(read.curve));
            }
            Q_EMIT changed();
        });
}

void CurveStore::askMarks(const QList<SeriesId> &series, const CurveRange &range, bool anew)
{
    QList<qint64> stations;
    for (const SeriesId &id : series) {
        const qint64 station = m_mode.alarmActions().numberOf(id.kennung);
        if (station != 0 && !stations.contains(station)) {
            stations += station;
        }
    }
    if (!m_queries || (stations == m_marksOf && m_marksAsked.contains(range) && m_marks.areAll && !anew)) {
        return;
    }
    m_marksOf = stations;
    m_marksAsked = withMargins(range);
    m_queries->ask(
        this,
        [stations, wanted = m_marksAsked](RecordReader &reader) {
            return readMarks(reader, stations, wanted);
        },
        [this](ReadMarks read) {
            m_marks = std::move(read);
            Q_EMIT changed();
        });
}

void CurveStore::channelsOf(const QString &kennung, const std::function<void(const QList<int> &)> &tell)
{
    openRecord();
    if (!m_queries) {
        tell(treeChannels(m_mode.tree(), kennung));
        return;
    }
    m_queries->ask(
        &m_path, // the newest one is the one that is looked at
        [station = m_mode.alarmActions().numberOf(kennung)](RecordReader &reader) {
            QList<int> channels;
            (void)reader.measuredChannels(station, channels);
            return channels;
        },
        tell);
}

} // namespace ktr
