#include "opmode/curves/curve_store.h"

#include "opmode/operational_mode.h"
#include "record/record_address.h"

#include <QThread>

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
    }
}

/// One that nobody waits for, or else one with few before: as many as there are processors, but no more of a
/// server's connections than others can spare.
RecordQueries &CurveStore::freeConnection()
{
    constexpr int most = 4;
    const auto mostHere = static_cast<std::size_t>(std::clamp(QThread::idealThreadCount(), 1, most));
    const auto waiting = [](const auto &each) { return each->waiting(); };
    const auto least = std::ranges::min_element(m_connections, {}, waiting);
    if (least != m_connections.end() && (waiting(*least) == 0 || m_connections.size() >= mostHere)) {
        return **least;
    }
    m_connections.push_back(std::make_unique<RecordQueries>(m_path));
    m_connections.back()->setFoundDamage([this] { m_mode.mendRecord(); });
    return *m_connections.back();
}

void CurveStore::withdraw(const void *asker)
{
    for (const auto &connection : m_connections) {
        connection->withdraw(asker);
    }
}

void CurveStore::clear()
{
    m_connections.clear(); // no answer arrives any more
    m_path.clear();
    m_curves.clear();
    m_marks = {};
    m_marksOf.clear();
    m_marksAsked = {};
    m_areGapsAsked = false;
    m_gaps = {};
    m_gapsOf.clear();
    m_gapsAsked = {};
    m_channelAsker.clear();
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
    return m_areGapsAsked || std::ranges::any_of(m_curves, [](const auto &each) { return each->isAsked; });
}

QString CurveStore::trouble() const
{
    const auto found =
        std::ranges::find_if(m_curves, [](const auto &each) { return !each->trouble.isEmpty(); });
    return found != m_curves.end() ? (*found)->trouble
           : !m_marks.status       ? m_marks.status.message()
           : !m_gaps.status        ? m_gaps.status.message()
                                   : QString();
}

void CurveStore::want(const QList<SeriesId> &series, const CurveRange &range, bool anew)
{
    openRecord();
    std::erase_if(m_curves, [&](const auto &each) {
        const bool isOld = !series.contains(each->id);
        if (isOld) {
            withdraw(each.get());
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
    askGaps(series, range, anew);
}

void CurveStore::ask(Held &curve, const CurveRange &range, HistoryLevel level)
{
    if (m_path.isEmpty()) {
        curve.points = std::make_shared<CurvePoints>(
            treeCurve(m_mode.tree(), curve.id.kennung, curve.id.channel, range, level).curve);
        return;
    }
    const qint64 station = m_mode.alarmActions().numberOf(curve.id.kennung);
    curve.isAsked = true;
    curve.asked = range;
    curve.askedLevel = level;
    if (curve.connection != nullptr) {
        curve.connection->withdraw(&curve);
    }
    curve.connection = &freeConnection();
    curve.connection->ask(
        &curve,
        [station, channel = curve.id.channel, range, level](RecordReader &reader) {
            return readCurve(reader, station, channel, range, level);
        },
        [this, &curve](ReadCurve read) { // it was withdrawn where the curve is gone
            curve.isAsked = false;
            curve.trouble = read.status ? QString() : read.status.message();
            if (read.status) {
                curve.points = withGaps(curve.id, std::move(read.curve));
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
    if (m_path.isEmpty() ||
        (stations == m_marksOf && m_marksAsked.contains(range) && m_marks.areAll && !anew)) {
        return;
    }
    m_marksOf = stations;
    m_marksAsked = withMargins(range);
    withdraw(this);
    freeConnection().ask(
        this,
        [stations, wanted = m_marksAsked](RecordReader &reader) {
            return readMarks(reader, stations, wanted);
        },
        [this](ReadMarks read) {
            m_marks = std::move(read);
            Q_EMIT changed();
        });
}

/// Behind the curves, which are seen first.
void CurveStore::askGaps(const QList<SeriesId> &series, const CurveRange &range, bool anew)
{
    const bool areThere =
        series == m_gapsOf && m_gapsAsked.contains(range) && m_gapsAsked.length() < 3 * range.length();
    if (m_path.isEmpty() || (areThere && !anew)) {
        return;
    }
    m_gapsOf = series;
    m_gapsAsked = withMargins(range);
    GapsQuestion question{.range = m_gapsAsked,
                          .now = m_mode.now().toMSecsSinceEpoch(),
                          .hasOneKeeper = !isServerAddress(m_path)};
    for (const SeriesId &id : series) {
        question.inputs.append({m_mode.alarmActions().numberOf(id.kennung), id.channel});
    }
    withdraw(&m_gapsAsker);
    m_areGapsAsked = true;
    freeConnection().ask(
        &m_gapsAsker, [question](RecordReader &reader) { return readGaps(reader, question); },
        [this, series](ReadGaps read) {
            m_areGapsAsked = false;
            m_gapsOf = series;
            m_gaps = std::move(read);
            for (const auto &curve : m_curves) {
                if (curve->points) {
                    curve->points = withGaps(curve->id, *curve->points);
                }
            }
            Q_EMIT changed();
        });
}

/// Those that are known by now.
std::shared_ptr<const CurvePoints> CurveStore::withGaps(const SeriesId &id, CurvePoints points) const
{
    const qsizetype place = m_gapsOf.indexOf(id);
    if (place >= 0 && place < m_gaps.gaps.size()) {
        points.gaps = m_gaps.gaps[place];
    }
    return std::make_shared<CurvePoints>(std::move(points));
}

void CurveStore::channelsOf(const QString &kennung, const std::function<void(const QList<int> &)> &tell)
{
    openRecord();
    if (m_path.isEmpty()) {
        tell(treeChannels(m_mode.tree(), kennung));
        return;
    }
    const char *asker = &m_channelAsker[kennung];
    withdraw(asker);
    freeConnection().ask(
        asker,
        [station = m_mode.alarmActions().numberOf(kennung)](RecordReader &reader) {
            QList<int> channels;
            (void)reader.measuredChannels(station, channels);
            return channels;
        },
        tell);
}

void CurveStore::usualOf(const QStringList &kennungen, int room,
                         const std::function<void(const QList<SeriesId> &)> &tell)
{
    openRecord();
    const int ofEach = std::max(1, room / std::max(1, static_cast<int>(kennungen.size())));
    const auto tellOf = [this, kennungen, ofEach, tell](const QList<QList<int>> &measured) {
        QList<SeriesId> series;
        for (qsizetype i = 0; i < kennungen.size(); ++i) {
            series += seriesOfStation(m_mode, kennungen[i], measured.value(i), ofEach);
        }
        tell(series);
    };
    QList<qint64> stations;
    QList<QList<int>> ofTree;
    for (const QString &kennung : kennungen) {
        stations += m_mode.alarmActions().numberOf(kennung);
        ofTree += treeChannels(m_mode.tree(), kennung);
    }
    if (m_path.isEmpty()) {
        tellOf(ofTree);
        return;
    }
    withdraw(&m_usualAsker);
    freeConnection().ask(
        &m_usualAsker,
        [stations](RecordReader &reader) {
            QList<QList<int>> measured;
            for (const qint64 station : stations) {
                measured += QList<int>();
                (void)reader.measuredChannels(station, measured.last());
            }
            return measured;
        },
        tellOf);
}

} // namespace ktr
