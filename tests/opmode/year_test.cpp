#include "opmode/operational_mode.h"
#include "record/record_care.h"
#include "support/manual_timers.h"
#include "support/recorded_line.h"
#include "year/play.h"

#include <QTemporaryDir>
#include <QTest>

using namespace ktr;
using namespace Qt::StringLiterals;

/// A few weeks at a few stations; scripts/year does the same with a year at a thousand.
class YearTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachAlarmIsToldAsItWasAndStaysSoWhenTheListIsOpened()
    {
        constexpr int stations = 11;
        constexpr int days = 80;
        const QTemporaryDir folder;
        const Status played = year::play(folder.path(), stations, days);
        QVERIFY2(played, qPrintable(played.message()));
        for (const bool isOpened : {false, true}) {
            if (isOpened) {
                open(folder.path());
            }
            qint64 alarms = 0;
            const Status compared = year::compare(folder.path(), stations, days, alarms);
            QVERIFY2(compared, qPrintable(compared.message()));
            QVERIFY(alarms > stations * days / 3);
        }
    }

private:
    static void open(const QString &folder)
    {
        test::ManualTimers timers;
        Environment environment;
        environment.now = [] { return QDateTime(QDate(2026, 3, 1), QTime(12, 0)); };
        OperationalMode mode({.environment = environment,
                              .timers = timers,
                              .createLine = [] { return std::make_unique<test::RecordedLine>(); },
                              .callbackTimers = test::manualCallbackTimers(timers)},
                             {u"Notifications"_s, u"History"_s, u"IP"_s});
        const Status opened = mode.open(year::listOf(folder), OperationalMode::Use::Keep);
        QVERIFY2(opened && mode.defects().isEmpty(), qPrintable(opened.message()));
        QVERIFY(!mode.alarms().standing().empty());
        QVERIFY(mode.close());
    }
};

QTEST_GUILESS_MAIN(YearTest)
#include "year_test.moc"
