#include "simulator/module_on_terminal.h"
#include "support/manual_timers.h"

#include <QFileInfo>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QTest>

#include <fcntl.h>
#include <numeric>
#include <unistd.h>

using namespace ktr;

namespace {

/// Another program opens the path as it is, without setting anything.
void openAsItIs(QFile &client, const QString &path)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDWR | O_NOCTTY | O_NONBLOCK);
    QVERIFY(client.open(descriptor, QFile::ReadWrite | QFile::Unbuffered, QFile::AutoCloseHandle));
}

} // namespace

class PseudoTerminalTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyBytePassesUnchangedBothWaysUntilItHangsUp()
    {
        QByteArray everyByte(256, '\0');
        std::iota(everyByte.begin(), everyByte.end(), '\0');
        PseudoTerminal terminal;
        QSignalSpy messages(&terminal, &PseudoTerminal::statusMessage);
        QVERIFY(terminal.open());
        terminal.write("early" + everyByte); // before anybody has opened it
        terminal.write(QByteArray(PseudoTerminal::outputLimit + 1, 'x'));
        QCOMPARE(messages.size(), 1); // dropped

        QFile client;
        openAsItIs(client, terminal.slavePath());
        QByteArray received;
        QTRY_COMPARE(received += client.readAll(), "early" + everyByte);
        QCOMPARE(client.write(everyByte), 256);
        QByteArray heard;
        QTRY_COMPARE(heard += terminal.readAll(), everyByte);
        QCOMPARE(client.readAll(), ""); // no echo

        const auto hasEnded = [&client] {
            char byte = 0;
            return ::read(client.handle(), &byte, 1) == 0 || errno == EIO;
        };
        QVERIFY(!hasEnded());
        terminal.hangUp();
        QVERIFY(hasEnded());
    }

    void aLinkReplacesALinkAndNothingElse()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("module");
        QVERIFY(QFile::link("/nowhere", path));
        PseudoTerminal terminal;
        QVERIFY(!terminal.linkAt(path));
        QVERIFY(terminal.open() && terminal.linkAt(path));
        QTemporaryFile document;
        QVERIFY(document.open() && !terminal.linkAt(document.fileName()));
        QVERIFY(QFileInfo(document.fileName()).isFile());

        PseudoTerminal other;
        QVERIFY(other.open() && other.linkAt(path));
        terminal.hangUp();
        QCOMPARE(QFileInfo(path).symLinkTarget(), other.slavePath());
        other.hangUp();
        QVERIFY(!QFileInfo(path).isSymbolicLink());
    }

    void aProgramThatComesLateHearsThePresent()
    {
        test::ManualTimers timers;
        ModuleOnTerminal module(timers);
        QVERIFY(module.open());
        for (int asked = 1; asked < 20; ++asked) { // nobody is there to read what it sends
            const qsizetype before = module.terminal().untaken();
            timers.advance(std::chrono::seconds(1));
            QTRY_VERIFY(module.terminal().untaken() != before);
        }
        QFile client;
        openAsItIs(client, module.path());
        QByteArray received;
        QTRY_VERIFY((received += client.readAll()).endsWith("at+cpin?\r"));
        QVERIFY(received.size() < 150);
    }
};

QTEST_GUILESS_MAIN(PseudoTerminalTest)
#include "pseudo_terminal_test.moc"
