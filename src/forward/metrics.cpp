#include "forward/metrics.h"

#include "opmode/operational_mode.h"

namespace ktr {

namespace {

class Lines
{
public:
    void head(const char *name, const char *type, const char *help)
    {
        m_name = name;
        m_text += "# HELP " + m_name + ' ' + help + "\n# TYPE " + m_name + ' ' + type + '\n';
    }
    /// `label` as 'state="alive"', or empty.
    template <class Number> void add(const QByteArray &label, Number value, const char *suffix = "")
    {
        m_text += m_name + suffix + (label.isEmpty() ? QByteArray() : '{' + label + '}') + ' ' +
                  QByteArray::number(value) + '\n';
    }
    void gauge(const char *name, const char *help, qint64 value)
    {
        head(name, "gauge", help);
        add({}, value);
    }
    const QByteArray &all() const { return m_text; }

private:
    QByteArray m_name;
    QByteArray m_text;
};

/// As the format wants it between quotes.
QByteArray quoted(const QString &text)
{
    QByteArray value = text.toUtf8();
    value.replace('\\', "\\\\").replace('"', "\\\"").replace('\n', "\\n");
    return '"' + value + '"';
}

} // namespace

Metrics metricsOf(OperationalMode &mode)
{
    Metrics metrics;
    metrics.summary = summaryOf(mode);
    metrics.events = mode.record().addedEvents();
    metrics.rowsWaiting = mode.record().waitingCount();
    if (mode.record().isOpen()) {
        metrics.commits = mode.record().writer().commitTimes();
        metrics.spooled = mode.record().writer().spooled();
        if (metrics.spooled && metrics.spooled->since != 0) {
            const qint64 age = mode.now().toMSecsSinceEpoch() - metrics.spooled->since;
            metrics.spoolAge = std::max(0.0, static_cast<double>(age) / 1e3);
        }
    }
    if (const Leases *const leases = mode.leases(); leases != nullptr) {
        metrics.shared = leases->overview();
        metrics.leaseLeft = std::max(0.0, static_cast<double>(leases->left().count()) / 1e3);
    }
    return metrics;
}

QByteArray metricsText(const Metrics &metrics)
{
    Lines lines;
    lines.head("ktrconfig_build_info", "gauge", "The program; always 1.");
    lines.add("version=" + quoted(metrics.version), 1);
    lines.head("ktrconfig_stations", "gauge", "Stations of the list, by what is known of them.");
    const WatchSummary &summary = metrics.summary;
    lines.add("state=\"alive\"", summary.alive);
    lines.add("state=\"silent\"", summary.silent);
    lines.add("state=\"unknown\"", summary.unheard);
    lines.add("state=\"off\"", summary.offline);
    lines.gauge("ktrconfig_alarms_standing", "Alarms that are not acknowledged or not over.",
                summary.standing);
    lines.gauge("ktrconfig_alarms_unacknowledged", "Of those, the ones that nobody has acknowledged.",
                summary.unacknowledged);
    lines.gauge("ktrconfig_alarms_shelved", "Of those that stand, the ones put aside.", summary.shelved);
    lines.head("ktrconfig_events_total", "counter", "Events of the record since the start.");
    lines.add({}, metrics.events);
    lines.head("ktrconfig_record_commit_seconds", "histogram", "How long commits of the record took.");
    quint64 count = 0;
    for (std::size_t bucket = 0; bucket < metrics.commits.counts.size(); ++bucket) {
        count += metrics.commits.counts[bucket];
        const bool isLast = bucket == RecordWriter::CommitTimes::bounds.size();
        lines.add("le=\"" +
                      (isLast ? QByteArray("+Inf")
                              : QByteArray::number(RecordWriter::CommitTimes::bounds[bucket])) +
                      '"',
                  count, "_bucket");
    }
    lines.add({}, metrics.commits.sum, "_sum");
    lines.add({}, count, "_count");
    lines.gauge("ktrconfig_record_rows_waiting", "Rows that are not on the disk yet.",
                static_cast<qint64>(metrics.rowsWaiting));
    if (metrics.spooled) {
        lines.gauge("ktrconfig_spool_rows", "Rows in the file of what the server does not take.",
                    metrics.spooled->rows);
        lines.head("ktrconfig_spool_age_seconds", "gauge", "How long the oldest of them has waited.");
        lines.add({}, metrics.spoolAge);
        lines.gauge("ktrconfig_spool_refused", "Rows kept aside there that the server will not have.",
                    metrics.spooled->refused);
    }
    if (metrics.forwardBacklog) {
        lines.gauge("ktrconfig_forward_backlog", "Events that the broker has not confirmed.",
                    *metrics.forwardBacklog);
    }
    if (metrics.shared) {
        lines.gauge("ktrconfig_keepers", "Keepers that share the stations and are there.",
                    metrics.shared->keepers);
        lines.gauge("ktrconfig_list_stations", "Stations of the list, whoever watches them.",
                    metrics.shared->stations);
        lines.gauge("ktrconfig_stations_without_keeper", "Of these, the ones that nobody watches.",
                    metrics.shared->unkept);
        lines.head("ktrconfig_lease_left_seconds", "gauge", "How long this keeper's stations are its own.");
        lines.add({}, metrics.leaseLeft);
        lines.head("ktrconfig_duty", "gauge", "What one keeper alone does: 1 where it is this one.");
        for (const auto &[name, isOwn] : metrics.duties) {
            lines.add("name=" + quoted(name), isOwn ? 1 : 0);
        }
    }
    return lines.all();
}

} // namespace ktr
