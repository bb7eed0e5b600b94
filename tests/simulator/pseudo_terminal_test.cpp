#include "simulator/module_on_terminal.h"
#include "support/manual_timers.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QSocketNotifier>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

using namespace ktr;
using namespace std::chrono_literals;

namespace {

/// Another program that opens the path as it is, without setting anything.
class Client
{
public:
    explicit Client(const QString &path)
        : descriptor(::open(QFile::encodeName(path).constData(), O_RDWR | O_NOCTTY | O_NONBLOCK)),
          m_notifier(descriptor, QSocketNotifier::Read)
    {
        QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier, [this] { read(); });
    }
    ~Client() { close(); }
    Q_DISABLE_COPY_MOVE(Client)

    void close()
    {
        m_notifier.setEnabled(false);
        if (descriptor >= 0) {
            ::close(std::exchange(descriptor, -1));
        }
    }
    bool write(const QByteArray &bytes) const
    {
        return ::write(descriptor, bytes.constData(), static_cast<std::size_t>(bytes.size())) == bytes.size();
    }
    /// Everything that there is to read by now, added to what was read before.
    QByteArray &read()
    {
        std::array<char, 4096> buffer;
        for (;;) {
            const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
            if (count <= 0) {
                hasEnded = count == 0 || errno == EIO;
                m_notifier.setEnabled(!hasEnded);
                return received;
            }
            received.append(buffer.data(), count);
        }
    }

    int descriptor;
    QByteArray received;
    bool hasEnded = false;

private:
    QSocketNotifier m_notifier;
};

QByteArray everyByte()
{
    QByteArray bytes;
    for (int i = 0; i < 256; ++i) {
        bytes += static_cast<char>(i);
    }
    return bytes;
}

} // namespace

class PseudoTerminalTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyBytePassesUnchangedBothWaysWithoutEcho();
    void whatAClientDoesNotTakeYetIsKeptUpToTheLimit();
    void clientsComeAndGo();
    void aLinkReplacesALinkAndNothingElse();
    void hangingUpEndsTheClientsLine();
    void aModuleIsConfiguredThroughItsTerminal();
};

void PseudoTerminalTest::everyBytePassesUnchangedBothWaysWithoutEcho()
{
    PseudoTerminal terminal;
    QByteArray heard;
    connect(&terminal, &PseudoTerminal::readyRead, this, [&] { heard += terminal.readAll(); });
    QVERIFY(terminal.open());
    terminal.write("early" + everyByte()); // before anybody has opened it

    Client client(terminal.slavePath());
    QTRY_COMPARE(client.read(), "early" + everyByte());
    QVERIFY(client.write(everyByte()));
    QTRY_VERIFY(heard.size() >= 256);
    QCOMPARE(heard, everyByte());
    QCOMPARE(client.read(), "early" + everyByte());
}

void PseudoTerminalTest::whatAClientDoesNotTakeYetIsKeptUpToTheLimit()
{
    PseudoTerminal terminal;
    QSignalSpy messages(&terminal, &PseudoTerminal::statusMessage);
    QVERIFY(terminal.open());
    QByteArray kept;
    for (int i = 0; i < PseudoTerminal::outputLimit / 1000; ++i) {
        kept += QByteArray::number(i).rightJustified(1000, static_cast<char>(i));
        terminal.write(kept.last(1000));
    }
    QCOMPARE(messages.size(), 0);
    terminal.write(QByteArray(PseudoTerminal::outputLimit, 'x'));
    QCOMPARE(messages.size(), 1);

    {
        Client client(terminal.slavePath());
        QTRY_COMPARE_WITH_TIMEOUT(client.received.size(), kept.size(), 60'000);
        QVERIFY(client.received == kept);
    }
    terminal.write("old");
    QTRY_COMPARE(terminal.untaken(), 3);
    terminal.discardUntaken();
    terminal.write("new");
    Client next(terminal.slavePath());
    QTRY_COMPARE(next.received, "new");
}

void PseudoTerminalTest::clientsComeAndGo()
{
    PseudoTerminal terminal;
    QByteArray heard;
    connect(&terminal, &PseudoTerminal::readyRead, this, [&] { heard += terminal.readAll(); });
    QVERIFY(terminal.open());
    {
        Client first(terminal.slavePath());
        QCOMPARE(::ioctl(first.descriptor, TIOCEXCL), 0);
        QVERIFY(first.write("first"));
    }
    QTRY_COMPARE(heard, "first");
    Client second(terminal.slavePath());
    int claimed = 1;
    QCOMPARE(::ioctl(second.descriptor, TIOCGEXCL, &claimed), 0);
    QCOMPARE(claimed, 0);
    QVERIFY(second.write("second"));
    QTRY_COMPARE(heard, "firstsecond");
}

void PseudoTerminalTest::aLinkReplacesALinkAndNothingElse()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("module");
    QVERIFY(QFile::link("/nowhere", path));
    {
        PseudoTerminal terminal;
        QVERIFY(!terminal.linkAt(path));
        QVERIFY(terminal.open());
        QVERIFY(terminal.linkAt(path));
        QVERIFY(terminal.linkAt(path));
        QCOMPARE(QFileInfo(path).symLinkTarget(), terminal.slavePath());

        const QString document = folder.filePath("document");
        QFile file(document);
        QVERIFY(file.open(QIODevice::WriteOnly));
        const Status refused = terminal.linkAt(document);
        QVERIFY(!refused && refused.message().contains(document));
        QVERIFY(QFileInfo(document).isFile() && QFileInfo(path).isSymbolicLink());

        PseudoTerminal other;
        QVERIFY(other.open());
        QVERIFY(other.linkAt(path));
        terminal.hangUp();
        QCOMPARE(QFileInfo(path).symLinkTarget(), other.slavePath());
    }
    QVERIFY(!QFileInfo(path).isSymbolicLink());
}

void PseudoTerminalTest::hangingUpEndsTheClientsLine()
{
    PseudoTerminal terminal;
    QVERIFY(terminal.open());
    Client client(terminal.slavePath());
    client.read();
    QVERIFY(!client.hasEnded);
    terminal.hangUp();
    client.read();
    QVERIFY(client.hasEnded);
    QVERIFY(!terminal.isOpen() && terminal.slavePath().isEmpty());
    terminal.write("nobody is there");
}

void PseudoTerminalTest::aModuleIsConfiguredThroughItsTerminal()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("module");
    test::ManualTimers timers;
    ModuleOptions options;
    const QByteArray sent = "at+cpin?\rat+cmgr=1\rat+cmgs=\"+IP\"\r";
    options.faults.hangUpAtByte = 19 * 9 + sent.size();
    ModuleOnTerminal module(timers, options);
    QVERIFY(module.open(path));
    QTRY_COMPARE(module.terminal().untaken(), 9);
    for (int asked = 1; asked < 20; ++asked) { // nobody is there to read what it sends
        const qsizetype before = module.terminal().untaken();
        timers.advance(1s);
        const auto hasArrived = [&] {
            const qsizetype unread = module.terminal().untaken();
            return unread == before + 9 || (unread == 9 && before != 9);
        };
        QTRY_VERIFY(hasArrived());
    }

    Client client(path);
    QTRY_VERIFY(client.read().endsWith("at+cpin?\r"));
    QVERIFY(client.received.size() < 150);
    QVERIFY(client.write("at+cpin?\r\nconfig\r\nOK\r\n"));
    QTRY_VERIFY(client.read().endsWith("at+cmgr=1\r"));
    QVERIFY(client.write("at+cmgr=1\r\n,\"+IP\"\r\nC,5\r\nOK\r\n"));
    QTRY_COMPARE(module.module().memory().configuration.gsm.aliveCycle, "5");
    QVERIFY(module.path().isEmpty()); // it hung up behind its request to answer
    QVERIFY(!QFileInfo(path).isSymbolicLink());
}

QTEST_GUILESS_MAIN(PseudoTerminalTest)
#include "pseudo_terminal_test.moc"
