#include "opmode/alarms/alarm_chatter.h"

#include <QSignalSpy>
#include <QTest>

using namespace ktr;
using namespace Qt::StringLiterals;

/// What becomes of an alarm, from its text to its end.
class AlarmBookTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void oneTextToSeveralNumbersIsOneAlarmUntilItIsAcknowledged()
    {
        AlarmBook book;
        const qint64 first = take(book, 1, "Pump 1 fail", 10);
        QCOMPARE(take(book, 1, "Pump 1 fail", 11, u"+492"_s), first);
        QCOMPARE(book.alarm(first)->recipients, (QStringList{u"+491"_s, u"+492"_s}));
        QCOMPARE(book.alarm(first)->count, 1); // it came once
        take(book, 1, "Pump 1 fail", 12, u"+492"_s);
        QCOMPARE(book.alarm(first)->count, 2);
        QVERIFY(take(book, 2, "Pump 1 fail", 13) != first); // another station
        QCOMPARE(take(book, 1, "Pump 1 runs", 13), 0);

        book.acknowledge({first}, 20, u"Miller"_s);
        const qint64 second = take(book, 1, "Pump 1 fail", 30);
        QVERIFY(second != first && book.alarm(first) == nullptr); // the first ended with the second
        QCOMPARE(book.alarm(second)->count, 1);
        QCOMPARE(book.alarm(second)->recipients, QStringList{u"+491"_s});
        QCOMPARE(book.waitingCount(), 2);
    }

    void theFirstRuleThatFitsSaysWhatATextIsAndWhatEndsIt()
    {
        AlarmRule exercise{u"exercise"_s, false, false, AlarmPriority::Low, false, {}};
        AlarmRule fail{u"fail"_s, false, true, AlarmPriority::High, false, u"ok"_s};
        AlarmRule power{u"Power"_s};
        const AlarmRules rules({exercise, fail, power});
        const struct
        {
            const char *text;
            int priority; ///< 0: no alarm
            const char *end;
        } cases[] = {{"Exercise: pump fail", 0, ""},
                     {"Pump FAIL", 1, "pump ok"},
                     {"Power fail", 1, "power ok"},
                     {"Power low", 2, ""},
                     {"power low", 0, ""}};
        for (const auto &[text, priority, end] : cases) {
            const AlarmRule *rule = rules.of(QString::fromLatin1(text));
            QCOMPARE(rule == nullptr ? 0 : static_cast<int>(rule->priority), priority);
            QCOMPARE(rules.endOf(QString::fromLatin1(text)), QString::fromLatin1(end));
        }
        QCOMPARE(AlarmRules::fromJson(rules.toJson()), rules);
        QVERIFY(!AlarmRules::fromJson(u"{}"_s) && !AlarmRules::fromJson(u"["_s));

        AlarmBook book;
        const qint64 before = take(book, 1, "Pump 1 fail", 10); // what ends it is said later only
        book.setRules(rules);
        take(book, 2, "Pump 1 ok", 20);
        QCOMPARE(book.alarm(before)->over, 0);
        take(book, 1, "PUMP 1 OK", 21);
        QCOMPARE(book.alarm(before)->over, 21); // and is waited for nevertheless
        QCOMPARE(book.waitingCount(), 1);
        book.acknowledge({before}, 30, {});
        QVERIFY(book.standing().empty());
    }

    void shelvesHoldForWhatComesAndEndByThemselves()
    {
        AlarmBook book;
        QSignalSpy changes(&book, &AlarmBook::changed);
        const qint64 stood = take(book, 1, "Pump 1 fail", 10);
        take(book, 2, "Pump 1 fail", 10);
        book.shelve({1, u"Pump 1 fail"_s, 100, u"Miller"_s, u"known"_s});
        book.shelve({2, {}, 50, {}, u"maintenance"_s});
        QCOMPARE(book.waitingCount(), 0);
        take(book, 2, "Pump 2 fail", 20);
        QCOMPARE(book.waitingCount(), 0);
        QCOMPARE(book.find(2, u"Pump 2 fail"_s)->shelvedWhy, "maintenance");
        take(book, 1, "Pump 2 fail", 20); // another text of the first station
        QCOMPARE(book.waitingCount(), 1);
        take(book, 2, "Pump 3 fail", 50); // before anybody has looked at the clock
        QCOMPARE(book.waitingCount(), 2);

        QCOMPARE(book.unshelveUntil(50), 100);
        QCOMPARE(book.waitingCount(), 4);
        changes.clear();
        QCOMPARE(book.unshelveUntil(100), 0);
        QCOMPARE(book.waitingCount(), 5);
        QCOMPARE(changes.size(), 1); // and is told like one that comes
        QCOMPARE(changes[0][1].value<AlarmBook::Change>(), AlarmBook::Change::Returned);

        AlarmRow shelved = *book.alarm(stood); // what a shelf put aside that is known no more
        shelved.shelvedUntil = 100;
        book.load({shelved}, {});
        QCOMPARE(book.waitingCount(), 1);
    }

    void whatComesTooOftenChatters()
    {
        AlarmBook book;
        AlarmChatter chatter(book);
        chatter.setLimit({2, 1});
        qint64 last = 0;
        for (const qint64 at : {1000, 30'000, 59'000}) {
            QVERIFY(last == 0 || !chatter.chatters(*book.alarm(last), at));
            last = take(book, 1, "Door fail", at);
            book.acknowledge({last}, at, {}); // does not hide it
        }
        const AlarmRow alarm = *book.alarm(last);
        QVERIFY(chatter.chatters(alarm, 60'000));
        QVERIFY(!chatter.chatters(alarm, 61'001)); // the first of the three is long ago
    }

private:
    static qint64 take(AlarmBook &book, qint64 station, const char *text, qint64 at,
                       const QString &number = u"+491"_s)
    {
        return book.addNotification(station, number, QString::fromLatin1(text), at);
    }
};

QTEST_GUILESS_MAIN(AlarmBookTest)
#include "alarm_book_test.moc"
