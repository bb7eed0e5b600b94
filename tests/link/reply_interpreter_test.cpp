#include "link/line_assembler.h"
#include "link/reply_interpreter.h"
#include "platform/overloaded.h"
#include "platform/text_rules.h"
#include "simulator/command_interpreter.h"

#include <QTest>

#include <random>

using namespace ktr;
using Kind = ModemDialogue::ReplyKind;

namespace {

QString told(const ReplyEvent &event)
{
    const auto mark = [](Direction direction) {
        return direction == Direction::ByItself ? QString("--> ") : QString("<-- ");
    };
    return std::visit(
        Overloaded{[](const VersionReply &version) -> QString {
                       return "version " + version.application + "|" + version.configuration + "|" +
                              version.stationType;
                   },
                   [&](const HistoryReply &history) -> QString {
                       QString text = mark(history.direction) + "history " + history.line.key;
                       for (const ArchiveRecord &record : history.line.records) {
                           text += "|" + record.stamp + " " + record.first + " " + record.second;
                       }
                       return text;
                   },
                   [&](const OtherReply &other) -> QString { return mark(other.direction) + other.text; },
                   [](const UnusableReply &unusable) -> QString { return "unusable " + unusable.text; }},
        event);
}

QStringList told(const ModemDialogue::Reply &reply)
{
    QStringList events;
    for (const ReplyEvent &event : interpretReply(reply)) {
        events += told(event);
    }
    return events;
}

/// What the bytes of a conversation mean, arriving in these pieces.
QStringList heard(const QByteArrayList &pieces)
{
    LineAssembler lines;
    ModemDialogue dialogue([] { return std::nullopt; });
    QStringList events;
    for (const QByteArray &piece : pieces) {
        if (const auto line = lines.push(piece)) {
            for (const ModemDialogue::Action &action : dialogue.lineReceived(fromWindows1252(*line))) {
                if (const auto *reply = std::get_if<ModemDialogue::Reply>(&action)) {
                    events += told(*reply);
                }
            }
        }
    }
    return events;
}

} // namespace

class ReplyInterpreterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aReplyMeansTheSameHoweverItIsFramed_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("events");
        const auto row = [](Kind kind, const QString &text, const QStringList &events) {
            QTest::addRow("%s", qUtf8Printable(text)) << static_cast<int>(kind) << text << events;
        };
        const QString version = "version 2.1.05|15.11.2009 14:05|KTR";
        row(Kind::Sms, "V,2.1.5,15.11.2009 14:05,KTR", {version});
        row(Kind::Message, "--> V,2.1.05,15.11.2009 14:05,KTR", {version});
        row(Kind::Sms, "<-- V,02.01.005,15.11.2009 14:05, KTR", {version});
        row(Kind::Message, "--> V,2.1.5,a --> b,KTR\rx --> R,1", {"version 2.1.05|a --> b|KTR", "--> R,1"});
        row(Kind::Sms, "+CSQ: 18,0\r\nV,2.1.5,15.11.2009 14:05,KTR", {"<-- +CSQ: 18,0", version});
        row(Kind::Sms, "V,10.0.123,a,b,NVA", {"version 10.0.123|a,b|NVA"});
        row(Kind::Sms, "V,99999999999999999999.0.0,,", {"version 99999999999999999999.0.00||"});
        row(Kind::Sms, "V,beta,,?", {"version beta||?"});
        row(Kind::Sms, " --> V,2.1.5,15.11.2009 14:05,KTR", {version});
        row(Kind::Sms, "> V,2.1.5,15.11.2009 14:05,KTR", {version});
        row(Kind::Message, "--> >V,2.1.5,15.11.2009 14:05,KTR", {version});
        row(Kind::Sms, ">H,1,0911151400,1,2", {"<-- history 1|15.11.2009 14:00 1 2"});
        row(Kind::Message, "--> >M,fail", {"--> M,fail"});

        row(Kind::History, "H,1,0911151400,1,12.5", {"<-- history 1|15.11.2009 14:00 1 12,5"});
        row(Kind::History, "\x03zH,1,0911151400,1,2", {"<-- history 1|15.11.2009 14:00 1 2"});
        row(Kind::History, "H,1,0911151400,1,2\rH,9,0911151500,3,4",
            {"<-- history 1|15.11.2009 14:00 1 2", "<-- history 9|15.11.2009 15:00 3 4"});
        row(Kind::History, "--> H,1,0911151400,1,2", {"--> history 1|15.11.2009 14:00 1 2"});
        row(Kind::Message, "--> H,1,0911151400,1,2", {"--> history 1|15.11.2009 14:00 1 2"});
        row(Kind::History, "OK: H,1", {"<-- OK: H,1"});

        row(Kind::Sms, "M,TEMP HIGH, H,1,0911151400,1,2", {"<-- M,TEMP HIGH, H,1,0911151400,1,2"});
        row(Kind::Message, "--> R,1", {"--> R,1"});
        row(Kind::Message, "<-- V,2.1.5,a --> b,KTR", {"version 2.1.05|a --> b|KTR"});
        row(Kind::Sms, "", {});
        row(Kind::History, "H,", {"<-- history "});
        row(Kind::Sms, "V,2.1.5,KTR", {"unusable V,2.1.5,KTR"});
        row(Kind::Sms, "V,", {"unusable V,"});
        row(Kind::Sms, "V", {"<-- V"});
    }
    void aReplyMeansTheSameHoweverItIsFramed()
    {
        QFETCH(const int, kind);
        QFETCH(const QString, text);
        QFETCH(const QStringList, events);
        QCOMPARE(told({static_cast<Kind>(kind), {}, text}), events);
    }

    void whatTheVirtualModuleAnswersIsUnderstood()
    {
        ModuleMemory memory;
        memory.configuration.versionText = "1, 2";
        memory.configuration.gsm.stationType = "NVA";
        const QString answer = CommandInterpreter(memory).apply("V,§").answerText;
        QCOMPARE(told({Kind::Sms, "+IP", answer}), QStringList("version 2.1.05|1, 2|NVA"));
    }

    /// A line may be cut anywhere, and lines may arrive as one: each text counts once.
    void noTextIsLostOrDoubled()
    {
        const QByteArrayList lines = {
            "at+cpin?\r",
            "H,1,0911151400,1,12.5,15,2,13.5\r",
            "x --> H,2,0911151400,1,2\r",
            "at+cmgs=\"+IP\"\r",
            "H,3,0911151400,1,2\x1A",
            "--> V,3.1.5,a --> b,KTR\r",
            "+49 --> V,4.1.5,stamp,KTR\r",
            "<-- V,5.1.5,c --> d,KTR\r",
            "H,4,0911151400,1,2\r",
            "> --> V,6.1.5,e --> f,KTR\r",
            "x --> V,2.1.5,stamp,KTR\r",
            "H,5,0911151400,1,2\r",
        };
        const QByteArray all = lines.join();
        QStringList expected = heard(lines);
        QCOMPARE(expected.size(), 10);
        QCOMPARE(expected.filter("history").size(), 5);
        for (qsizetype cut = 0; cut <= all.size(); ++cut) {
            QByteArrayList pieces = {all.left(cut)};
            for (const char byte : all.sliced(cut)) {
                pieces += QByteArray(1, byte);
            }
            QStringList events = heard(pieces);
            // Within lines that arrived as one, the order of archive and messages is not kept.
            events.sort();
            expected.sort();
            events.removeIf([](const QString &event) {
                return !event.contains("history") && !event.contains("version");
            });
            QVERIFY2(events == expected, qPrintable(QString::number(cut) + "\n" + events.join("\n")));
        }
    }

    void noLineBreaksIt()
    {
        std::minstd_rand random(1);
        const QString alphabet = "VH,.-> <0123456789\r\n;=x";
        for (int i = 0; i < 20000; ++i) {
            QString text = i % 2 == 0 ? "H,1,0911151400," : "";
            for (auto length = random() % 40; length > 0; --length) {
                text += alphabet[static_cast<qsizetype>(random() >> 8) % alphabet.size()];
            }
            for (const Kind kind : {Kind::Sms, Kind::History, Kind::Message}) {
                for (const ReplyEvent &event : interpretReply({kind, {}, text})) {
                    if (const auto *history = std::get_if<HistoryReply>(&event)) {
                        // All three fields of each record came from the text.
                        QVERIFY(3 * history->line.records.size() <= text.count(u','));
                    }
                }
            }
        }
    }
};

QTEST_GUILESS_MAIN(ReplyInterpreterTest)
#include "reply_interpreter_test.moc"
