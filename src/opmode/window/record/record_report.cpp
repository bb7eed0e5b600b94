#include "opmode/window/record/record_report.h"

#include "opmode/window/alarms/alarm_cells.h"

#include <QCoreApplication>

#include <algorithm>
#include <map>

namespace ktr {

namespace {

constexpr qint64 anHour = 3'600'000;
constexpr qint64 aDay = 24 * anHour;
/// The most rows that a report has of one table.
constexpr qsizetype mostRead = 5000;
constexpr int aPage = 500;

QString words(const char *text)
{
    return QCoreApplication::translate("Report", text);
}

/// All rows up to what a report takes, the oldest first.
template <class Row> Status readAll(QList<Row> &rows, bool &isCut, const auto &find)
{
    std::optional<RecordKey> after;
    do {
        auto page = find(after);
        if (!page.status) {
            return page.status;
        }
        rows += page.rows;
        after = page.next;
    } while (after && rows.size() < mostRead);
    isCut = isCut || after;
    std::ranges::reverse(rows);
    return Status::done();
}

QString lasting(qint64 ms, const QLocale &locale)
{
    const qint64 seconds = ms / 1000;
    if (seconds < 120) {
        return words(QT_TRANSLATE_NOOP("Report", "%1 s")).arg(locale.toString(seconds));
    }
    if (ms < 2 * anHour) {
        return words(QT_TRANSLATE_NOOP("Report", "%1 min")).arg(locale.toString(seconds / 60));
    }
    if (ms < 2 * aDay) {
        return words(QT_TRANSLATE_NOOP("Report", "%1 h"))
            .arg(locale.toString(static_cast<double>(ms) / anHour, 'f', 1));
    }
    return words(QT_TRANSLATE_NOOP("Report", "%1 days"))
        .arg(locale.toString(static_cast<double>(ms) / aDay, 'f', 1));
}

class Writing
{
public:
    Writing(const ReportQuestion &question, const ReportAnswer &answer, TimeForm form, const QLocale &locale)
        : m_question(question), m_answer(answer), m_form(form), m_locale(locale)
    {}

    Report shift() const
    {
        Report report{QCoreApplication::translate("Report", "Shift report"), {period()}};
        addAlarms(report, QCoreApplication::translate("Report", "Alarms that came"), m_answer.came);
        addAlarms(report, QCoreApplication::translate("Report", "Alarms that stand now"), m_answer.standing);
        Report::Table done{QCoreApplication::translate("Report", "What was done"), eventTitles()};
        for (const EventRow &row : m_answer.done) {
            done.rows += {time(row.at), row.operatorName, kindText(row.kind), station(row.station), row.text};
        }
        report.tables += done;
        addStations(report, QCoreApplication::translate("Report", "Stations that are silent now"),
                    m_question.silent, 0);
        tellCut(report);
        return report;
    }

    Report figures() const
    {
        const AlarmFigures &figures = m_answer.figures;
        Report report{QCoreApplication::translate("Report", "Figures of the alarms"), {period()}};
        const auto spansTo = [this](qint64 time) {
            return (time - m_answer.from + AlarmFigures::spanMs - 1) / AlarmFigures::spanMs;
        };
        const qint64 asked = std::max(qint64{1}, m_question.to - m_answer.from);
        qint64 length = asked; // of what the record covers
        qint64 spans = spansTo(m_question.to);
        if (m_answer.begun > m_answer.from && m_answer.begun < m_question.to) {
            length = std::min(asked, std::max(m_question.to - m_answer.begun, AlarmFigures::spanMs));
            spans -= (m_answer.begun - m_answer.from) / AlarmFigures::spanMs;
            report.lines += QCoreApplication::translate(
                                "Report", "The record begins on %1: the figures are about the time since")
                                .arg(time(m_answer.begun));
        }
        const double each = static_cast<double>(figures.came) / static_cast<double>(m_question.operators) /
                            (static_cast<double>(length) / AlarmFigures::spanMs);
        report.lines +=
            QCoreApplication::translate("Report", "Alarms that came: %1; for each operator %2 in ten minutes")
                .arg(number(figures.came), m_locale.toString(each, 'f', 2));
        report.lines += QCoreApplication::translate(
            "Report",
            "What one operator can see to: one alarm in ten minutes over a long time, ten in the first "
            "ten minutes of an upset");
        const auto above = [&](qint64 most) {
            const auto count = std::ranges::count_if(figures.tenMinutes, [&](const AlarmFigures::Span &span) {
                return span.count > most * m_question.operators;
            });
            return QCoreApplication::translate("Report", "%1 of %2 (%3 %)")
                .arg(number(count), number(spans),
                     m_locale.toString(100.0 * static_cast<double>(count) / static_cast<double>(spans), 'f',
                                       1));
        };
        report.lines += QCoreApplication::translate(
                            "Report", "Ten minutes with more than one alarm for each operator: %1")
                            .arg(above(1));
        report.lines += QCoreApplication::translate(
                            "Report", "Ten minutes with more than ten alarms for each operator: %1")
                            .arg(above(10));
        if (!figures.tenMinutes.isEmpty()) {
            const auto most = std::ranges::max_element(figures.tenMinutes, {}, &AlarmFigures::Span::count);
            report.lines += QCoreApplication::translate("Report", "Most in ten minutes: %1, from %2")
                                .arg(number(most->count), time(most->begin));
        }
        report.lines += QCoreApplication::translate("Report", "Acknowledged: %1, not acknowledged: %2")
                            .arg(number(figures.acknowledged), number(figures.came - figures.acknowledged));
        if (figures.acknowledged > 0) {
            report.lines +=
                QCoreApplication::translate(
                    "Report", "Time until the acknowledgement: half within %1, 90 % within %2, longest %3")
                    .arg(lasting(figures.medianMs, m_locale), lasting(figures.ninetyMs, m_locale),
                         lasting(figures.longestMs, m_locale));
        }
        report.lines += QCoreApplication::translate("Report", "Stood for longer than 24 hours: %1")
                            .arg(number(figures.standing));
        Report::Table frequent{QCoreApplication::translate("Report", "The ten most frequent alarms"),
                               {QCoreApplication::translate("Report", "Came"),
                                QCoreApplication::translate("Report", "Reported"),
                                QCoreApplication::translate("Report", "Station"),
                                QCoreApplication::translate("Report", "Text")}};
        for (const AlarmFigures::Frequent &row : figures.frequent) {
            frequent.rows += {number(row.occurrences), number(row.count), station(row.station), row.text};
        }
        report.tables += frequent;
        report.tables += hours();
        return report;
    }

    Report overlooked() const
    {
        Report report{QCoreApplication::translate("Report", "Easily overlooked")};
        if (m_question.isMuted) {
            report.lines += QCoreApplication::translate("Report", "The sound of alarms is off");
        }
        addStations(report, QCoreApplication::translate("Report", "Offline, not heard for 24 hours"),
                    m_question.offline, aDay);
        addStations(report, QCoreApplication::translate("Report", "Online and silent"), m_question.silent, 0);
        QList<AlarmRow> old;
        for (const AlarmRow &alarm : m_answer.standing) {
            if (m_question.now - alarm.first > aDay) {
                old += alarm;
            }
        }
        addAlarms(report,
                  QCoreApplication::translate("Report", "Alarms that have stood for longer than 24 hours"),
                  old);
        Report::Table shelves{
            QCoreApplication::translate("Report", "Shelved alarms"),
            {QCoreApplication::translate("Report", "Until"), QCoreApplication::translate("Report", "By"),
             QCoreApplication::translate("Report", "Station"), QCoreApplication::translate("Report", "Text"),
             QCoreApplication::translate("Report", "Reason")}};
        for (const Shelf &shelf : m_question.shelves) {
            shelves.rows +=
                {time(shelf.until), shelf.by, station(shelf.station),
                 shelf.text.isEmpty() ? QCoreApplication::translate("Report", "all alarms") : shelf.text,
                 shelf.why};
        }
        report.tables += shelves;
        tellCut(report);
        return report;
    }

private:
    QString time(qint64 moment) const { return timeText(moment, m_form); }
    QString number(qint64 count) const
    {
        return m_form == TimeForm::Shown ? m_locale.toString(count) : QString::number(count);
    }
    QString station(qint64 number) const { return stationText(m_answer.stations, number); }
    QString period() const
    {
        return QCoreApplication::translate("Report", "From %1 to %2")
            .arg(time(m_answer.from), time(m_question.to));
    }
    static QStringList eventTitles()
    {
        return {
            QCoreApplication::translate("Report", "Time"), QCoreApplication::translate("Report", "Operator"),
            QCoreApplication::translate("Report", "What"), QCoreApplication::translate("Report", "Station"),
            QCoreApplication::translate("Report", "Text")};
    }

    void tellCut(Report &report) const
    {
        if (m_answer.isCut) {
            report.lines +=
                QCoreApplication::translate(
                    "Report", "There is more than this report takes: of each list it has the last %1 only")
                    .arg(number(mostRead));
        }
    }

    void addAlarms(Report &report, const QString &heading, const QList<AlarmRow> &alarms) const
    {
        Report::Table table{
            heading,
            {QCoreApplication::translate("Report", "Came"), QCoreApplication::translate("Report", "Station"),
             QCoreApplication::translate("Report", "Text"), QCoreApplication::translate("Report", "Count"),
             QCoreApplication::translate("Report", "Acknowledged"),
             QCoreApplication::translate("Report", "By"), QCoreApplication::translate("Report", "Over"),
             QCoreApplication::translate("Report", "Comment")}};
        for (const AlarmRow &row : alarms) {
            table.rows += {time(row.first),
                           station(row.station),
                           row.text,
                           number(row.count),
                           time(row.acknowledged),
                           AlarmCells::acknowledgedBy(row),
                           time(row.over),
                           row.comment};
        }
        report.tables += table;
    }

    /// Stations not heard for longer than `least`, those that never were included.
    void addStations(Report &report, const QString &heading, const QStringList &names, qint64 least) const
    {
        Report::Table table{heading,
                            {QCoreApplication::translate("Report", "Station"),
                             QCoreApplication::translate("Report", "Last heard"),
                             QCoreApplication::translate("Report", "For how long")}};
        QList<std::pair<qint64, QString>> found;
        for (const QString &name : names) {
            if (const qint64 heard = m_answer.heard.value(name); m_question.now - heard > least) {
                found.append({heard, name});
            }
        }
        std::ranges::sort(found);
        for (const auto &[heard, name] : found) {
            table.rows += {name, heard == 0 ? QCoreApplication::translate("Report", "never") : time(heard),
                           heard == 0 ? QString() : lasting(m_question.now - heard, m_locale)};
        }
        report.tables += table;
    }

    /// In which any alarm came.
    Report::Table hours() const
    {
        Report::Table table{QCoreApplication::translate("Report", "Alarms per hour"),
                            {QCoreApplication::translate("Report", "From"),
                             QCoreApplication::translate("Report", "Alarms"),
                             QCoreApplication::translate("Report", "Most in ten minutes")}};
        std::map<qint64, std::pair<qint64, qint64>> counts;
        for (const AlarmFigures::Span &span : m_answer.figures.tenMinutes) {
            auto &[all, most] = counts[(span.begin - m_answer.from) / anHour];
            all += span.count;
            most = std::max(most, span.count);
        }
        for (const auto &[hour, count] : counts) {
            table.rows += {time(m_answer.from + hour * anHour), number(count.first), number(count.second)};
        }
        return table;
    }

    const ReportQuestion &m_question;
    const ReportAnswer &m_answer;
    TimeForm m_form;
    const QLocale &m_locale;
};

} // namespace

ReportAnswer readReport(RecordReader &reader, const ReportQuestion &question)
{
    ReportAnswer answer;
    answer.from = question.from;
    Status &status = answer.status;
    status = readStations(reader, answer.stations);
    if (status && question.sinceOperatorChange) {
        qint64 change = 0;
        status = reader.lastOperatorChange(change);
        answer.from = change == 0 ? question.from : change;
    }
    if (status && question.kind == ReportKind::Figures) {
        status = reader.alarmFigures(answer.from, question.to, question.now, answer.figures);
        if (status) {
            status = reader.begin(answer.begun);
        }
        return answer;
    }
    if (status && question.kind == ReportKind::Shift) {
        status = readAll(answer.came, answer.isCut, [&](const std::optional<RecordKey> &after) {
            return reader.findAlarms({.from = answer.from, .to = question.to}, after, aPage);
        });
    }
    if (status && question.kind == ReportKind::Shift) {
        status = readAll(answer.done, answer.isCut, [&](const std::optional<RecordKey> &after) {
            return reader.findEvents({.from = answer.from, .to = question.to, .kinds = operatorsKinds()},
                                     after, aPage);
        });
    }
    if (status) {
        status = readAll(answer.standing, answer.isCut, [&](const std::optional<RecordKey> &after) {
            return reader.findAlarms({.state = AlarmFilter::State::Open}, after, aPage);
        });
    }
    const QStringList unheard = question.silent + question.offline;
    QHash<QString, qint64> numbers;
    for (auto station = answer.stations.begin(); station != answer.stations.end(); ++station) {
        if (station->isListed) {
            numbers.insert(station->name, station.key());
        }
    }
    QList<qint64> asked;
    for (const QString &name : unheard) {
        asked += numbers.value(name);
    }
    QHash<qint64, qint64> times;
    if (status) {
        status = reader.lastHeard(asked, times);
    }
    for (const QString &name : unheard) {
        answer.heard.insert(name, times.value(numbers.value(name)));
    }
    return answer;
}

Report reportOf(const ReportQuestion &question, const ReportAnswer &answer, TimeForm form,
                const QLocale &locale)
{
    const Writing writing(question, answer, form, locale);
    return question.kind == ReportKind::Shift     ? writing.shift()
           : question.kind == ReportKind::Figures ? writing.figures()
                                                  : writing.overlooked();
}

} // namespace ktr
