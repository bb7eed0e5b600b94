#include "link/changes.h"
#include "link/module_session.h"
#include "simulator/held_form.h"
#include "support/direct_line.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/random_configuration.h"

#include <QTest>

using namespace ktr;
using namespace Qt::StringLiterals;

namespace {

/// A module that lives through several transmissions.
class Module
{
public:
    explicit Module(const QLocale &locale, LineKind kind = LineKind::Serial,
                    const DatagramFaults &network = {})
        : m_locale(locale),
          m_kind(kind),
          m_line(m_timers, options(kind), network),
          m_session(m_line, m_timers, test::fixedEnvironment(locale), kind)
    {
        QObject::connect(&m_session, &ModuleSession::caught, &m_session, [this] { begin(); });
        QObject::connect(&m_session, &ModuleSession::nothingToRead, &m_session, [this] { begin(); });
        QObject::connect(&m_session, &ModuleSession::transmitted, &m_session, [this] { m_isDone = true; });
        QObject::connect(&m_session, &ModuleSession::commandSent, &m_session,
                         [this](std::optional<int>, const QString &command) { commands += command; });
        m_line.module.start();
        if (kind == LineKind::Ethernet) {
            m_isOpen = bool(m_session.open(QString()));
        }
    }

    void transmit(const Configuration &configuration, bool answer = false)
    {
        run(configuration, Transmission(m_configuration, answer));
    }
    void transmitChanges(const Configuration &held, const Configuration &configuration, bool answer)
    {
        const CommandContext context{answer, m_locale, test::fixedEnvironment().now()};
        Transmission transmission(m_configuration, answer);
        transmission.leaveOut(changesSince(held, configuration, context).leftOut);
        transmission.expectVersion(held.versionText);
        run(configuration, transmission);
    }
    void transmitSteps(const Configuration &configuration, const StepSet &steps, bool answer)
    {
        Transmission transmission(m_configuration, answer);
        transmission.leaveOut(~steps);
        run(configuration, transmission);
    }

    const ModuleMemory &memory() const { return m_line.module.memory(); }
    const TransmissionReport &report() const { return m_session.transmission().report(); }

    QStringList commands; ///< of the last transmission
    bool isDone() const { return m_isDone; }

private:
    static ModuleOptions options(LineKind kind)
    {
        ModuleOptions options;
        options.tellsEnd = kind == LineKind::Ethernet;
        return options;
    }

    void run(const Configuration &configuration, const Transmission &transmission)
    {
        m_configuration = configuration;
        m_next = transmission;
        m_isDone = false;
        commands.clear();
        if (m_kind == LineKind::Ethernet) {
            begin();
        }
        for (int i = 0; i < 200000 && m_isOpen && !m_isDone; ++i) {
            m_line.carry();
            m_timers.advance(Milliseconds(10));
        }
        // What was handed over last is read by then.
        for (int i = 0; i < 500; ++i) {
            m_line.carry();
            m_timers.advance(Milliseconds(10));
        }
    }
    void begin()
    {
        if (m_next) {
            m_session.startTransmission(*std::exchange(m_next, std::nullopt));
        }
    }

    QLocale m_locale;
    LineKind m_kind;
    test::ManualTimers m_timers;
    test::DirectLine m_line;
    ModuleSession m_session;
    Configuration m_configuration;
    std::optional<Transmission> m_next;
    bool m_isOpen = true;
    bool m_isDone = false;
};

/// The other configuration as an edit of the first: every field keeps its value with this chance.
Configuration edited(const Configuration &from, const Configuration &other, unsigned seed)
{
    Configuration result = other;
    std::mt19937 random(seed);
    const auto kept = [&](auto &records, const auto &before) {
        for (std::size_t i = 0; i < records.size(); ++i) {
            if (random() % 8 != 0) {
                records[i] = before[i];
            }
        }
    };
    kept(result.limitValues, from.limitValues);
    kept(result.archiving, from.archiving);
    kept(result.digitalInputs, from.digitalInputs);
    kept(result.outputHours, from.outputHours);
    kept(result.sendValues, from.sendValues);
    kept(result.scaling, from.scaling);
    kept(result.outputValues, from.outputValues);
    kept(result.switchPoints, from.switchPoints);
    if (random() % 4 != 0) {
        result.gsm = from.gsm;
        result.administrators = from.administrators;
    }
    if (random() % 2 != 0) {
        result.holidays = from.holidays;
    }
    if (random() % 2 != 0) {
        result.ethernet = from.ethernet;
    }
    result.versionText = QStringLiteral("2026-12-01 08:00:00");
    return result;
}

} // namespace

class ChangesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void changesMakeOfAModuleWhatAWholeTransmissionMakes()
    {
        int left = 0;
        for (unsigned seed = 0; seed < 1000; ++seed) {
            const QLocale locale = seed % 2 == 0 ? QLocale::c() : test::german();
            const Configuration from = test::RandomConfiguration(seed).make(locale);
            const Configuration other = test::RandomConfiguration(seed + 5000).make(locale);
            const Configuration to = seed % 5 == 0 ? other : edited(from, other, seed);
            Module whole(locale);
            whole.transmit(from);
            whole.transmit(to);
            Module changed(locale);
            changed.transmit(from);
            changed.transmitChanges(from, to, seed % 3 == 0);
            QVERIFY2(changed.isDone() && whole.isDone(), qPrintable(QString::number(seed)));
            QCOMPARE(changed.memory().refused, 0);
            const QStringList lines =
                differences(whole.memory().configuration, changed.memory().configuration, locale);
            QVERIFY2(lines.isEmpty(), qPrintable(u"seed %1: "_s.arg(seed) + lines.join(u'\n')));
            Configuration expected = asHeld(to, locale);
            if (!to.sendValues[0].enabled) { // they stay as they were
                expected.sendValues = changed.memory().configuration.sendValues;
                expected.outputValues = changed.memory().configuration.outputValues;
            }
            QCOMPARE(differences(expected, changed.memory().configuration, locale), QStringList());
            QVERIFY(changed.commands.last().startsWith(u"v,"_s));
            left += static_cast<int>(whole.commands.size() - changed.commands.size());
        }
        QVERIFY2(left > 30000, qPrintable(QString::number(left))); // most were left out
    }

    void onlyWhatDiffersIsSentAndTheClosingCommandLast()
    {
        const Configuration from = test::RandomConfiguration(3).make(QLocale::c());
        Configuration to = from;
        to.versionText = u"2026-12-24 18:00:00"_s;
        to.limitValues[2].delay = u"77"_s;
        to.administrators[4].number = u"+491711234567"_s;
        to.administrators[4].name = u"told to no module"_s;
        const Changes changes = changesSince(from, to, {false, QLocale::c(), QDateTime::currentDateTime()});
        QCOMPARE(changes.commands, 2);
        Module module(QLocale::c());
        module.transmit(from);
        module.transmitChanges(from, to, true);
        QStringList letters;
        for (const QString &command : module.commands) {
            letters += command.left(3);
        }
        QCOMPARE(letters.first(), u"V,§"_s);
        QVERIFY(letters[1].startsWith(u"N,"_s));
        QCOMPARE(letters[2], u"G,3"_s);
        QVERIFY(letters[3].startsWith(u"T,"_s));
        QCOMPARE(module.commands.last(), u"v,2026-12-24 18:00:00"_s);
        QCOMPARE(module.commands.size(), 5);
        QCOMPARE(module.report().verdict(), TransmissionReport::Verdict::Whole);
    }

    void aModuleOfAnotherVersionIsSentNothing_data()
    {
        QTest::addColumn<LineKind>("kind");
        QTest::addColumn<bool>("answer");
        QTest::newRow("serial") << LineKind::Serial << false;
        QTest::newRow("serial, answered") << LineKind::Serial << true;
        QTest::newRow("network") << LineKind::Ethernet << true;
        QTest::newRow("network, not answered") << LineKind::Ethernet << false;
    }
    void aModuleOfAnotherVersionIsSentNothing()
    {
        QFETCH(LineKind, kind);
        QFETCH(bool, answer);
        Configuration from = test::RandomConfiguration(3).make(QLocale::c());
        const Configuration to = test::RandomConfiguration(4).make(QLocale::c());
        Module module(QLocale::c(), kind);
        module.transmit(from, true);
        const Configuration before = module.memory().configuration;
        from.versionText = u"2020-01-01 00:00:00"_s; // what somebody believes it holds
        module.transmitChanges(from, to, answer);
        QVERIFY(module.isDone());
        QCOMPARE(module.commands.count(u"V,§"_s), module.commands.size());
        QCOMPARE(module.memory().configuration, before);
        QCOMPARE(module.report().verdict(), TransmissionReport::Verdict::BrokenOff);
        QCOMPARE(module.report().otherVersion, before.versionText);
        QVERIFY(module.report().findings().front().text.contains(before.versionText));
    }

    void aNetworkThatLosesChangesNothingOfThat()
    {
        int whole = 0;
        for (unsigned seed = 0; seed < 10; ++seed) {
            const Configuration from = test::RandomConfiguration(seed).make(QLocale::c());
            const Configuration to =
                edited(from, test::RandomConfiguration(seed + 1).make(QLocale::c()), seed);
            Module module(QLocale::c(), LineKind::Ethernet, {.lost = 3, .doubled = 5, .seed = seed + 1});
            module.transmit(from, true);
            if (module.report().verdict() != TransmissionReport::Verdict::Whole) {
                continue;
            }
            module.transmitChanges(from, to, true);
            if (module.report().verdict() != TransmissionReport::Verdict::Whole) {
                continue;
            }
            Configuration expected = asHeld(to, QLocale::c());
            if (!to.sendValues[0].enabled) {
                expected.sendValues = module.memory().configuration.sendValues;
                expected.outputValues = module.memory().configuration.outputValues;
            }
            QCOMPARE(differences(expected, module.memory().configuration, QLocale::c()), QStringList());
            ++whole;
        }
        QVERIFY2(whole >= 5, qPrintable(QString::number(whole)));
    }

    void aCommandThatWasTooLongIsNotInTheModule()
    {
        Configuration from = test::RandomConfiguration(3).make(QLocale::c());
        from.limitValues[7].alarm = QString(160, u'x');
        const CommandContext context{false, QLocale::c(), QDateTime::currentDateTime()};
        // It is refused once more, and told.
        QVERIFY(!changesSince(from, from, context).leftOut.test(9));
        Configuration to = from;
        to.limitValues[7].alarm = u"short"_s;
        const Changes changes = changesSince(from, to, context);
        QCOMPARE(changes.commands, 1);
        QVERIFY(!changes.leftOut.test(9));
    }

    void aVersionTextProvesAConfigurationOnlyInFull()
    {
        Configuration configuration;
        QVERIFY(!isProvedBy(configuration, QString()));
        configuration.versionText = u"2026-12-24 18:00:00"_s;
        QVERIFY(isProvedBy(configuration, u"2026-12-24 18:00:00"_s));
        QVERIFY(!isProvedBy(configuration, u"2026-12-24 18:00"_s));
        configuration.versionText = u"Größe\n1"_s;
        QVERIFY(isProvedBy(configuration, u"Größe 1"_s)); // as it arrived
        configuration.versionText = QString(150, u'x');
        QVERIFY(!isProvedBy(configuration, configuration.versionText.left(130)));
        QVERIFY(!isProvedBy(configuration, configuration.versionText));
    }

    void theStepsOfAnEntryAreThoseOfItsCommands()
    {
        const Configuration configuration = test::RandomConfiguration(4).make(QLocale::c());
        const StepCommands commands =
            commandsOf(configuration, {true, QLocale::c(), QDateTime::currentDateTime()});
        const auto beginnings = [&commands](EntryKind kind, int number) {
            QStringList texts;
            const StepSet steps = stepsOfEntry(kind, number);
            for (std::size_t step = 0; step < steps.size(); ++step) {
                if (steps.test(step) && commands[step]) {
                    texts += commands[step]->section(u',', 0, 1);
                }
            }
            return texts.join(u' ');
        };
        QCOMPARE(beginnings(EntryKind::LimitValue, 1), u"G,1"_s);
        QCOMPARE(beginnings(EntryKind::LimitValue, 20), u"G,20"_s);
        QCOMPARE(beginnings(EntryKind::SwitchPoint, 20), u"Z,20"_s);
        QCOMPARE(beginnings(EntryKind::Channel, 3), u"D,3 H,3"_s);
        QCOMPARE(beginnings(EntryKind::Channel, 7), u"H,7"_s);
        QCOMPARE(beginnings(EntryKind::Channel, 16), u"H,16 D,16"_s);
        QCOMPARE(stepsOfEntry(EntryKind::Channel, 13).count(), 3U); // scaling, output value, archive
        QVERIFY(stepsOfEntry(EntryKind::Channel, 0).none());
        QVERIFY(stepsOfEntry(EntryKind::SwitchPoint, 21).none());
    }

    void singleStepsLeaveTheVersionAsItWas_data()
    {
        QTest::addColumn<LineKind>("kind");
        QTest::addColumn<bool>("answer");
        QTest::newRow("serial") << LineKind::Serial << false;
        QTest::newRow("serial, answered") << LineKind::Serial << true;
        QTest::newRow("network") << LineKind::Ethernet << true;
    }
    void singleStepsLeaveTheVersionAsItWas()
    {
        QFETCH(LineKind, kind);
        QFETCH(bool, answer);
        const Configuration from = test::RandomConfiguration(3).make(QLocale::c());
        Configuration to = test::RandomConfiguration(4).make(QLocale::c());
        to.versionText = u"another"_s;
        Module module(QLocale::c(), kind);
        module.transmit(from, true);
        StepSet entry;
        entry.set(5).set(60);
        module.transmitSteps(to, entry, answer);
        QVERIFY(module.isDone());
        QCOMPARE(module.commands.size(), 2);
        QVERIFY(!module.report().brokenAt && module.report().unconfirmed.isEmpty());
        Configuration expected = asHeld(from, QLocale::c());
        const Configuration changed = asHeld(to, QLocale::c());
        expected.limitValues[3] = changed.limitValues[3];
        expected.switchPoints[8] = changed.switchPoints[8];
        QCOMPARE(differences(expected, module.memory().configuration, QLocale::c()), QStringList());
    }
};

QTEST_GUILESS_MAIN(ChangesTest)
#include "changes_test.moc"
