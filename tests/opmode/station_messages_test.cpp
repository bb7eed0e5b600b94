#include "config/channels.h"
#include "opmode/station/station_messages.h"

#include <QRandomGenerator>
#include <QTest>

using namespace ktr;

class StationMessagesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNotificationWithFailIsAnAlarm()
    {
        const auto read = [](const char *text) {
            return std::get<NotificationMessage>(interpretStationMessage(QString::fromUtf8(text)));
        };
        const QString alarm = "+4917012345 --> M,Alarm DI1 fail";
        QCOMPARE(read("+4917012345 --> >M,Alarm DI1 fail"), (NotificationMessage{{alarm, alarm}, true}));
        QVERIFY(!read("+4917012345 --> M,Alarm DI1 Fail").alarm);
        // Its text may look like another kind, and only the first marker is dropped.
        QCOMPARE(read("1 --> >M,a --> R,1,2 --> >M,b").entry.text, "1 --> M,a --> R,1,2 --> >M,b");
    }

    void inputValuesAreOneOrAll()
    {
        const auto read = [](const QString &text) {
            return std::get<InputValuesMessage>(interpretStationMessage(text)).values;
        };
        QCOMPARE(read("+4917012345 --> R,5,12.3"), (QList<InputValuesMessage::Value>{{5, "12.3"}}));
        QCOMPARE(read("1 --> R,18,1,2"), (QList<InputValuesMessage::Value>{{18, "1,2"}}));
        // 21 characters from the arrow on are still one value, 22 are all; the sender's number does not
        // count.
        QCOMPARE(read("+4917012345 --> R,5,4567890123456").size(), 1);
        QCOMPARE(read("+4917012345 --> R,5,45678901234567").size(), channelCount);

        QStringList sent;
        for (int i = 1; i <= channelCount; ++i) {
            sent.append(QString::number(i * 100));
        }
        QList<InputValuesMessage::Value> values = read("+49 --> >R," + sent.join(','));
        QCOMPARE(values.size(), channelCount);
        QCOMPARE(values.first(), (InputValuesMessage::Value{1, "100"}));
        QCOMPARE(values.last(), (InputValuesMessage::Value{18, "1800"}));
        values = read("+49 --> R," + sent.mid(0, 10).join(','));
        QCOMPARE(values[9].text, "1000");
        QCOMPARE(values[10].text, "");
    }

    void everyHistoryReportStandsForItself()
    {
        const QString report = "+49 --> >H,7,0911152359,1,12.5,15,2,3";
        const HistoryMessage expected{
            {{"7,15.11.2009 23:59 : IP1 = 12.5", "15.11.2009 23:59 : IP1 = 12.5"},
             {"7,16.11.2009 00:14 : IP2 = 3", "16.11.2009 00:14 : IP2 = 3"}},
            {},
            {{7, "15.11.2009 23:59", "1", "12.5"}, {7, "16.11.2009 00:14", "2", "3"}}};
        QCOMPARE(std::get<HistoryMessage>(interpretStationMessage(report)), expected);
        QCOMPARE(std::get<HistoryMessage>(interpretStationMessage(report)), expected);
        const auto cut = std::get<HistoryMessage>(interpretStationMessage("+49 --> H,7,0911152359,1,2,15,3"));
        QCOMPARE(cut.entries.size(), 1);
        QCOMPARE(cut.unusable, "15,3");
        const auto bad = std::get<HistoryMessage>(interpretStationMessage("+49 --> H,7,soon,1,2"));
        QCOMPARE(bad.entries.first().text, "? : IP1 = 2");
        QCOMPARE(bad.unusable, "soon");
    }

    void whatIsNoReportChangesNothing_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("told");
        QTest::newRow("empty") << "" << false;
        QTest::newRow("version") << "+49 --> V,2.1.05,x" << false;
        QTest::newRow("answer") << "+49 <-- M,x" << false;
        QTest::newRow("no value") << "+49 --> R,5" << true;
        QTest::newRow("no channel") << "+49 --> R,x,1" << true;
        QTest::newRow("channel 0") << "+49 --> R,0,1" << true;
        QTest::newRow("channel 19") << "+49 --> R,19,1" << true;
    }
    void whatIsNoReportChangesNothing()
    {
        QFETCH(const QString, text);
        const StationMessage message = interpretStationMessage(text);
        QTEST(std::holds_alternative<UnusableMessage>(message), "told");
        QVERIFY(std::holds_alternative<UnusableMessage>(message) ||
                std::holds_alternative<NoStationMessage>(message));
    }

    void garbageGivesChannelsInRangeOnly()
    {
        QRandomGenerator chance(7);
        const QStringList pieces = {"--> ",
                                    ">",
                                    "M,",
                                    "R,",
                                    "H,",
                                    ",",
                                    "-->",
                                    "0911151405",
                                    "-1",
                                    "19",
                                    "5",
                                    QString(QChar(0xD800)),
                                    QString(QChar(0))};
        for (int round = 0; round < 20'000; ++round) {
            QString text;
            for (int count = chance.bounded(30); count > 0; --count) {
                text += pieces[chance.bounded(static_cast<int>(pieces.size()))];
            }
            const StationMessage message = interpretStationMessage(text);
            if (const auto *values = std::get_if<InputValuesMessage>(&message)) {
                for (const auto &value : values->values) {
                    QVERIFY(value.channel >= 1 && value.channel <= channelCount);
                }
            }
        }
    }
};

QTEST_APPLESS_MAIN(StationMessagesTest)
#include "station_messages_test.moc"
