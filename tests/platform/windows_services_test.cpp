#include "platform/callback_timers.h"
#include "platform/files.h"
#include "platform/helper_program.h"
#include "platform/registry.h"
#include "platform/serial_device.h"
#include "platform/terminal.h"
#include "support/test_files.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <windows.h>
// after windows.h
#include <aclapi.h>
#include <map>

using namespace ktr;
using namespace Qt::StringLiterals;
using test::contentOf;

/// What this system has otherwise than the others: window styles, its own timers, value types, access lists.
class WindowsServicesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void helpersGetTheirWindowAndTheirArguments_data()
    {
        QTest::addColumn<ProgramWindow>("window");
        QTest::addColumn<int>("style");
        QTest::newRow("normal") << ProgramWindow::Normal << SW_SHOWNORMAL;
        QTest::newRow("minimised") << ProgramWindow::Minimised << SW_SHOWMINIMIZED;
    }
    void helpersGetTheirWindowAndTheirArguments()
    {
        QFETCH(ProgramWindow, window);
        QFETCH(int, style);
        const QString report = m_folder.filePath(QString::number(style));
        const QString self = findHelper(m_folder.path(), u"windows_services_test"_s); // without its suffix
        QVERIFY(!self.isEmpty());
        QVERIFY(startProgram(self, {u"--report"_s, report, u"*.xml|*.xml"_s, u"Büro 2"_s}, window));
        QTRY_COMPARE(contentOf(report), u"%1 *.xml|*.xml Büro 2"_s.arg(style).toUtf8());
    }

    void callbackTimersAreTheSystemsAndTheRestIsQueued()
    {
        EventLoopTimers loop;
        const auto timers = systemCallbackTimers(loop);
        std::map<quint32, int> events;
        timers->onCallback([&](quint32 id) { ++events[id]; });
        std::vector<quint32> idle;
        for (int i = 0; i < 10'000; ++i) { // more than the system is asked for
            idle.push_back(timers->set(std::chrono::hours(20)));
        }
        QVERIFY(std::ranges::all_of(idle, [](quint32 id) { return id != 0; }));
        std::ranges::sort(idle);
        QVERIFY(std::ranges::adjacent_find(idle) == idle.end());
        const quint32 queued = timers->set(Milliseconds{20});
        for (int i = 0; i < 1'000; ++i) {
            QVERIFY(timers->kill(idle[std::size_t(i)]));
        }
        const quint32 own = timers->set(Milliseconds{20});
        const quint32 stopped = timers->set(Milliseconds{20});
        QVERIFY(timers->kill(stopped));
        QVERIFY(!timers->kill(stopped));
        QTRY_VERIFY(events[own] >= 3 && events[queued] >= 3);
        QCOMPARE(events[stopped], 0);
        QCOMPARE(events.size(), 3U);
    }

    void valuesThatAreNoTextsAreNone()
    {
        MRegistry::setRegistryFile(m_folder.filePath(u"registry"_s));
        MRegistry::CreateRegistryKey(u"hkey_current_user"_s, u"Software\\Test"_s);
        HKEY key = nullptr;
        QCOMPARE(::RegOpenKeyW(HKEY_CURRENT_USER, L"Software\\Test", &key), ERROR_SUCCESS);
        const DWORD number = 0x41414141;
        ::RegSetValueExW(key, L"Number", 0, REG_DWORD, reinterpret_cast<const BYTE *>(&number),
                         sizeof number);
        ::RegSetValueExW(key, L"Text", 0, REG_SZ, reinterpret_cast<const BYTE *>(L"für €"),
                         6 * sizeof(wchar_t));
        ::RegCloseKey(key);
        QCOMPARE(MRegistry::GetRegistryString(u"hkey_current_user"_s, u"Software\\Test"_s, u"Number"_s),
                 QString());
        QVERIFY(MRegistry::lastError() == MRegistry::Error::NotFound);
        QCOMPARE(MRegistry::GetRegistryString(u"hkey_current_user"_s, u"Software\\Test"_s, u"Text"_s),
                 u"für €"_s);
        MRegistry::setRegistryFile({});
    }

    void aNewFileIsItsOwnersAndAnOldOneKeepsItsAccessList()
    {
        const QString path = m_folder.filePath(u"list.xml"_s);
        QVERIFY(replaceFile(path, "new"));
        QCOMPARE(strangersMayRead(path), false);
        const HANDLE all = ::CreateFileW(reinterpret_cast<const wchar_t *>(path.utf16()), WRITE_DAC, 0,
                                         nullptr, OPEN_EXISTING, 0, nullptr);
        QVERIFY(all != INVALID_HANDLE_VALUE);
        QCOMPARE(::SetSecurityInfo(all, SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, nullptr,
                                   nullptr),
                 DWORD{ERROR_SUCCESS}); // no list at all: everybody
        ::CloseHandle(all);
        QCOMPARE(strangersMayRead(path), true);
        QVERIFY(replaceFile(path, "replaced"));
        QCOMPARE(strangersMayRead(path), true);
        QCOMPARE(contentOf(path), "replaced");
    }

    void aPortThatIsNoneIsTold()
    {
        SerialHandle handle{};
        const Status missing = openSerialDevice(u"COM123"_s, handle);
        QVERIFY(!missing);
        QCOMPARE(missing.message(), u"COM123: there is no such port"_s);
        const Status file =
            openSerialDevice(QDir::toNativeSeparators(QCoreApplication::applicationFilePath()), handle);
        QVERIFY(!file);
    }

private:
    static bool strangersMayRead(const QString &path)
    {
        PACL list = nullptr;
        PSECURITY_DESCRIPTOR descriptor = nullptr;
        const QString native = QDir::toNativeSeparators(path);
        ::GetNamedSecurityInfoW(reinterpret_cast<const wchar_t *>(native.utf16()), SE_FILE_OBJECT,
                                DACL_SECURITY_INFORMATION, nullptr, nullptr, &list, nullptr, &descriptor);
        bool may = list == nullptr;
        for (DWORD i = 0; list != nullptr && i < list->AceCount; ++i) {
            void *entry = nullptr;
            ::GetAce(list, i, &entry);
            const auto *const allowed = static_cast<const ACCESS_ALLOWED_ACE *>(entry);
            const auto *const who = reinterpret_cast<PSID>(const_cast<DWORD *>(&allowed->SidStart));
            may = may || (allowed->Header.AceType == ACCESS_ALLOWED_ACE_TYPE &&
                          (allowed->Mask & FILE_READ_DATA) != 0 &&
                          ::IsWellKnownSid(const_cast<PSID>(who), WinWorldSid) != 0);
        }
        ::LocalFree(descriptor);
        return may;
    }

    QTemporaryDir m_folder;
};

// Called with "--report FILE ..." this program is the helper: it tells how it was started.
int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList words = QCoreApplication::arguments();
    if (words.value(1) == u"--report"_s) {
        STARTUPINFOW info = {};
        ::GetStartupInfoW(&info);
        const QString line = QString::number(info.wShowWindow) + u' ' + words.mid(3).join(u' ');
        return replaceFile(words.value(2), line.toUtf8()) ? 0 : 1;
    }
    WindowsServicesTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "windows_services_test.moc"
