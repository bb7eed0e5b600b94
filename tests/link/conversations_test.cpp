#include "config/configuration_file.h"
#include "link/conversation_log.h"
#include "link/module_session.h"
#include "platform/text_rules.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/silent_line.h"

#include <QDir>
#include <QTest>

#include <optional>

using namespace ktr;
using namespace Qt::StringLiterals;

// A conversation on file: "key: value" lines, a blank line, then what happens. "<---- " is what one piece of
// the module brings, "----> " a line of the program (its echoes, too) without its line end, "lost" the line's
// end, "wait" a number of milliseconds. Control characters are written as in the log. "#" begins a comment.

namespace {

const QDir folder(QStringLiteral(KTR_SOURCE_DIR "/tests/conversations"));

struct Event
{
    enum class Kind { Heard, Lost, Wait } kind;
    int number; ///< of its line in the file
    QByteArray bytes;
    Milliseconds wait{0};
    QByteArray answer; ///< what the program sends upon it
};

struct Outcome
{
    QString end = u"nothing transmitted"_s;
    int sent = 0;
    int refused = 0;
    QStringList told;

    bool operator==(const Outcome &) const = default;
};

struct Conversation
{
    Configuration configuration;
    int firstStep = steps::first;
    bool answer = false;
    Outcome outcome;
    std::vector<Event> events;
};

/// A line of the head. False when nobody knows its key.
bool readHead(const QString &key, const QString &value, Conversation &conversation)
{
    if (key == u"starts at step") {
        conversation.firstStep = value.toInt();
    } else if (key == u"answer") {
        conversation.answer = value == u"yes";
    } else if (key.startsWith(u"alarm ")) {
        conversation.configuration.limitValues.at(key.mid(6).toUInt() - 1).alarm = value;
    } else if (key == u"outcome") {
        conversation.outcome.end = value;
    } else if (key == u"sent") {
        conversation.outcome.sent = value.toInt();
    } else if (key == u"refused") {
        conversation.outcome.refused = value.toInt();
    } else if (key == u"told") {
        conversation.outcome.told += value;
    } else {
        return false;
    }
    return true;
}

/// A line of what happens. False when it is none.
bool readEvent(const QString &line, int number, std::vector<Event> &events)
{
    if (line.startsWith(u"<---- ")) {
        events.push_back({Event::Kind::Heard, number, toWindows1252(fromLogText(line.mid(6))), {}, {}});
    } else if (line == u"lost") {
        events.push_back({Event::Kind::Lost, number, {}, {}, {}});
    } else if (line.startsWith(u"wait ")) {
        events.push_back({Event::Kind::Wait, number, {}, Milliseconds(line.mid(5).toInt()), {}});
    } else if (line.startsWith(u"----> ") && !events.empty()) {
        events.back().answer += toWindows1252(fromLogText(line.mid(6))) + "\r\n";
    } else {
        return false;
    }
    return true;
}

/// The conversation of a file, over the sample's configuration; nothing, with the line told, when it cannot
/// be read.
std::optional<Conversation> readFile(const QString &name, QString &complaint)
{
    Conversation conversation;
    const auto sample = readConfigurationFile(QStringLiteral(KTR_SOURCE_DIR "/samples/pumping-station.xml"),
                                              conversation.configuration, test::fixedEnvironment());
    QFile file(folder.filePath(name));
    if (!sample.document || !file.open(QIODevice::ReadOnly)) {
        complaint = name + u" cannot be opened"_s;
        return std::nullopt;
    }
    bool inHead = true;
    bool headSeen = false;
    int number = 0;
    for (const QString &line : QString::fromUtf8(file.readAll()).split(u'\n')) {
        ++number;
        if (line.isEmpty() || line.startsWith(u'#')) {
            inHead = inHead && !(line.isEmpty() && headSeen);
            continue;
        }
        headSeen = true;
        const bool understood =
            inHead ? readHead(line.section(u": "_s, 0, 0), line.section(u": "_s, 1), conversation)
                   : readEvent(line, number, conversation.events);
        if (!understood) {
            complaint = u"%1:%2: \"%3\""_s.arg(name).arg(number).arg(line);
            return std::nullopt;
        }
    }
    return conversation;
}

/// How an event's bytes are cut: whole when `size` is 0, else in pieces of that size, or in two at `at`.
struct Cut
{
    qsizetype size = 0;
    qsizetype at = 0;
};

bool isLineEnd(char byte)
{
    return byte == '\r' || byte == '\x1A';
}

/// An event with a line end within is one line only while that line end does not come alone.
QByteArrayList pieces(const QByteArray &bytes, const Cut &cut)
{
    const qsizetype firstEnd = std::find_if(bytes.begin(), bytes.end(), isLineEnd) - bytes.begin();
    const bool isOneLine = std::count_if(bytes.begin(), bytes.end(), isLineEnd) <= 1;
    if (cut.size > 0 && isOneLine) {
        QByteArrayList list;
        for (qsizetype at = 0; at < bytes.size(); at += cut.size) {
            list += bytes.mid(at, cut.size);
        }
        return list;
    }
    if (cut.at > 0 && cut.at < bytes.size() && (isOneLine || cut.at <= firstEnd)) {
        return {bytes.left(cut.at), bytes.mid(cut.at)};
    }
    return {bytes};
}

class Player
{
public:
    explicit Player(Conversation conversation) : m_conversation(std::move(conversation))
    {
        QObject::connect(&m_session, &ModuleSession::caught, &m_session, [this] {
            if (!std::exchange(m_started, true)) {
                m_session.startTransmission(m_conversation.configuration, m_conversation.answer,
                                            m_conversation.firstStep);
            }
        });
        QObject::connect(&m_session, &ModuleSession::commandSent, &m_session, [this] { ++m_outcome.sent; });
        QObject::connect(&m_session, &ModuleSession::commandRefused, &m_session,
                         [this] { ++m_outcome.refused; });
        QObject::connect(&m_session, &ModuleSession::replied, &m_session,
                         [this](const ModemDialogue::Reply &reply) { m_outcome.told += reply.text; });
        QObject::connect(&m_session, &ModuleSession::transmitted, &m_session,
                         [this] { m_outcome.end = u"transmitted"_s; });
        QObject::connect(&m_session, &ModuleSession::stalled, &m_session, [this] { breakOff(u"silent"_s); });
        QObject::connect(&m_line, &Transport::lost, &m_session, [this] { breakOff(u"lost"_s); });
        m_session.setTimeout(Milliseconds(60000));
    }

    /// The first event that the program answered otherwise than the file says, empty when there is none.
    QString play(const Cut &cut)
    {
        for (const Event &event : m_conversation.events) {
            m_line.sent.clear();
            switch (event.kind) {
            case Event::Kind::Heard:
                for (const QByteArray &piece : pieces(event.bytes, cut)) {
                    Q_EMIT m_line.received(piece);
                }
                break;
            case Event::Kind::Lost:
                Q_EMIT m_line.lost(u"hung up"_s, true);
                break;
            case Event::Kind::Wait:
                m_timers.advance(event.wait);
                break;
            }
            if (m_line.sent != event.answer) {
                return u"line %1, cut %2/%3: expected \"%4\", sent \"%5\""_s.arg(event.number)
                    .arg(cut.size)
                    .arg(cut.at)
                    .arg(logText(fromWindows1252(event.answer)), logText(fromWindows1252(m_line.sent)));
            }
        }
        return {};
    }

    const Outcome &outcome() const { return m_outcome; }

private:
    void breakOff(const QString &why)
    {
        m_outcome.end = u"%1, to be resumed at step %2"_s.arg(why).arg(m_session.resumeStep());
    }

    Conversation m_conversation;
    test::SilentLine m_line;
    test::ManualTimers m_timers;
    ModuleSession m_session{m_line, m_timers, test::fixedEnvironment()};
    bool m_started = false;
    Outcome m_outcome;
};

const QStringList claimed{
    u"answer-mode.txt"_s,         u"cut-and-merged.txt"_s,  u"error-321.txt"_s,
    u"module-falls-silent.txt"_s, u"module-restarts.txt"_s, u"normal-transmission.txt"_s,
    u"over-long-command.txt"_s,   u"pin-entry.txt"_s,       u"puk-needed.txt"_s};

} // namespace

class ConversationsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFileIsClaimed() { QCOMPARE(folder.entryList(QDir::Files | QDir::Hidden, QDir::Name), claimed); }

    void theProgramSaysWhatIsOnFile_data()
    {
        QTest::addColumn<QString>("name");
        for (const QString &name : claimed) {
            QTest::newRow(qPrintable(name)) << name;
        }
    }
    void theProgramSaysWhatIsOnFile()
    {
        QFETCH(QString, name);
        QString complaint;
        const std::optional<Conversation> conversation = readFile(name, complaint);
        QVERIFY2(conversation, qPrintable(complaint));
        QVERIFY(!conversation->events.empty());
        std::vector<Cut> cuts{{}, {.size = 1}, {.size = 7}};
        qsizetype longest = 0;
        for (const Event &event : conversation->events) {
            longest = std::max(longest, event.bytes.size());
        }
        for (qsizetype at = 1; at < longest; ++at) {
            cuts.push_back({.at = at});
        }
        for (const Cut &cut : cuts) {
            Player player(*conversation);
            const QString difference = player.play(cut);
            QVERIFY2(difference.isEmpty(), qPrintable(difference));
            QCOMPARE(player.outcome().end, conversation->outcome.end);
            QCOMPARE(player.outcome().told, conversation->outcome.told);
            QVERIFY(player.outcome() == conversation->outcome);
        }
    }
};

QTEST_GUILESS_MAIN(ConversationsTest)
#include "conversations_test.moc"
