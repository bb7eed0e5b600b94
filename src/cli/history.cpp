#include "cli/commands.h"
#include "cli/console.h"
#include "cli/link_job.h"
#include "cli/loading.h"
#include "link/history_export.h"
#include "link/reply_interpreter.h"
#include "link/service_commands.h"
#include "platform/terminal.h"
#include "simulator/replay.h"

namespace ktr::cli {

namespace {

/// Writes the records and counts them.
class Records
{
public:
    /// When a line of the archive goes to its file.
    enum class Pace {
        AtOnce,   ///< a module takes its time, and what has arrived is not to be lost
        Together, ///< with others: opening the file a million times takes longer than all the rest
    };
    /// An empty path stands for standard output.
    Records(const QString &path, Pace pace) : m_path(path), m_pace(pace) {}

    /// Writes the lines of the archive in a text. False when they could not be written.
    bool take(const ModuleDialogue::Reply &reply)
    {
        bool isWritten = true;
        for (const ReplyEvent &event : interpretReply(reply)) {
            if (const auto *history = std::get_if<HistoryReply>(&event)) {
                isWritten = write(history->line) && isWritten;
            }
        }
        return isWritten;
    }

    int lines() const { return m_lines; }

    /// The job's exit code, after a complaint when there was nothing.
    int end(const QString &nothing)
    {
        m_progress.end();
        if (!flush()) {
            return failed;
        }
        if (m_count == 0) {
            return fail(nothing);
        }
        if (!m_path.isEmpty()) {
            print(QStringLiteral("%1 records appended to %2").arg(m_count).arg(m_path));
        }
        return m_isWhole ? done : failed;
    }

private:
    bool write(const ArchiveLine &line)
    {
        for (const QString &remark : historyRemarks(line)) {
            complain(remark);
        }
        ++m_lines;
        m_count += static_cast<int>(line.records.size());
        m_isWhole = m_isWhole && line.badTime.isEmpty() && line.incomplete.isEmpty();
        const QByteArray csv = historyCsv(line);
        constexpr qsizetype enough = qsizetype{1} << 20;
        m_waiting += csv;
        if ((m_pace == Pace::AtOnce || m_waiting.size() >= enough) && !flush()) {
            return false;
        }
        if (!m_path.isEmpty() || !isTerminal(stdout)) {
            m_progress.show(m_count, QStringLiteral("records"));
        }
        return !outputIsGone();
    }

    /// False, after a complaint, when the records cannot be written.
    bool flush()
    {
        const QByteArray csv = std::exchange(m_waiting, QByteArray());
        if (!m_path.isEmpty()) {
            const QString trouble = m_file.append(m_path, csv);
            if (!trouble.isEmpty()) {
                complain(trouble);
                return false;
            }
        } else if (!csv.isEmpty()) {
            print(QString::fromUtf8(csv.chopped(1)));
            showNow();
        }
        return true;
    }

    QString m_path;
    Pace m_pace;
    QByteArray m_waiting;
    HistoryExport m_file;
    Progress m_progress{Progress::unknown};
    int m_lines = 0;
    int m_count = 0;
    bool m_isWhole = true;
};

int recordsOfLog(const QString &path, Records &records)
{
    RecordedConversation conversation;
    if (const Status read = loadLog(path, conversation); !read) {
        return fail(read.message());
    }
    ModemDialogue dialogue([] { return std::nullopt; });
    for (const RecordedConversation::Line &line : conversation.lines) {
        if (line.from != RecordedConversation::Line::From::Module) {
            continue;
        }
        QString text = fromLogText(line.text);
        text += text.endsWith(u'\x1A') ? QString() : QString(u'\r'); // which the log leaves out
        for (const ModuleDialogue::Action &action : dialogue.lineReceived(text)) {
            const auto *reply = std::get_if<ModuleDialogue::Reply>(&action);
            if (reply != nullptr && !records.take(*reply)) {
                return failed;
            }
        }
    }
    return records.end(path + QLatin1String(": no record of the archive is in it"));
}

int recordsOfModule(const Arguments &arguments, Records &records)
{
    LinkJob job(arguments);
    ModuleSession &session = job.session();
    const auto silence = job.timers().create();
    const QString nothing = QStringLiteral("the module sent no record of its archive");
    bool isAsked = false;
    const auto wait = [&] {
        silence->start(FastExport::longestSilence, [&] { job.finishWhenDrained(done); });
        session.setTimeout(job.timeout());
    };
    session.place(serviceCommands::archive);
    QObject::connect(&session, &ModuleSession::commandSent, &session, [&] {
        isAsked = true;
        wait();
    });
    QObject::connect(&session, &ModuleSession::replied, &session, [&](const ModemDialogue::Reply &reply) {
        const int before = records.lines();
        if (!records.take(reply)) {
            job.finish(failed);
        } else if (isAsked && records.lines() > before) {
            wait();
        } else if (isAsked && reply.refuses()) {
            job.abandon(QLatin1String("the module says: ") + logText(reply.text));
        }
    });
    QObject::connect(&session, &ModuleSession::nothingToRead, &session, [&] {
        if (isAsked && records.lines() > 0) { // the archive's last line was before this
            silence->stop();
            job.finishWhenDrained(done);
        }
    });
    if (const auto end = job.open(arguments)) {
        return *end;
    }
    const int ended = job.run();
    const int code = ended == done ? records.end(nothing) : ended;
    if (code != done || !job.isEthernet()) {
        return code;
    }
    complain(QStringLiteral("whether the network lost some of the records is not known"));
    return notKnown;
}

} // namespace

void describeHistory(Arguments &arguments)
{
    arguments.setSummary(
        QStringLiteral("Fetches the module's archive, or takes the records out of the conversation LOG, and "
                       "gives them as CSV: \"key;DD.MM.YYYY HH:MM;value;value\", lines end with CR LF."));
    arguments.addOption({{QStringLiteral("o"), outputOption},
                         QStringLiteral("Appends the records to FILE, a new one beginning with a byte-order "
                                        "mark, instead of printing them."),
                         QStringLiteral("FILE")});
    LinkJob::addOptions(arguments);
}

std::optional<int> checkHistory(const Arguments &arguments)
{
    const bool hasLine =
        arguments.isSet(QStringLiteral("serial")) || arguments.isSet(QStringLiteral("ethernet"));
    const bool hasLog = !arguments.positional(0).isEmpty();
    if (!hasLog && !hasLine) {
        return arguments.wrong(QStringLiteral("a LOG, --serial or --ethernet is needed"));
    }
    if (hasLog && hasLine) {
        return arguments.wrong(QStringLiteral("a LOG does not go together with --serial or --ethernet"));
    }
    const std::optional<int> code = hasLine ? LinkJob::check(arguments) : std::nullopt;
    return code ? code
                : arguments.distinctFiles({QStringLiteral("[LOG]"), outputOption, QStringLiteral("log")});
}

int history(const Arguments &arguments)
{
    const QString path = arguments.value(outputOption);
    if (arguments.isSet(outputOption)) {
        if (const Status usable = HistoryExport::check(path); !usable) {
            return fail(usable.message()); // before records are fetched that cannot be kept
        }
    }
    const QString log = arguments.positional(0);
    Records records(path, log.isEmpty() ? Records::Pace::AtOnce : Records::Pace::Together);
    return log.isEmpty() ? recordsOfModule(arguments, records) : recordsOfLog(log, records);
}

} // namespace ktr::cli
