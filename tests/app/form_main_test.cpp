#include "app/form_main.h"
#include "app/kept_edits.h"
#include "config/configuration_file.h"
#include "config/fields.h"
#include "look/field_width.h"
#include "look/style.h"
#include "platform/files.h"
#include "platform/registry.h"
#include "platform/settings_store.h"
#include "support/cut_off.h"
#include "support/page_fixture.h"
#include "support/recorded_line.h"
#include "support/silent_line.h"
#include "support/test_files.h"
#include "transmissions/transmission_memory.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QDropEvent>
#include <QFileDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QProcess>
#include <QProgressBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTabBar>
#include <QTableView>
#include <QTemporaryDir>
#include <QTextDocument>
#include <QToolButton>
#include <QTreeView>

using namespace ktr;
using namespace ktr::test;

namespace {

const QString settings = "KTR_Config";
const QString program = "Software\\Korvane\\KTRconfig";
constexpr int longestWrite = 30'000; // ms; of a disk that others use

/// Answers the next message box with a button once it is open, and keeps what it said.
struct BoxAnswer
{
    explicit BoxAnswer(QMessageBox::StandardButton button)
    {
        QTimer::singleShot(0, &timer, [this, button] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            QVERIFY(box != nullptr);
            text = box->text();
            caption = box->windowTitle();
            QTest::keyClick(box, Qt::Key_Escape); // there is no way out but an answer
            QVERIFY(box->isVisible());
            QTest::mouseClick(box->button(button), Qt::LeftButton);
        });
    }
    QTimer timer;
    QString text;
    QString caption;
};

} // namespace

class FormMainTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        MRegistry::setRegistryFile(path("registry.json"));
        QVERIFY(QFile::copy(KTR_SOURCE_DIR "/data/language.ini", path("language.ini")));
        m_line = std::make_unique<SilentLine>();
        m_ports.clear();
        m_network.opened.clear();
        m_dataFolder.clear();
        m_programFolder.clear();
    }

    void cleanup()
    {
        m_window.reset();
        m_folder.reset();
    }

    void theFirstStartCreatesTheLanguageAndShowsFallBacks()
    {
        m_ports = {"/dev/ttyUSB0", "/dev/ttyUSB1"};
        start({});
        QCOMPARE(MRegistry::GetRegistryString("hkey_current_user", program, "Language"), "english");
        QCOMPARE(m_window->windowTitle(), "KTRconfig  ");
        QVERIFY(!m_window->document().isModified());
        QCOMPARE(m_line->opened, QStringList("/dev/ttyUSB0")); // one tick of the search
        const Configuration &configuration = m_window->document().configuration();
        QCOMPARE(configuration.switchPoints[4].period, "1"); // as a file without it reads
        QVERIFY(configuration.ethernet.mac3 != u"00");
    }

    void theLastFileComesBackWithItsLanguage()
    {
        const QString file = fileWith("Werk 7");
        SettingsStore().SaveSetting(settings, "Startup", "filename", file);
        MRegistry::CreateRegistryKey("hkey_current_user", program);
        MRegistry::SetRegistryString("hkey_current_user", program, "Language", "deutsch");
        start({});
        QCOMPARE(m_window->windowTitle(), "KTRconfig  " + file.right(74));
        QCOMPARE(field("txt_gsm_id")->text(), "Werk 7");
        QCOMPARE(m_window->tabs().tabText(2), "Grenzwert");
        QCOMPARE(plain(m_window->menuBar()->actions().front()), "Datei");
    }

    void theCommandLineNamesFileAndLanguage()
    {
        const QString file = fileWith("by option");
        start({"-Deutsch", "-English", "-load", file, "-EXPERT"});
        // The blank before an option stays at the end of the name.
        QCOMPARE(m_window->document().fileName().toLower(), file.toLower() + u' ');
        QCOMPARE(field("txt_gsm_id")->text(), "by option");
        QCOMPARE(m_window->tabs().tabText(3), "Schaltpunkt");
        QCOMPARE(MRegistry::GetRegistryString("hkey_current_user", program, "Language"), "english");
        clickMenu("mnu_Save");
        QVERIFY(!QFileInfo::exists(m_window->document().fileName()));
        QCOMPARE(stationIn(file), "by option");
    }

    void choicesThatReadAlikeAreToldApart_data()
    {
        QTest::addColumn<QString>("language");
        QTest::newRow("English") << "-english";
        QTest::newRow("German") << "-deutsch";
    }
    void choicesThatReadAlikeAreToldApart()
    {
        QFETCH(const QString, language);
        start({language});
        m_window->document().adjust([](Configuration &changed) {
            changed.administrators[1].name = "Miller";
            changed.administrators[4].name = "miller ";
            changed.administrators[3].name = "Admin 6";
            changed.administrators[5].name = "";
        });
        while (m_window->tabs().buildNext()) {
        }
        QCOMPARE(choicesReadAlike().join(", "), QString());
        m_window->tabs().goTo({"Cmb_swtch_typ", 3});
        m_window->document().edit([](Configuration &changed) {
            changed.switchPoints[3].target = 6; // the second administrator
            changed.switchPoints[3].type = 16;
        });
        const QString line = m_window->findChild<QLabel *>("lbl_swtch_typ_meaning")->text();
        QVERIFY2(line.contains("Miller (Admin 2)"), qPrintable(line));
        QCOMPARE(line.contains("below the limit"), language == "-english"); // the German item says so itself
    }

    void aFileIsNamedInAnyWayAndKeptByItsWholeName_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("shown"); // behind the folder
        QTest::newRow("-load, relative") << QStringList{"-load", "Pump.xml"} << "pump.xml";
        QTest::newRow("-load, then an option") << QStringList{"-load", "Pump.xml", "-expert"} << "pump.xml ";
        QTest::newRow("-load, then -operational")
            << QStringList{"-load", "Pump.xml", "-Operational"} << "pump.xml";
        QTest::newRow("as a file manager does") << QStringList{"%/UP -load.xml"} << "UP -load.xml";
        QTest::newRow("bare, relative") << QStringList{"-expert", "./x/../UP -load.xml"} << "UP -load.xml";
    }
    void aFileIsNamedInAnyWayAndKeptByItsWholeName()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, shown);
        QVERIFY(QFile::copy(fileWith("works"), path("pump.xml")));
        QVERIFY(QFile::copy(path("pump.xml"), path("UP -load.xml")));
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(m_folder->path()));
        start(arguments.replaceInStrings("%", m_folder->path()));
        QVERIFY(QDir::setCurrent(before));
        QCOMPARE(m_window->document().fileName(), path(shown));
        QCOMPARE(m_window->document().configuration().gsm.stationId, "works");
        QCOMPARE(operationalMode() != nullptr, arguments.contains("-Operational"));
        m_window->close();
        QCOMPARE(SettingsStore().GetSetting(settings, "Startup", "filename"), path(shown));
    }

    void aFileThatCannotBeOpenedEndsTheStartWithDefaults()
    {
        SettingsStore().SaveSetting(settings, "Startup", "filename", "/kept/until/close.xml");
        start({"-load", path("missing.xml")});
        QCOMPARE(m_window->windowTitle(), "KTRconfig  ");
        QCOMPARE(m_window->document().configuration().switchPoints[4].period, "0"); // as "new" gives it
        QVERIFY(m_window->findChild<QLabel *>("lbl_event")->toolTip().contains("missing.xml"));
        QCOMPARE(SettingsStore().GetSetting(settings, "Startup", "filename"), "/kept/until/close.xml");
        m_window->close();
        QCOMPARE(SettingsStore().GetSetting(settings, "Startup", "filename", "none"), "");
    }

    void whatIsNoConfigurationIsToldUntilThereIsOne_data()
    {
        QTest::addColumn<QString>("way");
        for (const char *way : {"bare", "-load", "last", "recent", "dropped"}) {
            QTest::newRow(way) << way;
        }
    }
    void whatIsNoConfigurationIsToldUntilThereIsOne()
    {
        QFETCH(QString, way);
        const QString garbage = path("garbage.xml");
        if (way == u"recent") {
            start({fileWith("garbage")});
            m_window.reset();
        }
        QVERIFY(replaceFile(garbage, "no <<< configuration"));
        if (way == u"last") {
            SettingsStore().SaveSetting(settings, "Startup", "filename", garbage);
        }
        start(way == u"bare"    ? QStringList{garbage}
              : way == u"-load" ? QStringList{"-load", garbage}
                                : QStringList());
        if (way == u"dropped") {
            drop(garbage);
        } else if (way == u"recent") {
            clickMenu("mnu_recent_0");
        }
        const auto *notice = control<QLabel>(*m_window, "lbl_notice");
        QVERIFY(notice->isVisible());
        QVERIFY2(notice->toolTip().contains("garbage.xml"), qPrintable(notice->toolTip()));
        QVERIFY2(lastEvent().contains("garbage.xml"), qPrintable(lastEvent()));
        QVERIFY(m_window->document().fileName().isEmpty() && !m_window->document().isModified());
        clickMenu("mnu_neu");
        QVERIFY(!notice->isVisible());
        QCOMPARE(field("txt_gsm_alive")->text(), "0");
    }

    void whatIsPastedIntoAFieldStaysOnItsLine()
    {
        start({});
        const auto paste = [](QLineEdit *into, const QString &text) {
            QGuiApplication::clipboard()->setText(text);
            into->setFocus();
            into->selectAll();
            into->paste(); // as the context menu does
        };
        paste(field("txt_gsm_num_0"), "+49171 123\r\n");
        paste(field("txt_gsm_id"), "Pump\r\nNorth\t");
        paste(field("txt_gsm_name_0"), "A\n\nB");
        const Configuration &configuration = m_window->document().configuration();
        QVERIFY2(!configuration.administrators[0].number.contains(u'\n'),
                 qPrintable(configuration.administrators[0].number));
        QCOMPARE(configuration.gsm.stationId, "Pump North");
        QCOMPARE(field("txt_gsm_id")->text(), "Pump North");
        QCOMPARE(configuration.administrators[0].name, "A B");
        m_window->tabs().page(PageIndex::Connection);
        m_window->tabs().setCurrentIndex(static_cast<int>(PageIndex::Connection));
        paste(field("Txt_connection_address"), "10.0.0.7\n");
        QCOMPARE(field("Txt_connection_address")->text(), "10.0.0.7"); // no field of a configuration
        auto *port = control<QComboBox>(*m_window, "Cmb_connection_port")->lineEdit();
        paste(port, "COM\n9\n");
        QCOMPARE(port->text(), "COM 9");
        m_window->tabs().page(PageIndex::FileInformation);
        m_window->tabs().setCurrentIndex(static_cast<int>(PageIndex::FileInformation));
        auto *comment = control<QPlainTextEdit>(*m_window, "txt_info_kommentar");
        QGuiApplication::clipboard()->setText("one\ntwo");
        comment->setFocus();
        comment->paste();
        QCOMPARE(configuration.info.comment, "one\ntwo"); // has several
    }

    void whatIsBrokenAroundItKeepsNothingFromStarting()
    {
        QVERIFY(replaceFile(path("registry.json"), "{ this is garbage"));
        QVERIFY(QFile::remove(path("language.ini")));
        start({});
        const auto *box = m_window->findChild<QMessageBox *>();
        // Beside the executable of the tests there is a language file; without one the box tells.
        if (box != nullptr) {
            QVERIFY(box->text().startsWith("The File language.ini doesn't exists.\r\nUsing"));
        }
        QVERIFY(m_window->isVisible());
        QVERIFY(m_window->findChild<QLabel *>("lbl_event")
                    ->toolTip()
                    .startsWith("The settings could not be read"));
        QCOMPARE(QDir(m_folder->path()).entryList({"registry.json.unreadable*"}).size(), 1);
        typeOver(field("txt_gsm_id"), "still works");
        QCOMPARE(m_window->document().configuration().gsm.stationId, "still works");
        for (const char *lock : {"registry.json.lock", "instance.lock"}) {
            m_window.reset();
            QVERIFY(QDir(m_folder->path()).mkdir(lock));
            start({"-operational"});
            QVERIFY2(lastEvent().contains(path(lock)), lock);
            m_window->resize(4000, 700);
            const QString shown = control<QLabel>(*m_window, "lbl_event")->text();
            QVERIFY2(!shown.contains("for this run Other"),
                     qPrintable(shown)); // two messages are two sentences
            const auto *seen = operationalMode()->findChild<QLabel *>("lbl_event");
            QTRY_VERIFY2(seen->toolTip().contains(path(lock)), lock);
        }
    }

    void closingAsksToSaveAndKeepsTheFileName()
    {
        const QString file = fileWith("before");
        start({"-load", file});
        typeOver(field("txt_gsm_id"), "after");
        QVERIFY(m_window->findChild<QLabel *>("lbl_modified")->isVisible());
        const BoxAnswer answer(QMessageBox::Yes);
        const QSignalSpy closed(m_window.get(), &FormMain::closed);
        QTest::keyClick(m_window.get(), Qt::Key_Q, Qt::ControlModifier);
        QCOMPARE(answer.text, "save? " + m_window->document().fileName());
        QCOMPARE(answer.caption, "Save");
        QCOMPARE(stationIn(file), "after");
        QCOMPARE(closed.size(), 1);
        QCOMPARE(SettingsStore().GetSetting(settings, "Startup", "filename"),
                 m_window->document().fileName());
    }

    void answeringNoClosesWithoutSaving()
    {
        const QString file = fileWith("before");
        start({"-load", file});
        typeOver(field("txt_gsm_id"), "after");
        const BoxAnswer answer(QMessageBox::No);
        m_window->close();
        QVERIFY(!m_window->isVisible());
        QCOMPARE(stationIn(file), "before");
    }

    void closingAsksBeforeItCutsOffWhatIsSent_data()
    {
        QTest::addColumn<bool>("firmware");
        QTest::newRow("a configuration") << false;
        QTest::newRow("firmware") << true;
    }
    void closingAsksBeforeItCutsOffWhatIsSent()
    {
        QFETCH(bool, firmware);
        m_ports = {"COM1"};
        start({});
        m_window->tabs().setCurrentIndex(static_cast<int>(PageIndex::Test));
        if (firmware) { // the image goes out a second later
            typeOver(field("txt_test_send"), "§88");
            QTest::mouseClick(control<QPushButton>(*m_window, "cmd_test_send"), Qt::LeftButton);
        } else {
            Q_EMIT m_line->received("at+cpin?\r");
            QTest::keyClick(m_window.get(), Qt::Key_F5);
            Q_EMIT m_line->received("at+cmgr=1\r");
        }
        Q_EMIT m_line->received("at+cmgr=1\r");
        const QSignalSpy closed(m_window.get(), &FormMain::closed);
        for (const bool agreed : {false, true}) {
            QTRY_VERIFY(QApplication::activeModalWidget() == nullptr);
            QString asked;
            QTimer::singleShot(0, this, [&] {
                QWidget *box = QApplication::activeModalWidget();
                asked = box->findChild<QLabel *>("Label_msg")->text();
                agreed ? control<QPushButton>(*box, "OKButton")->click()
                       : QTest::keyClick(box, Qt::Key_Return);
            });
            clickMenu("mnu_close");
            QVERIFY2(asked.contains(firmware ? "Firmware is being sent" : "is being transmitted"),
                     qPrintable(asked));
            QVERIFY(m_line->isOpen() != agreed && m_window->isVisible() != agreed);
            QCOMPARE(closed.size(), agreed ? 1 : 0);
        }
    }

    void exitAsksNothing()
    {
        m_ports = {"COM1"};
        start({});
        Q_EMIT m_line->received("at+cpin?\r");
        QTest::keyClick(m_window.get(), Qt::Key_F5);
        Q_EMIT m_line->received("at+cmgr=1\r");
        typeOver(field("txt_gsm_id"), "lost");
        const QSignalSpy exit(m_window.get(), &FormMain::exitWanted);
        clickMenu("nmu_Exit");
        QCOMPARE(exit.size(), 1);
        QVERIFY(SettingsStore().GetSetting(settings, "Startup", "filename", "untouched") == u"untouched");
    }

    void aSaveThatFailsKeepsTheMark()
    {
        const QString file = fileWith("before");
        start({"-load", file});
        typeOver(field("txt_gsm_id"), "after");
        QVERIFY(QFile::remove(file) && QDir().mkpath(file + "/in the way"));
        QTest::keyClick(m_window.get(), Qt::Key_S, Qt::ControlModifier);
        QVERIFY(m_window->document().isModified());
        QVERIFY(
            m_window->findChild<QLabel *>("lbl_event")->toolTip().startsWith("Saving was not successful"));
    }

    void whatCouldNotBeSavedAtTheEndIsOfferedByTheNextStart_data()
    {
        QTest::addColumn<bool>("hasFile");
        QTest::addColumn<QString>("answers"); // Yes or No; a file dialog gets Escape
        QTest::addColumn<bool>("opened");
        QTest::newRow("another name is declined") << true << "Yes No" << true;
        QTest::newRow("no other name is chosen") << true << "Yes Yes" << true;
        QTest::newRow("no name is chosen") << false << "Yes" << true;
        QTest::newRow("discarded") << true << "Yes No" << false;
        QTest::newRow("not wanted") << true << "No" << false;
    }
    void whatCouldNotBeSavedAtTheEndIsOfferedByTheNextStart()
    {
        QFETCH(bool, hasFile);
        QFETCH(QString, answers);
        QFETCH(bool, opened);
        const QString file = hasFile ? fileWith("before -- there") : QString();
        start(hasFile ? QStringList{file} : QStringList());
        typeOver(field("txt_gsm_id"), "after");
        if (hasFile) {
            QVERIFY(QFile::remove(file) && QDir().mkpath(file + "/in the way"));
        }
        QStringList left = answers.split(u' ');
        QStringList told;
        QTimer poll;
        connect(&poll, &QTimer::timeout, this, [&left, &told] {
            QWidget *modal = QApplication::activeModalWidget();
            if (auto *box = qobject_cast<QMessageBox *>(modal)) {
                told += box->text();
                auto *ok = box->button(QMessageBox::Ok);
                ok != nullptr
                    ? ok->click()
                    : box->button(left.takeFirst() == u"Yes" ? QMessageBox::Yes : QMessageBox::No)->click();
            } else if (modal != nullptr) {
                QTest::keyClick(modal, Qt::Key_Escape);
            }
        });
        poll.start(0);
        m_window->close();
        poll.stop();
        QVERIFY(left.isEmpty() && !m_window->isVisible());
        const bool isKept = answers != u"No";
        QCOMPARE(told.last().startsWith("The edits are not saved. They are kept in " + path("unsaved-")),
                 isKept);
        QCOMPARE(QDir(m_folder->path()).entryList({"unsaved-*"}).size(), isKept ? 1 : 0);

        start({});
        auto *box = m_window->findChild<QMessageBox *>("box_keptEdits");
        QCOMPARE(box != nullptr, isKept);
        if (isKept) {
            QVERIFY2(box->text().contains(file), qPrintable(box->text()));
            const QList<QAbstractButton *> buttons = box->buttons();
            const QString wanted = opened ? "Open them" : "Discard them";
            (*std::ranges::find(buttons, wanted, &QAbstractButton::text))->click();
        }
        QCOMPARE(m_window->document().configuration().gsm.stationId == u"after", opened);
        QCOMPARE(m_window->document().isModified(), opened);
        if (opened) {
            QCOMPARE(m_window->document().fileName(), file);
            QVERIFY(hasFile ? QDir(file).removeRecursively()
                            : (m_window->document().setFileName(path("a.xml")), true));
            clickMenu("mnu_Save");
            QVERIFY(!m_window->document().isModified());
        }
        QVERIFY(QDir(m_folder->path()).entryList({"unsaved-*"}).isEmpty());
    }

    void editsAreKeptWhileOneWorks()
    {
        start({"-load", fileWith("kept")});
        auto *timer = m_window->findChild<QTimer *>("tmr_keep");
        QVERIFY(timer != nullptr && timer->interval() == 3'000);
        timer->setInterval(0);
        const auto copies = [this] { return QDir(m_folder->path()).entryInfoList({"unsaved-*.xml"}); };
        typeOver(field("txt_gsm_id"), "typed");
        QTRY_COMPARE(copies().size(), 1);
        const QString copy = copies().front().filePath();
        QTRY_COMPARE(stationIn(copy), "typed");
        typeOver(field("txt_gsm_id"), "more");
        QTRY_COMPARE(stationIn(copy), "more");
        Environment environment = fixedEnvironment();
        environment.programFolder = m_folder->path();
        QVERIFY(KeptEdits(environment).found().isEmpty()); // of a run that goes on
        QTest::keyClick(m_window.get(), Qt::Key_Z, Qt::ControlModifier);
        QTRY_VERIFY(copies().isEmpty());
        QTest::keyClick(m_window.get(), Qt::Key_Y, Qt::ControlModifier);
        QTRY_COMPARE(copies().size(), 1);
        QTest::keyClick(m_window.get(), Qt::Key_S, Qt::ControlModifier);
        QVERIFY(copies().isEmpty());
        {
            KeptEdits ended(environment); // with the power
            Document document(environment);
            document.adjust(
                [](Configuration &c) { c.names.channels[0].name = QStringLiteral("Größe --> 1"); });
            QVERIFY(ended.keep(document, "a--b.xml"));
            QVERIFY(KeptEdits(environment).found().isEmpty());
        }
        const QList<KeptEdits::Copy> found = KeptEdits(environment).found();
        QCOMPARE(found.size(), 1);
        QCOMPARE(found.front().fileName, "a--b.xml");
        QCOMPARE(found.front().names.of(1).name, QStringLiteral("Größe --> 1"));
    }

    void whatBecameOfTheFileOfKeptEditsIsTold_data()
    {
        QTest::addColumn<QByteArray>("theirs"); // in the file; "gone" removes it
        QTest::addColumn<QByteArray>("names");
        QTest::addColumn<QString>("told");
        QTest::newRow("nothing") << QByteArray() << QByteArray() << QString();
        QTest::newRow("changed") << QByteArray("<KTR/>") << QByteArray() << "Since then somebody else";
        QTest::newRow("names") << QByteArray() << QByteArray("1=theirs;\n") << "Since then somebody else";
        QTest::newRow("gone") << QByteArray("gone") << QByteArray() << "not there any more";
    }
    void whatBecameOfTheFileOfKeptEditsIsTold()
    {
        QFETCH(QByteArray, theirs);
        QFETCH(QByteArray, names);
        QFETCH(QString, told);
        const QString file = fileWith("old");
        start({file});
        typeOver(field("txt_gsm_id"), "mine");
        m_window->keepEdits();
        m_window.reset(); // killed
        if (theirs == "gone") {
            QVERIFY(QFile::remove(file));
        } else if (!theirs.isEmpty()) {
            QVERIFY(replaceFile(file, theirs));
        }
        if (!names.isEmpty()) {
            QVERIFY(replaceFile(path("old.names"), names));
        }
        start({file});
        auto *box = m_window->findChild<QMessageBox *>("box_keptEdits");
        QVERIFY(box != nullptr);
        QCOMPARE(box->text().contains('\n'), !told.isEmpty());
        QVERIFY2(box->text().contains(told), qPrintable(box->text()));
        const QList<QAbstractButton *> buttons = box->buttons();
        (*std::ranges::find(buttons, "Open them", &QAbstractButton::text))->click();
        QCOMPARE(field("txt_gsm_id")->text(), "mine");
        clickMenu("mnu_Save"); // over what this run has read, but these edits were not made of
        QCOMPARE(stationIn(file), "mine");
        QCOMPARE(contentOf(file + '~'), theirs == "gone" ? QByteArray() : theirs);
        QCOMPARE(contentOf(path("old.names~")), names);
    }

    void editsThatCannotBeKeptAreToldUntilTheyCan()
    {
        QVERIFY(writeFile(path("no folder"), "x"));
        m_dataFolder = path("no folder");
        m_programFolder = m_dataFolder;
        start({fileWith("old")});
        const auto *notice = control<QLabel>(*m_window, "lbl_notice");
        QVERIFY(!notice->isVisible());
        m_window->findChild<QTimer *>("tmr_keep")->setInterval(0);
        typeOver(field("txt_gsm_id"), "typed");
        QTRY_VERIFY(notice->isVisible());
        QVERIFY2(lastEvent().startsWith("Edits cannot be kept"), qPrintable(lastEvent()));
        QVERIFY2(notice->toolTip().contains("no folder"), qPrintable(notice->toolTip()));
        clickMenu("mnu_Save");
        typeOver(field("txt_gsm_id"), "more");
        QTest::qWait(0);
        m_window->keepEdits();
        QVERIFY(notice->isVisible());
        QVERIFY2(lastEvent().startsWith("Saved"), qPrintable(lastEvent())); // told once
        QVERIFY(QFile::remove(path("no folder")));
        m_window->keepEdits();
        QVERIFY(!notice->isVisible());
    }

    void aChangeOnTheDiskIsToldAtOnceUntilTheFileIsOursAgain()
    {
        const QString file = fileWith("old");
        start({file});
        m_window->findChild<QTimer *>("tmr_disk")->setInterval(0);
        const auto box = [this] { return m_window->findChild<QMessageBox *>("box_changedOnDisk"); };
        const auto isTold = [&box] { return box() != nullptr && box()->isVisible(); };
        QVERIFY(replaceFile(file, "<KTR>one</KTR>")); // another file in its place
        QTRY_VERIFY(isTold());
        const QString before = box()->text();
        typeOver(field("txt_gsm_id"), "mine");
        QVERIFY(box()->text() != before);
        clickMenu("mnu_Save");
        QTRY_VERIFY(box() == nullptr);
        QVERIFY(writeFile(file, "<KTR>two</KTR>")); // written into it
        QTRY_VERIFY(isTold());
        clickMenu("mnu_neu"); // nothing to do with it
        QTRY_VERIFY(box() == nullptr);

        drop(fileWith("another"));
        QVERIFY(replaceFile(path("another.names"), "1=theirs;\n"));
        QTRY_VERIFY(isTold());
        QVERIFY2(box()->text().startsWith(path("another.names")), qPrintable(box()->text()));
        QTest::keyClick(box(), Qt::Key_Return); // "Load it"
        QTRY_COMPARE(m_window->document().configuration().names.of(1).name, "theirs");
        typeOver(field("txt_gsm_id"), "mine again");
        clickMenu("mnu_Save"); // ours: nobody is to be told of that
        QVERIFY(QFile::remove(path("another.names")));
        QVERIFY(replaceFile(path("unrelated.xml"), "<KTR/>"));
        QTest::qWait(0);
        QVERIFY(box() == nullptr);
    }

    void aFileThatSomebodyElseChangedIsToldOnce()
    {
        const QString file = fileWith("old");
        start({"-load", file});
        const auto box = [this] { return m_window->findChild<QMessageBox *>("box_changedOnDisk"); };
        const auto comeBack = [] {
            QMetaObject::invokeMethod(qApp, "applicationStateChanged",
                                      Q_ARG(Qt::ApplicationState, Qt::ApplicationActive));
        };
        comeBack();
        QVERIFY(box() == nullptr);
        Configuration theirs = m_window->document().configuration();
        theirs.gsm.stationId = "theirs, and longer";
        QVERIFY(writeConfigurationFile(file, theirs, systemEnvironment()));
        comeBack();
        QVERIFY(box() != nullptr && box()->isVisible());
        QTest::keyClick(box(), Qt::Key_Escape);
        QTRY_VERIFY(box() == nullptr);
        comeBack();
        QVERIFY(box() == nullptr);
        theirs.gsm.stationId = "theirs again, and even longer";
        QFile changed(file);
        QVERIFY(writeConfigurationFile(file, theirs, systemEnvironment()));
        QVERIFY(
            changed.open(QIODevice::ReadWrite) &&
            changed.setFileTime(QDateTime::currentDateTime().addSecs(5), QFileDevice::FileModificationTime));
        changed.close();
        comeBack();
        QVERIFY(box() != nullptr);
        QTest::keyClick(box(), Qt::Key_Return); // "Load it"
        QTRY_COMPARE(field("txt_gsm_id")->text(), theirs.gsm.stationId);
        QTRY_VERIFY(box() == nullptr);
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        QTest::keyClick(m_window.get(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(field("txt_gsm_id")->text(), "old");
        QVERIFY(m_window->document().isModified()); // it stands in no file any more
    }

    void whatANewConfigurationReplacesIsKept()
    {
        const QString file = fileWith("old");
        start({file});
        const auto newAndSave = [this](const QString &station) {
            QTest::keyClick(m_window.get(), Qt::Key_N, Qt::ControlModifier);
            QVERIFY(m_window->findChild<QLabel *>("lbl_event")
                        ->toolTip()
                        .endsWith("replaces " + path("old.xml")));
            m_window->tabs().setCurrentIndex(0);
            typeOver(field("txt_gsm_id"), station);
            QTest::keyClick(m_window.get(), Qt::Key_S, Qt::ControlModifier);
        };
        newAndSave("new");
        QCOMPARE(stationIn(file), "new");
        QCOMPARE(stationIn(file + '~'), "old");
        newAndSave("renewed"); // what it replaces now is the program's own
        QCOMPARE(stationIn(file), "renewed");
        QCOMPARE(stationIn(file + '~'), "old");
        typeOver(field("txt_gsm_id"), "newer"); // now it is its own
        clickMenu("mnu_Save");
        QCOMPARE(stationIn(file), "newer");
        QCOMPARE(stationIn(file + '~'), "old");
        // Neither are somebody else's changes since then, however often, nor does one copy cost another.
        for (const char *theirs : {"<KTR>theirs</KTR>", "<KTR>others</KTR>", "<KTR>theirs</KTR>"}) {
            QVERIFY(replaceFile(file, theirs));
            clickMenu("mnu_Save");
            clickMenu("mnu_Save"); // does not hide what the first one told
            QVERIFY2(lastEvent().contains("is kept in " + file + '~'), qPrintable(lastEvent()));
            QCOMPARE(stationIn(file), "newer");
        }
        QCOMPARE(stationIn(file + '~'), "old");
        QCOMPARE(contentOf(file + "~2"), "<KTR>theirs</KTR>");
        QCOMPARE(contentOf(file + "~3"), "<KTR>others</KTR>");
        QVERIFY(!QFile::exists(file + "~4"));
        // What cannot be kept is not written over.
        QVERIFY(QFile::remove(file + '~') && QDir().mkpath(file + "~/in the way"));
        QVERIFY(replaceFile(file, "<KTR>more</KTR>"));
        newAndSave("newest");
        QCOMPARE(contentOf(file), "<KTR>more</KTR>");
        QVERIFY(m_window->document().isModified());
        QVERIFY(
            m_window->findChild<QLabel *>("lbl_event")->toolTip().startsWith("Saving was not successful"));
        m_window->document().setModified(false);
    }

    void editsReplacedByAnotherFileComeBack()
    {
        const QString first = fileWith("first");
        start({"-load", first});
        typeOver(field("txt_gsm_id"), "unsaved");
        const QString second = fileWith("second");
        drop(second);
        QCOMPARE(field("txt_gsm_id")->text(), "second");
        QVERIFY(!m_window->document().isModified());
        QTest::keyClick(m_window.get(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(field("txt_gsm_id")->text(), "unsaved");
        QVERIFY(m_window->document().isModified());
        QCOMPARE(m_window->windowTitle().toLower(), ("KTRconfig  " + first.right(74)).toLower());
        QCOMPARE(m_window->findChildren<QAction *>(QRegularExpression("mnu_recent_\\d")).size(), 2);
        QCOMPARE(lastEvent(), "The present file is " + m_window->document().fileName());
        m_window->document().setFileName(path("other.xml"));
        clickMenu("mnu_Save");
        QCOMPARE(lastEvent(), "Saved: " + path("other.xml"));
        QTest::keyClick(m_window.get(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(lastEvent().toLower(), ("The present file is " + first).toLower());
    }

    void aNewStationLikeTheOneBeforeHasNoFileAndWaitsForItsName()
    {
        const QString file = fileWith("Weir");
        start({"-load", file});
        m_window->tabs().setCurrentIndex(2);
        QTest::keyClick(m_window.get(), Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
        QVERIFY(field("txt_gsm_id")->hasFocus() && field("txt_gsm_id")->text().isEmpty());
        QTest::keyClicks(field("txt_gsm_id"), "Mill");
        QVERIFY(m_window->document().fileName().isEmpty());
        // Beside a file that has its MAC address it is told, as soon as it has a place.
        Configuration other = m_window->document().configuration();
        other.gsm.stationId = "Bridge";
        QVERIFY(writeConfigurationFile(path("bridge.xml"), other, systemEnvironment()));
        m_window->document().setFileName(path("mill.xml"));
        clickMenu("mnu_Save");
        QCOMPARE(stationIn(path("mill.xml")), "Mill");
        QCOMPARE(stationIn(file), "Weir");
        const auto told = [this] {
            const auto *list = m_window->findChild<QListWidget *>("lst_problems");
            return list != nullptr && !list->findItems("bridge.xml", Qt::MatchContains).isEmpty();
        };
        QTRY_VERIFY(told());
    }

    void undoGoesBackThroughNewAndTyping()
    {
        start({"-load", fileWith("kept")});
        typeOver(field("txt_gsm_id"), "typed");
        QTest::keyClick(m_window.get(), Qt::Key_N, Qt::ControlModifier);
        QCOMPARE(field("txt_gsm_id")->text(), "");
        QVERIFY(m_window->document().isModified()); // "new" leaves the mark as it is
        m_window->tabs().setCurrentIndex(0);
        field("txt_gsm_id")->setFocus();
        QTest::keyClick(field("txt_gsm_id"), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(field("txt_gsm_id")->text(), "typed");
        QCOMPARE(lastEvent(), "The present file is " + m_window->document().fileName());
        QTest::keyClick(field("txt_gsm_id"), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(field("txt_gsm_id")->text(), "kept");
        QVERIFY(!m_window->document().isModified());
        QTest::keyClick(m_window.get(), Qt::Key_Y, Qt::ControlModifier);
        QCOMPARE(field("txt_gsm_id")->text(), "typed");
    }

    void theLanguageChangesWhileRunning()
    {
        start({});
        chooseLanguage("optLanguage_1");
        QCOMPARE(m_window->tabs().tabText(2), "Grenzwert");
        QCOMPARE(plain(action("mnu_undo")), QStringLiteral("Rückgängig"));
        QCOMPARE(MRegistry::GetRegistryString("hkey_current_user", program, "Language"), "deutsch");
    }

    void whatWasToldInAnotherLanguageIsToldAnewOrGoes()
    {
        m_ports = {"COM1"};
        start({"-deutsch"});
        QCOMPARE(QLocale().decimalPoint(), ","); // whatever the system's is
        QCOMPARE(m_window->locale().decimalPoint(), ",");
        clickMenu("mnu_verbindung_seriell");
        QVERIFY2(lastEvent().contains("gesucht"), qPrintable(lastEvent()));
        chooseLanguage("optLanguage_0");
        QVERIFY2(lastEvent().startsWith("Looking for the module"), qPrintable(lastEvent()));
        QCOMPARE(m_window->locale().decimalPoint(), ".");
        clickMenu("mnu_verbindung_offline");
        chooseLanguage("optLanguage_1");
        QVERIFY2(lastEvent().isEmpty(), qPrintable(lastEvent()));
    }

    void theOperationalModeThatIsOpenedAtOnceStandsWhereItStood()
    {
        const QPoint place(37, 43);
        start({"-operational"});
        operationalMode()->move(place);
        operationalMode()->close();
        QTRY_VERIFY(operationalMode() == nullptr);
        m_window.reset();
        start({"-operational"});
        QCOMPARE(operationalMode()->pos(), place);
    }

    /// What is shown after a switch is what a start in that language shows.
    void nothingStaysInTheOtherLanguage_data()
    {
        QTest::addColumn<int>("steps");
        QTest::newRow("before the first step") << 0;
        QTest::newRow("while it is transmitted") << 10;
        QTest::newRow("afterwards") << 100;
    }
    void nothingStaysInTheOtherLanguage()
    {
        QFETCH(int, steps);
        m_ports = {"COM1"};
        const auto work = [this, steps](const QString &language) {
            start({language});
            QTRY_COMPARE(m_window->findChildren<Page *>().size(), m_window->tabs().count());
            QTest::keyClick(m_window.get(), Qt::Key_F8);
            typeOver(field("txt_gsm_pin"), "12x4");
            Q_EMIT m_line->received("at+cpin?\r");
            QTest::keyClick(m_window.get(), Qt::Key_F5);
            for (int i = 0; i < steps; ++i) {
                Q_EMIT m_line->received("at+cmgr=1\r");
            }
            QTRY_VERIFY(control<QListWidget>(*m_window, "lst_problems")->count() > 0);
        };
        work("-deutsch");
        const QStringList wanted = shownTexts();
        m_window.reset();
        SettingsStore().SaveSetting(settings, "Connection", "port", {}); // it would be proposed
        m_line = std::make_unique<SilentLine>();
        work("-english");
        // cppcheck-suppress nullPointer ; work() has made another one
        const auto *events = control<QPlainTextEdit>(*m_window, "txt_connection_events");
        const QString told = events->toPlainText();
        QVERIFY(told.contains("Waiting until the module reads its SMS") && !lastEvent().isEmpty());
        chooseLanguage("optLanguage_1");
        QTRY_VERIFY(m_window->findChild<QDialog *>() == nullptr);
        QStringList old = shownTexts();
        old.removeIf([&wanted](const QString &text) { return wanted.contains(text); });
        QVERIFY2(old.isEmpty(), qPrintable(old.join(u'\n')));
        QVERIFY(events->toPlainText().startsWith(told) && !lastEvent().isEmpty());
    }

    void aLanguageSwitchKeepsWhatWasTypedAndChosen()
    {
        QVERIFY(replaceFile(path("nodes.xml"), "<KTR><item1 key=\"Works 4\" text=\"Works 4\"/></KTR>"));
        start({});
        QTRY_COMPARE(m_window->findChildren<Page *>().size(), m_window->tabs().count());
        clickMenu("mnu_betriebsmodus");
        QList<QWidget *> controls = m_window->findChildren<QWidget *>();
        controls += operationalMode()->findChildren<QWidget *>();
        for (QWidget *control : controls) {
            auto *edit = qobject_cast<QLineEdit *>(control);
            auto *box = qobject_cast<QComboBox *>(control);
            if (edit != nullptr && !edit->isReadOnly()) {
                edit->selectAll();
                edit->insert("7");
            } else if (box != nullptr && !box->isEditable() && box->isEnabled()) {
                box->setCurrentIndex(box->count() - 1);
            }
        }
        const auto *tree = operationalMode()->findChild<QTreeView *>("TreeView_KTR_Nodes");
        QTRY_VERIFY(tree->isRowHidden(0, {})); // no name has a 7, and what is hidden is chosen no more
        m_window->tabs().setCurrentIndex(7);
        const auto state = [&controls] {
            QStringList texts;
            for (const QWidget *control : controls) {
                for (const char *name : {"currentIndex", "checked", "value"}) {
                    texts += control->objectName() + u' ' + control->property(name).toString();
                }
                const auto *edit = qobject_cast<const QLineEdit *>(control);
                texts += edit != nullptr && !edit->isReadOnly() ? edit->text() : QString();
            }
            return texts;
        };
        const QStringList before = state();
        QVERIFY(before.count("7") > 60);
        for (const char *language : {"optLanguage_1", "optLanguage_0"}) {
            chooseLanguage(language);
            QTRY_VERIFY(m_window->findChild<QDialog *>() == nullptr);
            QCOMPARE(state(), before);
        }
    }

    void nothingIsCutOffInASmallWindow_data()
    {
        QTest::addColumn<QString>("language");
        QTest::newRow("English") << "-english";
        QTest::newRow("German") << "-deutsch";
    }
    void nothingIsCutOffInASmallWindow()
    {
        QFETCH(QString, language);
        applyAppearance(*qApp, Appearance::Light);
        start({language, "-load", KTR_SOURCE_DIR "/samples/pumping-station.xml"});
        QTRY_COMPARE(m_window->findChildren<Page *>().size(), m_window->tabs().count());
        m_window->document().adjust([this](Configuration &changed) {
            changed.info.logFile = path("log.txt");
            for (int day = 1; changed.holidays.add(QDate(2028, 1, day)) == HolidayList::Added::Yes; ++day) {
            }
        });
        Q_EMIT m_line->received("at+cmgs=\"+IP\"\rV,2.1.5,2026-11-22 10:16:05,KTR\x1A");
        m_window->resize(1024, 700);
        QStringList cut;
        for (int page = 0; page < pageCount; ++page) {
            m_window->tabs().setCurrentIndex(page);
            QCoreApplication::processEvents(); // all layouts are done
            cut += cutOff();
        }
        QVERIFY2(cut.isEmpty(), qPrintable(cut.join(u'\n')));
    }

    void aClickOnAProblemGoesToItsField()
    {
        start({});
        m_window->document().adjust([](Configuration &changed) {
            changed.gsm.stationId = "Werk 7";
            changed.gsm.aliveCycle = "0";
            changed.ethernet.mac5 = "01";
        });
        typeOver(field("txt_gsm_pin"), "12x4");
        m_window->tabs().setCurrentIndex(5);
        QTest::keyClick(m_window.get(), Qt::Key_F8);
        auto *list = control<QListWidget>(*m_window, "lst_problems");
        QTRY_COMPARE(list->count(), 1);
        QVERIFY(!list->item(0)->text().contains("12x4")); // a PIN is shown in its field alone
        QVERIFY(list->item(0)->text().contains("\"****\""));
        m_window->document().adjust([](Configuration &changed) { changed.gsm.pin = "12"; });
        QTRY_VERIFY(list->item(0)->text().contains("\"**\""));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(0)).center());
        QCOMPARE(m_window->tabs().currentIndex(), 0);
        QCOMPARE(m_window->focusWidget(), field("txt_gsm_pin"));
        typeOver(field("txt_gsm_pin"), "1234");
        QTRY_COMPARE(list->count(), 0);
    }

    void whatAnUndoneStepToldIsTakenBackInTheStatusBar()
    {
        start({});
        m_window->document().adjust([](Configuration &changed) {
            changed.limitValues[0] = {9, "high", "80", "0", "0", 3, 255, 0, 0, "30"};
            changed.limitValues[1] = {1, "door", "1", "0", "0", 2, 255, 0, 0, "30"};
        });
        m_window->tabs().goTo({"Txt_gw_gw", 0});
        auto *list = control<QTableView>(*m_window, "Tbl_gw");
        list->setFocus();
        QTest::keySequence(list, QKeySequence::Copy);
        QTest::keyClick(list, Qt::Key_Down);
        QTest::keySequence(list, QKeySequence::Paste);
        const QString pasted = "Pasted: LV 2, in place of 1 DigIn 1 = 1, \"door\"";
        QCOMPARE(lastEvent(), pasted + ". Ctrl+Z takes it back");
        clickMenu("mnu_undo");
        QCOMPARE(lastEvent(), "Taken back: " + pasted);
        clickMenu("mnu_redo");
        QCOMPARE(lastEvent(), "Done again: " + pasted);
    }

    void keysThatSwitchPagesLeadToAField()
    {
        start({});
        m_window->document().adjust([](Configuration &changed) {
            changed.gsm.pin = "12x4";
            changed.switchPoints[2] = {1, 15, "no date", "0", "1", 0}; // whose start is hidden
        });
        while (m_window->tabs().buildNext()) {
        }
        PageTabs &tabs = m_window->tabs();
        const auto inPage = [&tabs, this] {
            return tabs.currentWidget()->isAncestorOf(m_window->focusWidget());
        };
        auto *list = control<QListWidget>(*m_window, "lst_problems");
        for (const auto &[key, modifiers] :
             QList<QPair<Qt::Key, Qt::KeyboardModifiers>>{{Qt::Key_PageDown, Qt::ControlModifier},
                                                          {Qt::Key_PageUp, Qt::ControlModifier},
                                                          {Qt::Key_Tab, Qt::ControlModifier}}) {
            for (int page = 0; page < 9; ++page) {
                list->setFocus(); // not in the page
                const int before = tabs.currentIndex();
                QTest::keyClick(m_window.get(), key, modifiers);
                QVERIFY(tabs.currentIndex() != before);
                QVERIFY2(inPage(), qPrintable(tabs.tabText(tabs.currentIndex())));
            }
        }
        QTest::keyClick(m_window.get(), Qt::Key_F8);
        QVERIFY(list->hasFocus());
        QTest::keyClick(list, Qt::Key_Return);
        QCOMPARE(m_window->focusWidget(), field("txt_gsm_pin"));
        typeOver(field("txt_gsm_pin"), "1234");
        QTest::keyClick(m_window.get(), Qt::Key_F8);
        QVERIFY(field("txt_gsm_pin")->hasFocus());
        QTest::keyClick(m_window.get(), Qt::Key_F8); // of what is left
        QVERIFY(list->hasFocus());
        QTest::keyClick(m_window.get(), Qt::Key_F8);
        QVERIFY(field("txt_gsm_pin")->hasFocus());
        tabs.goTo({"Txt_swtch_start", 2});
        QCOMPARE(tabs.currentIndex(), 3);
        QVERIFY(inPage());
        list->setFocus();
        QTest::keyClick(m_window.get(), Qt::Key_PageDown, Qt::AltModifier);
        QVERIFY(inPage());
        tabs.goTo({"Txt_swtch_wert", 2});
        QTest::keyClick(m_window.get(), Qt::Key_PageDown, Qt::AltModifier);
        QVERIFY(field("Txt_swtch_wert")->hasFocus()); // the same field of the next entry
    }

    void problemsKeepTheirPlaceWhenOthersComeAndGo()
    {
        start({});
        m_window->document().adjust([](Configuration &changed) {
            for (std::size_t entry = 0; entry < 12; ++entry) {
                changed.limitValues[entry] = {5, "x", "no number", "no number", "0", 3, 1, 0, 0, "30"};
            }
        });
        QTest::keyClick(m_window.get(), Qt::Key_F8);
        auto *list = control<QListWidget>(*m_window, "lst_problems");
        QTRY_VERIFY2(list->count() > 16, qPrintable(QString::number(list->count())));
        list->setCurrentRow(15);
        const QString chosen = list->currentItem()->text();
        const int top = list->visualItemRect(list->currentItem()).top();
        m_window->document().adjust([](Configuration &changed) { changed.gsm.pin = "12x4"; });
        QTRY_VERIFY(list->item(0)->text().contains("****"));
        QCOMPARE(list->currentItem()->text(), chosen);
        QCOMPARE(list->visualItemRect(list->currentItem()).top(), top);
    }

    void captionsOfAListInAnotherLanguageAreShownInThePresentOneAndKeptInTheFile()
    {
        const QByteArray caption = " key=\"Works 4/meldung\" text=\"Meldungen\" ForeColor=\"255\"/>";
        QVERIFY(
            replaceFile(path("nodes.xml"), "<KTR><item1 key=\"Works 4\" text=\"Works 4\" ForeColor=\"255\"/>"
                                           "<item2" +
                                               caption + "</KTR>"));
        start({});
        clickMenu("mnu_betriebsmodus");
        auto *tree = operationalMode()->findChild<QAbstractItemView *>("TreeView_KTR_Nodes")->model();
        QCOMPARE(tree->index(0, 0, tree->index(0, 0)).data(), "Notifications");
        m_window->close();
        QTRY_VERIFY(operationalMode() == nullptr);
        QByteArray file;
        QVERIFY(readFile(path("nodes.xml"), file, 10'000));
        QVERIFY2(file.contains("<item2" + caption), file.constData());
    }

    void problemsOfGroupsAndEntriesAreReachedAndNothingIsCutOff()
    {
        start({});
        chooseLanguage("optLanguage_1");
        m_window->document().edit([](Configuration &configuration) {
            configuration.gsm.stationId = "Werk 7";
            configuration.gsm.aliveCycle = "0";
            LimitValue &value = configuration.limitValues[8];
            value = {5, "x", "1", "0", "0", 3, 0, 0, 0, "30"};
            value.alarm = QStringLiteral("Störung der Pumpe: ") + QString(100, u'n');
        });
        QTest::keyClick(m_window.get(), Qt::Key_F8);
        auto *list = control<QListWidget>(*m_window, "lst_problems");
        QTRY_COMPARE(list->count(), 3);
        QVERIFY(list->item(1)->text().startsWith("Grenzwert 9, Vergleich: "));
        for (int row = 0; row < list->count(); ++row) {
            const QRect shown = list->visualItemRect(list->item(row));
            const QRect needed = list->fontMetrics().boundingRect(
                shown.adjusted(24, 0, -8, 1000), Qt::TextWrapAnywhere, list->item(row)->text());
            QVERIFY(shown.right() <= list->viewport()->width());
            QVERIFY(shown.height() >= needed.height());
        }
        list->scrollToItem(list->item(1));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(1)).center());
        QCOMPARE(m_window->tabs().currentIndex(), 2);
        QCOMPARE(m_window->focusWidget()->objectName(), "Opt_gw_vergleich_3");
    }

    void aClickSelectsANumberAndASecondPlacesTheCaret()
    {
        start({});
        Configuration filled = m_window->document().configuration();
        for (std::size_t i = 0; i < filled.digitalInputs.size(); ++i) {
            filled.digitalInputs[i].countsPulses = filled.digitalInputs[i].countsHours = true;
        }
        filled.switchPoints[0].type = 14; // or there is no period
        QStringList names;
        visitRecords(filled, [&names]<class Record>(const Group &, Record &record, int index) {
            for (const auto &field : fieldsOf<Record>()) {
                if (field.isNumber() && field.appliesTo(index)) {
                    setFieldText(field, record, "12");
                    names += field.control.forIndex(index);
                }
            }
        });
        m_window->document().adjust([&filled](Configuration &configuration) { configuration = filled; });
        names.removeDuplicates();
        QVERIFY(names.size() > 60);
        for (int page = 0; page < pageCount; ++page) {
            m_window->tabs().setCurrentIndex(page);
            for (const QString &name : QStringList(names)) {
                auto *edit = m_window->tabs().currentWidget()->findChild<QLineEdit *>(name);
                if (edit == nullptr) {
                    continue;
                }
                names.removeOne(name);
                QVERIFY2(edit->isVisible() && edit->isEnabled(), qPrintable(name));
                m_window->setFocus();
                QTest::mouseClick(edit, Qt::LeftButton);
                QTRY_COMPARE(edit->selectedText(), "12");
                QTest::mouseClick(edit, Qt::LeftButton);
                QVERIFY2(!edit->hasSelectedText(), qPrintable(name));
            }
        }
        QCOMPARE(names, QStringList());
    }

    void aStationOfTheOperationalModeIsLentForItsConfigurationAndTakenBack()
    {
        QVERIFY(replaceFile(path("nodes.xml"),
                            "<KTR><item1 hostAddress=\"10.0.0.7\" online=\"-1\" key=\"Works 4\" "
                            "text=\"Works 4\" ForeColor=\"-2147483640\"/></KTR>"));
        start({});
        clickMenu("mnu_betriebsmodus");
        QVERIFY(!m_window->isVisible());
        QWidget *mode = operationalMode();
        QVERIFY(mode != nullptr && QTest::qWaitForWindowActive(mode));
        QCOMPARE(m_stationLine->opened, QStringList("10.0.0.7"));

        QStringList texts;
        const auto answerNext = [&](const QString &button) {
            QTimer::singleShot(0, this, [&texts, button] {
                QWidget *question = QApplication::activeModalWidget();
                QVERIFY(question != nullptr);
                texts += control<QLabel>(*question, "Label_msg")->text();
                QTest::mouseClick(control<QPushButton>(*question, button), Qt::LeftButton);
            });
        };
        auto *configure = mode->findChild<QAction *>("mnu_konfiguration");
        answerNext("CancelButton");
        configure->trigger();
        QVERIFY(!m_window->isVisible() && m_network.opened.isEmpty() && m_stationLine->isOpen());
        answerNext("OKButton");
        configure->trigger();
        QCOMPARE(m_network.opened, QStringList("10.0.0.7"));
        QVERIFY(!m_stationLine->isOpen());
        QVERIFY(texts.last().startsWith("Works 4 has a active connection in Operational Mode.\n"
                                        "The Connection in Operational Mode will now be closed.\n"));
        QVERIFY(texts.last().contains("alarms do not arrive"));
        QTest::qWait(0);
        QVERIFY(!m_stationLine->isOpen());
        clickMenu("mnu_verbindung_offline");
        QTRY_VERIFY(m_stationLine->isOpen());

        // Whoever closes it is told, and stays told, that nobody watches.
        const auto *unwatched = m_window->findChild<QWidget *>("cmd_unwatched");
        answerNext("OKButton");
        operationalMode()->close();
        QVERIFY(texts.last().contains("Nobody watches"));
        QTRY_VERIFY(operationalMode() == nullptr && m_window->isVisible() && unwatched->isVisible());
        clickMenu("mnu_betriebsmodus");
        QVERIFY(unwatched->isHidden());
        answerNext("CancelButton");
        m_window->close();
        QVERIFY(operationalMode() != nullptr);
        answerNext("OKButton");
        m_window->close();
        QTRY_VERIFY(operationalMode() == nullptr);
        QVERIFY(!QFileInfo::exists(path("nodes.journal")));
    }

    void theFileOfAStationIsOpenedWithItsConfiguration()
    {
        QVERIFY(replaceFile(path("nodes.xml"),
                            "<KTR><item1 hostAddress=\"10.0.0.7\" online=\"0\" key=\"Works 4\" "
                            "text=\"Works 4\" ForeColor=\"-2147483640\"/></KTR>"));
        const QString edited = fileWith("edited");
        const QString own = fileWith("Works 4");
        start({edited});
        clickMenu("mnu_betriebsmodus");
        QWidget *mode = operationalMode();
        QVERIFY(mode != nullptr && QTest::qWaitForWindowActive(mode));
        const auto *shown = mode->findChild<QLabel *>("lbl_pic0_configuration");
        QTRY_VERIFY2(shown->text().startsWith("works-4.xml"), qPrintable(shown->text()));
        m_window->document().edit([](Configuration &changed) { changed.info.author = "Nobody"; });
        QTimer::singleShot(0, this, [] {
            auto *question = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            QVERIFY(question != nullptr);
            question->button(QMessageBox::Yes)->click();
        });
        mode->findChild<QAction *>("mnu_konfiguration")->trigger();
        QCOMPARE(m_network.opened, QStringList("10.0.0.7"));
        QCOMPARE(m_window->document().configuration().gsm.stationId, "Works 4");
        QVERIFY(contentOf(edited).contains("Nobody"));
        QVERIFY(!m_window->document().isModified());
    }

    void whatTheOperationalModeAsksIsTakenBackWhenTheSystemEndsTheProgram_data()
    {
        QTest::addColumn<QString>("asking");
        for (const auto *name : {"mnu_station_del", "mnu_station_list", "mnu_export", "mnu_retention",
                                 "mnu_maintenance", "mnu_rules", "mnu_limits"}) {
            QTest::newRow(name) << QString(name);
        }
    }
    void whatTheOperationalModeAsksIsTakenBackWhenTheSystemEndsTheProgram()
    {
        QFETCH(QString, asking);
        QVERIFY(replaceFile(path("nodes.xml"),
                            "<KTR><item1 hostAddress=\"10.0.0.7\" online=\"-1\" key=\"Works 4\" "
                            "text=\"Works 4\" ForeColor=\"-2147483640\"/></KTR>"));
        start({"-operational"});
        auto *tree = operationalMode()->findChild<QAbstractItemView *>("TreeView_KTR_Nodes");
        QTRY_VERIFY(tree->model()->rowCount() > 0);
        tree->setCurrentIndex(tree->model()->index(0, 0));
        const QSignalSpy closed(m_window.get(), &FormMain::closed);
        bool wasAsked = false;
        QTimer::singleShot(0, this, [&] {
            wasAsked = QApplication::activeModalWidget() != nullptr;
            m_window->endOnRequest();
        });
        operationalMode()->findChild<QAction *>(asking)->trigger();
        QTRY_COMPARE(closed.size(), 1);
        QVERIFY(wasAsked && operationalMode() == nullptr);
        QByteArray file;
        QVERIFY(readFile(path("nodes.xml"), file, 10'000));
        QVERIFY2(file.contains("10.0.0.7") && !QFileInfo::exists(path("nodes.journal")), file.constData());
    }

    void aFirmwareImageIsShownBeforeItIsAnnounced()
    {
        m_ports = {"/dev/ttyUSB0"};
        start({});
        clickMenu("mnu_doApplication");
        QTRY_VERIFY(control<QLabel>(*m_window, "Label_msg")->text().contains("upgrade.bin"));
        QVERIFY(replaceFile(path("upgrade.bin"), QByteArray(1000, 'x')));
        QString asked;
        QTimer::singleShot(0, this, [&] {
            const QWidget *question = QApplication::activeModalWidget();
            QVERIFY(question != nullptr);
            asked = control<QLabel>(*question, "Label_msg")->text();
            QTest::mouseClick(control<QPushButton>(*question, "OKButton"), Qt::LeftButton);
        });
        clickMenu("mnu_doApplication");
        QVERIFY2(asked.contains("1000 bytes, filled up to 43008"), qPrintable(asked));
        QVERIFY(!m_line->sent.contains("\xA7"
                                       "88"));
        Q_EMIT m_line->received("at+cmgr=1\r");
        QVERIFY(m_line->sent.contains("\xA7"
                                      "88\r\n"));
    }

    void nothingIsSentOverAnotherLineThanIsShown()
    {
        m_ports = {"COM1", "COM2"};
        start({"-load", fileWith("Werk 7")});
        m_window->tabs().page(PageIndex::Connection);
        m_window->tabs().setCurrentIndex(static_cast<int>(PageIndex::Connection));
        auto *ports = control<QComboBox>(*m_window, "Cmb_connection_port");
        const auto *panel = m_window->findChild<QProgressBar *>("ProgressBar1");
        QVERIFY(panel != nullptr);
        QCOMPARE(m_line->opened, QStringList("COM1"));
        typeOver(ports->lineEdit(), "COM2"); // and neither Enter nor Connect
        QTest::keyClick(m_window.get(), Qt::Key_F5);
        QCOMPARE(m_line->opened, QStringList({"COM1", "COM2"}));
        Q_EMIT m_line->received("at+cmgr=1\r");
        QTRY_VERIFY(m_line->sent.contains("V,\xA7\r\n"));
        clickMenu("mnu_verbindung_offline");
        clickMenu("mnu_verbindung_seriell"); // the search again
        Q_EMIT m_line->received("at+cpin?\r");

        typeOver(ports->lineEdit(), "COM8"); // there is none
        m_line->sent.clear();
        QTest::keyClick(m_window.get(), Qt::Key_F5);
        QVERIFY2(shownMessages().join(u' ').contains("COM8"), qPrintable(shownMessages().join(u' ')));
        Q_EMIT m_line->received("at+cmgr=1\r");
        QVERIFY(!m_line->sent.contains("V,"));

        clickMenu("mnu_verbindung_offline"); // and where none was open
        typeOver(ports->lineEdit(), "COM2");
        QTest::keyClick(m_window.get(), Qt::Key_F5);
        QCOMPARE(m_line->opened.last(), "COM2");
        Q_EMIT m_line->received("at+cmgr=1\r");
        QTRY_VERIFY(m_line->sent.contains("V,"));

        // Over the network likewise; over which of both is for the user to say.
        QTest::mouseClick(control<QPushButton>(*m_window, "cmd_connection_ethernet"), Qt::LeftButton);
        QVERIFY(m_network.isOpen());
        auto *address = field("Txt_connection_address");
        typeOver(address, "127.0.0.9");
        QTest::keyClick(m_window.get(), Qt::Key_F5);
        QCOMPARE(m_network.opened.last(), "127.0.0.9");
        clickMenu("mnu_verbindung_seriell");
        typeOver(address, "127.0.0.10");
        const qsizetype opened = m_network.opened.size();
        QTest::keyClick(m_window.get(), Qt::Key_F5);
        QCOMPARE(m_network.opened.size(), opened);
        QVERIFY2(shownMessages().join(u' ').contains("127.0.0.10"), qPrintable(shownMessages().join(u' ')));
    }

    void transmittingWithoutAConnectionSaysSo()
    {
        start({});
        QTest::keyClick(m_window.get(), Qt::Key_F5);
        QTRY_COMPARE(control<QLabel>(*m_window, "Label_msg")->text(), "Please establish a connection");
    }

    void theMessageLeadsToTheConnectionAndTheLastPortComesBack()
    {
        m_ports = {"COM7"};
        start({});
        clickMenu("mnu_verbindung_offline");
        QTest::keyClick(m_window.get(), Qt::Key_F5);
        auto *remedy = m_window->findChild<QPushButton *>("cmd_msg_remedy");
        QVERIFY(remedy != nullptr && QTest::qWaitForWindowActive(remedy->window()));
        QTest::keyClick(remedy, Qt::Key_Space);
        QCOMPARE(m_window->tabs().currentIndex(), static_cast<int>(PageIndex::Connection));
        auto *ports = control<QComboBox>(*m_window, "Cmb_connection_port");
        QVERIFY(m_window->focusWidget() == ports || m_window->focusWidget() == ports->lineEdit());
        QTRY_VERIFY(shownMessages().isEmpty());
        QTest::keyClick(ports, Qt::Key_Down);
        QTest::mouseClick(control<QPushButton>(*m_window, "cmd_connection_serial"), Qt::LeftButton);
        QCOMPARE(m_line->opened.last(), "COM7");

        // Nothing goes over the wire unasked.
        QCOMPARE(m_line->sent, "");
        Q_EMIT m_line->received("at+cmgr=1\r");
        QCOMPARE(m_line->sent, "at+cmgr=1\r\nOK\r\n");
        QTest::mouseClick(control<QPushButton>(*m_window, "cmd_task_version"), Qt::LeftButton);
        Q_EMIT m_line->received("at+cmgr=1\r");
        QVERIFY(m_line->sent.contains("V,\xA7\r\n"));
        Q_EMIT m_line->received("at+cmgs=\"+IP\"\rV,2.1.5,theirs,KTR\x1A");
        QCOMPARE(control<QLabel>(*m_window, "lbl_task_version")->text(),
                 "application 2.1.05, configuration theirs");

        m_window.reset();
        m_ports = {"COM6", "COM7"};
        start({});
        m_window->tabs().setCurrentIndex(static_cast<int>(PageIndex::Connection));
        QCOMPARE(control<QComboBox>(*m_window, "Cmb_connection_port")->currentText(), "COM7");
        QCOMPARE(m_line->opened.last(), "COM6"); // the first one, as ever
    }

    void keysGoToTheNextEntry()
    {
        start({});
        QTest::keyClick(m_window.get(), Qt::Key_PageDown, Qt::AltModifier); // a page without entries
        m_window->tabs().setCurrentIndex(static_cast<int>(PageIndex::LimitValues));
        auto *limit = field("Txt_gw_gw");
        const auto *entry = control<QScrollBar>(*m_window, "Scr_gw");
        limit->setFocus();
        QTest::keyClick(limit, Qt::Key_PageDown, Qt::AltModifier);
        QTest::keyClick(limit, Qt::Key_PageDown, Qt::AltModifier);
        QCOMPARE(entry->value(), 2);
        QVERIFY(limit->hasFocus());
        typeOver(limit, "4");
        QTest::keyClick(limit, Qt::Key_PageUp, Qt::AltModifier);
        QCOMPARE(entry->value(), 1);
        QCOMPARE(m_window->document().configuration().limitValues[2].limit, "4");
        QTest::keyClick(limit, Qt::Key_PageUp, Qt::AltModifier);
        QTest::keyClick(limit, Qt::Key_PageUp, Qt::AltModifier);
        QCOMPARE(entry->value(), 0);
        m_window->document().setModified(false);
    }

    /// One that broke off and went on is one transmission.
    void whatIsTransmittedIsRemembered()
    {
        m_dataFolder = path("data");
        m_ports = {"COM1"};
        const QString file = fileWith("Werk 7");
        start({"-load", file});
        clickMenu("mnu_doConfig");
        QTRY_VERIFY(control<QPushButton>(*m_window, "cmd_transmission_cancel")->isVisible());
        const auto read = [this] { Q_EMIT m_line->received("at+cmgr=1\r"); };
        read();
        Q_EMIT m_line->received("at+cmgs=\"+IP\"\r");
        Q_EMIT m_line->received("V,2.1.05,of before,KTR\x1A");
        read();
        QTRY_COMPARE_WITH_TIMEOUT(remembered().steps.size(), 2, longestWrite);
        QCOMPARE(remembered().row.verdict, TransmissionVerdict::NotEnded);
        QTRY_VERIFY(QApplication::activeModalWidget() ==
                    nullptr); // the versions differ, which is told beside
        control<QPushButton>(*m_window, "cmd_transmission_cancel")->click();
        QTRY_COMPARE_WITH_TIMEOUT(remembered().row.verdict, TransmissionVerdict::BrokenOff, longestWrite);
        QCOMPARE(remembered().row.resumeStep, 1);
        control<QPushButton>(*m_window, "cmd_transmission_resume")->click();
        while (control<QPushButton>(*m_window, "cmd_transmission_cancel")->isVisible()) {
            read();
        }
        QTRY_COMPARE_WITH_TIMEOUT(remembered().row.verdict, TransmissionVerdict::Whole, longestWrite);
        QVERIFY(control<QPushButton>(*m_window, "cmd_transmission_receipt")->isVisible());
        const RememberedTransmission whole = remembered();
        QCOMPARE(whole.row.id, 1);
        QCOMPARE(whole.row.station, "Werk 7");
        QCOMPARE(whole.row.file, file);
        QCOMPARE(whole.row.line, "COM1");
        QCOMPARE(whole.row.versionBefore, QString("of before"));
        QCOMPARE(whole.steps.size(), steps::last + 1);
        Configuration sent;
        QVERIFY(readConfiguration(whole.row.configuration.toUtf8(), sent, fixedEnvironment()).document);
        QCOMPARE(sent.gsm.stationId, "Werk 7");
    }

    void onlyChangesAndOnlyOneEntryAreTransmitted()
    {
        m_dataFolder = path("data");
        m_ports = {"COM1"};
        start({});
        auto *cancel = control<QPushButton>(*m_window, "cmd_transmission_cancel");
        const auto read = [this] { Q_EMIT m_line->received("at+cmgr=1\r"); };
        const auto tell = [this](const QByteArray &version) {
            Q_EMIT m_line->received("at+cmgs=\"+IP\"\r");
            Q_EMIT m_line->received("V,2.1.05," + version + ",KTR\x1A");
        };
        QAction *changes = action("mnu_doChanges");
        QVERIFY(!changes->isEnabled());
        m_window->document().edit([](Configuration &c) {
            c.gsm.stationId = "Werk 7";
            c.versionText = "ignored";
        });
        QTest::keyClick(m_window.get(), Qt::Key_F5);
        QTRY_VERIFY(cancel->isVisible());
        while (cancel->isVisible()) {
            read();
        }
        // It was given this version; nothing differs, until something is edited.
        const QByteArray given = m_window->document().configuration().versionText.toLatin1();
        QTRY_COMPARE(plain(changes), "Changes (0 commands)");
        QVERIFY(!changes->isEnabled());
        m_window->document().adjust([](Configuration &c) { // the clock of the test stands
            c.limitValues[4].delay = "77";
            c.versionText = "2026-12-24 18:00:00";
        });
        QTRY_VERIFY(changes->isEnabled());
        QCOMPARE(changes->iconText(), "Transmit changes (1 command)");
        m_line->sent.clear();
        QTest::keyClick(m_window.get(), Qt::Key_F5, Qt::ShiftModifier);
        QTRY_VERIFY(cancel->isVisible());
        QVERIFY(!changes->isEnabled());
        read();
        tell(given);
        while (cancel->isVisible()) {
            read();
        }
        QVERIFY(m_line->sent.contains("g,5,1,0,30,0,0,0,77,") &&
                m_line->sent.contains("v,2026-12-24 18:00:00"));
        QCOMPARE(m_line->sent.count(",\"+IP\"\r\n"), 4); // version, limit value, clock, closing
        QTRY_COMPARE(plain(changes), "Changes (0 commands)");

        // One that tells something else is given nothing.
        m_window->document().adjust([](Configuration &c) { c.limitValues[4].delay = "78"; });
        QTRY_VERIFY(changes->isEnabled());
        m_line->sent.clear();
        changes->trigger();
        QTRY_VERIFY(cancel->isVisible());
        read();
        tell("2001-01-01 00:00:00");
        QVERIFY(!cancel->isVisible());
        read();
        QCOMPARE(m_line->sent.count(",\"+IP\"\r\n"), 1);
        QVERIFY(control<QLabel>(*m_window, "lbl_transmission_detail")->text().contains("2001-01-01"));
        QTRY_COMPARE(plain(changes), "Changes");
        QVERIFY(!changes->isEnabled());

        m_window->tabs().goTo({"Txt_gw_delay", 4});
        m_line->sent.clear();
        clickMenu("mnu_doEntry"); // a message about the versions has the focus
        QTRY_VERIFY(cancel->isVisible());
        read();
        QVERIFY(!cancel->isVisible());
        QVERIFY(m_line->sent.contains("g,5,1,0,30,0,0,0,78,"));
        QCOMPARE(m_line->sent.count(",\"+IP\"\r\n"), 1);
        QVERIFY(control<QLabel>(*m_window, "lbl_transmission")->text().contains("no longer fits"));
        m_window->document().setModified(false);
    }

    void aMemoryThatCannotBeWrittenIsToldAndStopsNothing()
    {
        m_dataFolder = path("data");
        QVERIFY(writeFile(m_dataFolder, "a file"));
        m_ports = {"COM1"};
        start({});
        clickMenu("mnu_doConfig");
        QTRY_VERIFY2(lastEvent().startsWith("The transmission is not remembered: "), qPrintable(lastEvent()));
        while (control<QPushButton>(*m_window, "cmd_transmission_cancel")->isVisible()) {
            Q_EMIT m_line->received("at+cmgr=1\r");
        }
        QVERIFY(m_line->sent.contains("\r\nv,"));
    }

    void aDamagedMemoryIsToldAndKeptAside()
    {
        m_dataFolder = path("data");
        QVERIFY(QDir().mkpath(m_dataFolder));
        QVERIFY(writeFile(m_dataFolder + "/transmissions.sqlite", "no database, but some bytes"));
        m_ports = {"COM1"};
        start({});
        clickMenu("mnu_doConfig");
        QTRY_COMPARE(shownMessages().size(), 1);
        QVERIFY2(shownMessages()[0].contains(m_dataFolder + "/transmissions (1).sqlite"),
                 qPrintable(shownMessages()[0]));
        QVERIFY(QFile::exists(m_dataFolder + "/transmissions (1).sqlite"));
    }

    void aTextThatAFieldCannotTakeIsTold()
    {
        start({});
        QLineEdit *name = field("txt_gsm_id");
        name->setFocus();
        QApplication::clipboard()->setText(QString(200'000, u'x'));
        name->selectAll();
        name->paste();
        QVERIFY2(lastEvent().contains(QString::number(name->maxLength())), qPrintable(lastEvent()));
    }

    /// A module that told a newer version, and one where all is well.
    void beforeATransmissionStandsWhatIsKnown()
    {
        m_dataFolder = path("data");
        m_ports = {"COM1"};
        start({});
        m_window->document().adjust([](Configuration &changed) {
            changed.gsm.stationId = "Werk 7";
            changed.versionText = "2026-11-01 10:00:00";
        });
        auto *anyway = control<QPushButton>(*m_window, "cmd_transmission_anyway");
        auto *cancel = control<QPushButton>(*m_window, "cmd_transmission_cancel");
        auto *close = control<QPushButton>(*m_window, "cmd_transmission_close");
        auto *detail = control<QLabel>(*m_window, "lbl_transmission_detail");
        QTest::keyClick(m_window.get(), Qt::Key_F5);
        QTRY_VERIFY(cancel->isVisible());
        QVERIFY2(detail->text().contains("Station: Werk 7 (module: not known)"), qPrintable(detail->text()));
        QVERIFY(detail->text().contains("Line: COM1") && !anyway->isVisible());
        cancel->click();

        Q_EMIT m_line->received("at+cmgs=\"+IP\"\r");
        Q_EMIT m_line->received("V,2.1.05,2026-11-02 10:00:00,KTR\x1A");
        QTest::keyClick(m_window.get(), Qt::Key_F5);
        QTRY_VERIFY(anyway->isVisible());
        QVERIFY(!cancel->isVisible() && m_window->focusWidget() == anyway);
        QVERIFY2(detail->text().contains("a newer version, 2026-11-02 10:00:00"), qPrintable(detail->text()));
        m_line->sent.clear();
        Q_EMIT m_line->received("at+cmgr=1\r");
        QCOMPARE(m_line->sent, "at+cmgr=1\r\nOK\r\n"); // nothing is handed over while it is asked
        QTRY_VERIFY(close->isEnabled());
        QTest::mouseClick(close, Qt::LeftButton);
        QVERIFY(!anyway->isVisible() && !cancel->isVisible());
        clickMenu("mnu_doConfig"); // a message about the versions has the focus
        QTRY_VERIFY(anyway->isVisible());
        QTest::keyClick(anyway, Qt::Key_Space);
        QVERIFY(cancel->isVisible() && !anyway->isVisible());
        Q_EMIT m_line->received("at+cmgr=1\r");
        QVERIFY(m_line->sent.contains("V,\xA7"));
        cancel->click();
        Q_EMIT m_line->received("at+cpin?\r"); // it may be another one that starts
        clickMenu("mnu_doConfig");
        QTRY_VERIFY(cancel->isVisible());
    }

    /// The line stays open, and the module is the one that was just given another station.
    void aModuleThatWasGivenAStationIsNoOther()
    {
        m_dataFolder = path("data");
        m_ports = {"COM1"};
        start({});
        const auto becomes = [this](const QString &station, const QString &version) {
            m_window->document().adjust([&](Configuration &changed) {
                changed.gsm.stationId = station;
                changed.versionText = version;
            });
        };
        auto *anyway = control<QPushButton>(*m_window, "cmd_transmission_anyway");
        auto *cancel = control<QPushButton>(*m_window, "cmd_transmission_cancel");
        auto *close = control<QPushButton>(*m_window, "cmd_transmission_close");
        auto *detail = control<QLabel>(*m_window, "lbl_transmission_detail");
        auto *changes = control<QAction>(*m_window, "mnu_doChanges");
        becomes("Werk 7", "2026-11-02 10:00:00");
        QTest::keyClick(m_window.get(), Qt::Key_F5);
        QTRY_VERIFY(cancel->isVisible());
        while (cancel->isVisible()) {
            Q_EMIT m_line->received("at+cmgr=1\r");
        }
        Q_EMIT m_line->received("at+cpin?\r"); // it starts anew with what it was given

        const auto isAsked = [&](const char *menu, const QString &why) {
            clickMenu(menu);
            const bool asks = QTest::qWaitFor([&] { return anyway->isVisible(); }, longestWrite) &&
                              detail->text().contains(why);
            QTest::mouseClick(close, Qt::LeftButton);
            return asks;
        };
        becomes("Werk 8", "2026-11-01 10:00:00");
        QVERIFY(isAsked("mnu_doConfig", "transmitted to station Werk 7"));
        QVERIFY(isAsked("mnu_doConfig", "a newer version, 2026-11-02 10:00:00"));
        QTRY_VERIFY_WITH_TIMEOUT(changes->isEnabled(), longestWrite);
        QVERIFY(isAsked("mnu_doChanges", "transmitted to station Werk 7"));

        Q_EMIT m_line->received("at+cpin?\r"); // perhaps the cable is in another one now
        QVERIFY(isAsked("mnu_doChanges", "transmitted to station Werk 7"));
        clickMenu("mnu_doConfig");
        QTRY_VERIFY(cancel->isVisible());
        QVERIFY(!anyway->isVisible());
    }

    void theWindowOfTransmissionsListsOpensAndExports()
    {
        m_dataFolder = path("data");
        m_ports = {"COM1"};
        start({});
        for (const auto *station : {"Werk 7", "Werk 8"}) {
            m_window->document().adjust(
                [station](Configuration &changed) { changed.gsm.stationId = station; });
            QTest::keyClick(m_window.get(), Qt::Key_F5);
            auto *cancel = control<QPushButton>(*m_window, "cmd_transmission_cancel");
            QTRY_VERIFY(cancel->isVisible());
            while (cancel->isVisible()) {
                Q_EMIT m_line->received("at+cmgr=1\r");
            }
            Q_EMIT m_line->received("at+cpin?\r"); // it starts anew, and then another one
            Q_EMIT m_line->received("at+cpin?\r");
        }
        QTest::keyClick(m_window.get(), Qt::Key_T, Qt::ControlModifier);
        auto *window = m_window->findChild<QWidget *>("Form_transmissions");
        QVERIFY(window != nullptr && QTest::qWaitForWindowActive(window));
        auto *list = control<QTableView>(*window, "Table_transmissions");
        auto *commands = control<QTableView>(*window, "Table_transmissions_commands");
        auto *facts = control<QLabel>(*window, "Label_transmissions_facts");
        QTRY_COMPARE_WITH_TIMEOUT(list->model()->rowCount(), 2, longestWrite);
        QVERIFY(!control<QLabel>(*window, "Label_transmissions_empty")->isVisible());
        QTRY_COMPARE_WITH_TIMEOUT(commands->model()->rowCount(), steps::last + 1 - 4,
                                  longestWrite); // without output values
        QVERIFY(commands->model()->index(1, 2).data().toString().startsWith("n,****,"));
        QVERIFY(facts->text().contains("Station: Werk 8\nOutcome: whole"));
        QTest::keyClick(list, Qt::Key_Down);
        QTRY_VERIFY_WITH_TIMEOUT(facts->text().contains("Station: Werk 7"), longestWrite);
        QTest::keyClicks(control<QLineEdit>(*window, "Text_transmissions_station"), "8");
        QCOMPARE(list->model()->rowCount(), 1);
        control<QLineEdit>(*window, "Text_transmissions_station")->clear();
        QCOMPARE(list->model()->rowCount(), 2);
        list->setCurrentIndex(list->model()->index(1, 0));
        QTRY_VERIFY_WITH_TIMEOUT(facts->text().contains("Station: Werk 7"), longestWrite);
        QVERIFY(control<QPushButton>(*window, "Cmd_transmissions_compare")->isVisible());
        QTest::mouseClick(control<QPushButton>(*window, "Cmd_transmissions_open"), Qt::LeftButton);
        QCOMPARE(m_window->document().configuration().gsm.stationId, "Werk 7");
        QVERIFY(m_window->document().isModified() && m_window->document().fileName().isEmpty());
        QVERIFY(lastEvent().startsWith("Opened: Werk 7, transmitted on "));
        clickMenu("mnu_undo");
        QCOMPARE(m_window->document().configuration().gsm.stationId, "Werk 8");

        // All are new, but an age is kept, and the newest whole one of each station would stay in any case.
        auto *years = control<QSpinBox>(*window, "Spin_transmissions_years");
        years->setFocus();
        for (const bool isAgreed : {false, true}) {
            QTest::keyClick(years, Qt::Key_Up);
            QTimer::singleShot(0, this, [isAgreed] {
                QWidget *question = QApplication::activeModalWidget();
                QVERIFY(question != nullptr && question->accessibleName().contains("1 years"));
                if (isAgreed) {
                    QTest::mouseClick(control<QPushButton>(*question, "OKButton"), Qt::LeftButton);
                } else {
                    QTest::keyClick(question, Qt::Key_Return);
                }
            });
            QTest::keyClick(years, Qt::Key_Return);
            QCOMPARE(SettingsStore().GetSetting(settings, "Record", "transmissionYears"),
                     isAgreed ? "1" : "");
            QCOMPARE(years->value(), isAgreed ? 1 : 0);
        }
        QTest::keyClick(window, Qt::Key_Escape);
        QVERIFY(!window->isVisible());
        m_window->document().setModified(false);
    }

    void aCommandThatWaitsIsShownAndCanBeTakenBack()
    {
        start({});
        QTRY_VERIFY(m_window->findChild<QPushButton *>("cmd_test_block") != nullptr);
        auto *block = control<QPushButton>(*m_window, "cmd_test_block");
        auto *waiting = control<QToolButton>(*m_window, "cmd_waiting");
        block->click();
        QTRY_COMPARE(control<QLabel>(*m_window, "Label_msg")->text(), "Please establish a connection");
        QVERIFY(!waiting->isVisible());
        m_ports = {"COM1"};
        clickMenu("mnu_verbindung_seriell");
        const auto read = [this] {
            m_line->sent.clear();
            Q_EMIT m_line->received("at+cmgr=1\r");
            return m_line->sent;
        };
        QCOMPARE(read(), "at+cmgr=1\r\nOK\r\n");
        block->click();
        QVERIFY2(waiting->isVisible() && waiting->text().contains("H,0,0"), qPrintable(waiting->text()));
        waiting->click();
        QVERIFY(!waiting->isVisible());
        QCOMPARE(lastEvent(), "H,0,0 was not sent and waits no longer");
        QCOMPARE(read(), "at+cmgr=1\r\nOK\r\n");
        block->click();
        QVERIFY(read().contains("H,0,0\r\n"));
        QVERIFY(!waiting->isVisible());
        QCOMPARE(lastEvent(), "H,0,0 was handed to the module");
        block->click();
        control<QPushButton>(*m_window, "cmd_test_free")->click();
        QCOMPARE(lastEvent(),
                 "H,0,1 is sent when the module next reads an SMS, in place of H,0,0, which is not sent");
        clickMenu("mnu_doConfig");
        block->click();
        QVERIFY(!waiting->isVisible());
        QVERIFY(lastEvent().contains("is being transmitted"));
    }

    void aCalibrationButtonWaitsForWhatTheModuleWillGetAlone()
    {
        start({});
        QTRY_VERIFY(m_window->findChild<QPushButton *>("cmd_kal_0") != nullptr);
        auto *button = control<QPushButton>(*m_window, "cmd_kal_0");
        button->click();
        QVERIFY(button->isEnabled()); // there is no connection
        m_ports = {"COM1"};
        clickMenu("mnu_verbindung_seriell");
        const std::initializer_list<std::function<void()>> ways{
            [&] { control<QToolButton>(*m_window, "cmd_waiting")->click(); },
            [&] { control<QPushButton>(*m_window, "cmd_test_block")->click(); },
            [&] { clickMenu("mnu_doConfig"); }, [&] { button->click(); }, // refused while that goes on
            [&] { clickMenu("mnu_verbindung_offline"); }};
        for (const auto &way : ways) {
            button->click();
            way();
            QVERIFY(button->isEnabled());
        }
        clickMenu("mnu_verbindung_seriell");
        button->click();
        Q_EMIT m_line->received("at+cmgr=1\r");
        QVERIFY(!button->isEnabled());
    }

    void theTransmissionPanelWrapsItsLinksAndTakesNoClickForAnother()
    {
        m_ports = {"COM1"};
        start({"-deutsch"});
        m_window->document().adjust([](Configuration &changed) {
            for (LimitValue &value : changed.limitValues) {
                value.alarm = QString(200, u'x');
            }
        });
        m_window->resize(560, 500);
        clickMenu("mnu_doConfig");
        auto *cancel = control<QPushButton>(*m_window, "cmd_transmission_cancel");
        auto *close = control<QPushButton>(*m_window, "cmd_transmission_close");
        QTRY_VERIFY(cancel->x() > 0); // laid out
        cancel->setFocus();
        while (cancel->isVisible()) {
            Q_EMIT m_line->received("at+cmgr=1\r");
        }
        QTest::keyClick(m_window->focusWidget(), Qt::Key_Space);
        QTest::mouseClick(close, Qt::LeftButton);
        QVERIFY(close->isVisible());

        auto *detail = control<QLabel>(*m_window, "lbl_transmission_detail");
        QCOMPARE(detail->text().count("<a href"), 20);
        const auto *area = qobject_cast<QScrollArea *>(detail->parentWidget()->parentWidget());
        const auto checkFit = [&] {
            QTRY_COMPARE(area->viewport()->width(), detail->width());
            QTextDocument document;
            document.setDefaultFont(detail->font());
            document.setDocumentMargin(0);
            document.setHtml(detail->text());
            document.setTextWidth(detail->width());
            QVERIFY(document.idealWidth() <= area->viewport()->width());
            QTRY_COMPARE(area->verticalScrollBar()->maximum(), detail->height() - area->viewport()->height());
            QVERIFY(detail->height() >= document.size().height());
        };
        checkFit();
        const int narrow = area->height();
        m_window->resize(2400, 500);
        QTRY_VERIFY(area->height() < narrow);
        checkFit();
        QTRY_VERIFY(close->isEnabled());
        QTest::mouseClick(close, Qt::LeftButton);
        QVERIFY(!close->isVisible());
    }

    void aVersionReplyIsShownAndTakesOverTheStationType()
    {
        m_ports = {"COM1"};
        start({"-load", fileWith("Werk 7")});
        m_window->document().adjust([](Configuration &configuration) { configuration.versionText = "ours"; });
        const auto reportVersion = [this](const QByteArray &fields) {
            Q_EMIT m_line->received("at+cmgs=\"+IP\"\r");
            Q_EMIT m_line->received("V," + fields + "\x1A");
        };
        reportVersion("2.1.5,theirs,NVA");
        QVERIFY(m_line->sent.endsWith("V,2.1.5,theirs,NVA\r\nOK\r\n")); // nothing waits for an answer
        QTRY_VERIFY(m_window->findChild<QLineEdit *>("txt_info_appVer") != nullptr);
        QCOMPARE(field("txt_info_appVer")->text(), "2.1.05");
        QCOMPARE(field("txt_info_version_ktr")->text(), "theirs");
        QCOMPARE(control<QComboBox>(*m_window, "Combo_gsm_type")->currentText(), "NVA");
        QVERIFY(!m_window->document().isModified());
        QCOMPARE(control<QLabel>(*m_window, "Label_msg")->text(),
                 "Different Versions:\nConfig-Tool: ours\nKTR-Application: theirs");
        reportVersion("2.1.5,others,KTR2"); // told on this connection already
        QCOMPARE(m_window->findChildren<QLabel *>("Label_msg").size(), 1);
        QCOMPARE(field("txt_info_version_ktr")->text(), "others");
        QCOMPARE(m_window->document().configuration().gsm.stationType, "NVA");
        const auto *done = control<QLabel>(*m_window, "lbl_kal_done");
        const auto *calibrated = control<QPushButton>(*m_window, "cmd_kal_0");
        Q_EMIT m_line->received("OK: \xA7,0,6\r");
        m_ports = {"COM1", "COM2"};
        clickMenu("mnu_verbindung_offline");
        QVERIFY(!done->text().isEmpty() && !calibrated->icon().isNull());
        control<QComboBox>(*m_window, "Cmb_connection_port")->setEditText("COM2");
        control<QPushButton>(*m_window, "cmd_connection_serial")->click();
        QVERIFY(done->text().isEmpty() && calibrated->icon().isNull());
        QCOMPARE(field("txt_info_appVer")->text() + field("txt_info_version_ktr")->text(), "");
    }

    void anotherConfigurationInTheModuleIsToldBeforeItIsOverwritten()
    {
        m_ports = {"COM1"};
        start({"-load", fileWith("Werk 7")});
        QTRY_VERIFY(m_window->findChild<QPushButton *>("cmd_info_readVersion") != nullptr);
        m_window->document().adjust([](Configuration &changed) { changed.versionText = "ours"; });
        m_window->tabs().setCurrentIndex(static_cast<int>(PageIndex::FileInformation));
        auto *read = control<QPushButton>(*m_window, "cmd_info_readVersion");
        QTest::mouseClick(read, Qt::LeftButton);
        const QByteArray readSms = "at+cmgr=1\r";
        Q_EMIT m_line->received(readSms);
        QVERIFY(m_line->sent.contains("V,\xA7\r\n"));

        const auto transmitUntilTold = [&] {
            clickMenu("mnu_doConfig");
            Q_EMIT m_line->received(readSms);
            Q_EMIT m_line->received("at+cmgs=\"+IP\"\rV,2.1.5,theirs,KTR\x1A");
            return m_window->findChild<QMessageBox *>("msg_differentVersions");
        };
        QPointer<QMessageBox> box = transmitUntilTold();
        QVERIFY(box != nullptr && box->isVisible() && !box->isModal() && !read->isEnabled());
        QCOMPARE(box->text(), "Different Versions:\nConfig-Tool: ours\nKTR-Application: theirs");
        Q_EMIT m_line->received(readSms); // it goes on meanwhile
        QVERIFY(m_line->sent.contains("n,"));
        QTest::mouseClick(control<QPushButton>(*box, "cmd_stopTransmission"), Qt::LeftButton);
        m_line->sent.clear();
        Q_EMIT m_line->received(readSms);
        QCOMPARE(m_line->sent, "at+cmgr=1\r\nOK\r\n");
        QTRY_VERIFY(box == nullptr);

        box = transmitUntilTold();
        QVERIFY(box != nullptr);
        clickMenu("mnu_verbindung_offline");
        QVERIFY(!control<QPushButton>(*box, "cmd_stopTransmission")->isVisible());
        clickMenu("mnu_verbindung_seriell");
        Q_EMIT m_line->received("at+cmgs=\"+IP\"\rV,2.1.5,another,KTR\x1A"); // what the box tells is older
        QTRY_VERIFY(box == nullptr);
        Q_EMIT m_line->lost("unplugged", true);
        QTRY_COMPARE(shownMessages().size(), 2);
        clickMenu("mnu_verbindung_seriell");
        Q_EMIT m_line->received("at+cmgs=\"+IP\"\rV,2.1.5,one more,KTR\x1A");
        QTRY_COMPARE(shownMessages(),
                     QStringList("Different Versions:\nConfig-Tool: ours\nKTR-Application: one more"));

        box = transmitUntilTold();
        QVERIFY(box != nullptr && shownMessages().isEmpty());
        for (int step = 1; step <= steps::last; ++step) {
            QCOMPARE(field("txt_info_version_ktr")->text(), "theirs");
            // The answer box counts for each step anew, the values as they were at the beginning.
            auto *answer = m_window->findChild<QCheckBox *>("chk_test_answer");
            answer->setChecked(step == 2);
            m_window->document().adjust([](Configuration &changed) { changed.limitValues[0].alarm = "new"; });
            m_line->sent.clear();
            Q_EMIT m_line->received(readSms);
            QVERIFY(step != 2 || m_line->sent.contains("\r\nG,1,"));
            QVERIFY(step != 3 || m_line->sent.contains("\r\ng,2,"));
            QVERIFY(!m_line->sent.contains("new"));
        }
        QCOMPARE(field("txt_info_version_ktr")->text(), "ours");
        QVERIFY(read->isEnabled());
        QTRY_VERIFY(box == nullptr); // the module has ours now
        Q_EMIT m_line->received("at+cmgs=\"+IP\"\rV,2.1.5,ours,KTR\x1A");
        QVERIFY(shownMessages().isEmpty());
    }

    void aFastExportTakesTheArchiveAndAnAnnouncedImageIsSent()
    {
        m_ports = {"COM1"};
        start({"-load", fileWith("Werk 7")});
        QTRY_VERIFY(m_window->findChild<QPushButton *>("cmd_historyFastExport") != nullptr);
        m_window->document().edit([this](Configuration &configuration) {
            configuration.info.historyExportFile = path("history.csv");
        });
        m_window->tabs().setCurrentIndex(static_cast<int>(PageIndex::Test));
        QTest::mouseClick(control<QPushButton>(*m_window, "cmd_historyFastExport"), Qt::LeftButton);
        Q_EMIT m_line->received("H,1,0911151400,1,2\r");
        QVERIFY(!QFileInfo::exists(path("history.csv"))); // the command has not left yet
        Q_EMIT m_line->received("at+cmgr=1\r");
        QVERIFY(m_line->sent.contains("\xA7,77\r\n"));
        Q_EMIT m_line->received("H,9,0911151400,1,12.5\r");
        QByteArray exported;
        QVERIFY(readFile(path("history.csv"), exported, 1000));
        QCOMPARE(exported, "\xEF\xBB\xBF"
                           "9;15.11.2009 14:00;1;12,5\r\n");
        Q_EMIT m_line->received("at+cmgs=\"+4917012345\"\rM,fail\x1A");
        const auto *replies = control<QPlainTextEdit>(*m_window, "txt_test_receive");
        QTRY_VERIFY(replies->toPlainText().contains("\n09,11,15 14:05:35  <-- H,9,"));
        QVERIFY(replies->toPlainText().startsWith("09,11,15 14:05:35 +4917012345 <-- M,fail\n"));

        QVERIFY(replaceFile(path("upgrade.bin"), QByteArray(43008, 'f')));
        typeOver(field("txt_test_send"), "§88");
        QTest::mouseClick(control<QPushButton>(*m_window, "cmd_test_send"), Qt::LeftButton);
        Q_EMIT m_line->received("at+cmgr=1\r");
        m_line->sent.clear();
        QTRY_COMPARE(m_line->sent.size(), 43008);
        QCOMPARE(m_line->sent.count('f'), 43008);
        QVERIFY(!m_window->findChild<QProgressBar *>("ProgressBar1")->isVisible());
    }

    /// Who cancels has no present file then; the next save finds the way back to it.
    void aCancelledSaveAsStillProposesTheFile()
    {
        const QString file = fileWith("Werk 7");
        start({"-load", file});
        QTimer::singleShot(0, this,
                           [] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape); });
        clickMenu("mnu_SaveAs");
        QVERIFY(!m_window->windowTitle().contains(QFileInfo(file).fileName()));
        typeOver(field("txt_gsm_id"), "Werk 8");
        QTimer::singleShot(0, this, [this] {
            auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            QVERIFY(dialog != nullptr);
            QTimer::singleShot(0, this, [] { // it is there already
                if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
                    QTest::mouseClick(box->button(QMessageBox::Yes), Qt::LeftButton);
                }
            });
            QTest::keyClick(dialog->findChild<QLineEdit *>("fileNameEdit"), Qt::Key_Return);
        });
        clickMenu("mnu_Save");
        QCOMPARE(stationIn(file), "Werk 8");
        QCOMPARE(m_window->document().fileName(), file);
    }

    void noArchiveIsFetchedIntoNothing()
    {
        m_ports = {"COM1"};
        start({"-load", fileWith("Werk 7")});
        QTRY_VERIFY(m_window->findChild<QPushButton *>("cmd_historyFastExport") != nullptr);
        m_window->tabs().setCurrentIndex(static_cast<int>(PageIndex::Test));
        const QByteArray command = "\xA7,77\r\n";
        const auto exportTo = [this](const QString &button, const QString &chosen) {
            QTimer::singleShot(0, this, [&chosen] {
                auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
                QVERIFY(dialog != nullptr);
                dialog->findChild<QLineEdit *>("fileNameEdit")->setText(chosen);
                QTest::keyClick(dialog, chosen.isEmpty() ? Qt::Key_Escape : Qt::Key_Return);
            });
            QTest::mouseClick(control<QPushButton>(*m_window, button), Qt::LeftButton);
            Q_EMIT m_line->received("at+cmgr=1\r");
        };
        for (const QString &unusable : {QString(), path("missing/history.csv")}) {
            m_window->document().edit(
                [&](Configuration &changed) { changed.info.historyExportFile = unusable; });
            exportTo("cmd_historyFastExport", {});
            typeOver(field("txt_test_send"), "§,77");
            exportTo("cmd_test_send", {});
            QVERIFY(!m_line->sent.contains(command));
        }
        exportTo("cmd_historyFastExport", path("chosen.csv"));
        QVERIFY(m_line->sent.contains(command));
        QCOMPARE(m_window->document().configuration().info.historyExportFile, path("chosen.csv"));
    }

    void thePathsOfAConfigurationStartNoProgramAndWaitForNobody()
    {
        QDesktopServices::setUrlHandler("file", this, "noteOpened");
        m_ports = {"COM1"};
        start({"-load", fileWith("Werk 7")});
        const auto logTo = [this](const QString &file) {
            m_window->document().edit(
                [&](Configuration &configuration) { configuration.info.logFile = file; });
            Q_EMIT m_line->received("OK\r");
        };
        QTRY_VERIFY(m_window->findChild<QPushButton *>("cmd_logfile_open") != nullptr);
        m_window->tabs().setCurrentIndex(static_cast<int>(PageIndex::FileInformation));
        for (const char *name : {"evil.desktop", "evil.js", "Log.txt"}) {
            QVERIFY(replaceFile(path(name), "[Desktop Entry]"));
            logTo(path(name));
            QTest::mouseClick(control<QPushButton>(*m_window, "cmd_logfile_open"), Qt::LeftButton);
        }
        QDesktopServices::unsetUrlHandler("file");
        QCOMPARE(m_opened, QList<QUrl>{QUrl::fromLocalFile(path("Log.txt"))});

        logTo(path("missing/Log.txt"));
        QVERIFY(!QFileInfo::exists(path("missing")));
        if (QProcess::execute("mkfifo", {path("pipe")}) == 0) { // where there are such
            logTo(path("pipe"));                                // would wait for a reader
        }
    }

    void namesThatAreSavedReachTheOpenOperationalMode()
    {
        QVERIFY(replaceFile(path("nodes.xml"),
                            "<KTR><item1 hostAddress=\"10.0.0.7\" online=\"0\" key=\"Werk 7\" "
                            "text=\"Werk 7\" ForeColor=\"-2147483640\"/></KTR>"));
        start({fileWith("Werk 7")});
        clickMenu("mnu_betriebsmodus");
        QWidget *mode = operationalMode();
        QVERIFY(mode != nullptr && QTest::qWaitForWindowActive(mode));
        auto *tree = mode->findChild<QAbstractItemView *>("TreeView_KTR_Nodes");
        tree->setCurrentIndex(tree->model()->index(0, 0));
        constexpr int values = 3;
        mode->findChild<QTabWidget *>("TabStrip_pages")->setCurrentIndex(values);
        const auto *tile = mode->findChild<QWidget *>("Value_ip_9");
        QVERIFY(tile != nullptr);
        QVERIFY2(tile->accessibleName().startsWith("Analog In 1:"), qPrintable(tile->accessibleName()));
        m_window->document().adjust([](Configuration &changed) { changed.names.channels[8].name = "Well"; });
        QVERIFY(m_window->document().save());
        QTRY_VERIFY2(tile->accessibleName().contains("Well"), qPrintable(tile->accessibleName()));
    }

    void namesOfInputsStandBehindThemAndBesideTheFile()
    {
        const QString file = fileWith("Werk 7");
        start({file});
        QTest::keyClick(m_window.get(), Qt::Key_I, Qt::ControlModifier);
        auto *window = m_window->findChild<QWidget *>("Dlg_names");
        QVERIFY(window != nullptr && QTest::qWaitForWindowActive(window));
        auto *table = control<QTableView>(*window, "Tbl_names");
        const auto write = [table](int row, const QString &text) {
            table->setCurrentIndex(table->model()->index(row, 0));
            QTest::keyClick(table, Qt::Key_F2);
            auto *editor = table->findChild<QLineEdit *>();
            QVERIFY(editor != nullptr);
            type(editor, text);
            QTest::keyClick(editor, Qt::Key_Return);
        };
        write(8, QStringLiteral("Füllstand"));
        QGuiApplication::clipboard()->setText("Spülventil\tx\r\nLicht\r\n");
        table->setCurrentIndex(table->model()->index(10, 0));
        QTest::keySequence(table, QKeySequence::Paste);
        QTest::mouseClick(window->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok),
                          Qt::LeftButton);
        QVERIFY(m_window->document().isModified());
        QVERIFY(m_window->document().configuration().versionText.isEmpty()); // nothing that a module holds

        m_window->tabs().page(PageIndex::SwitchPoints);
        m_window->tabs().page(PageIndex::LimitValues);
        QCOMPARE(control<QComboBox>(*m_window, "Cbo_gw_ip")->itemText(9),
                 QStringLiteral("9 AnalogIn 1 – Füllstand"));
        QCOMPARE(control<QComboBox>(*m_window, "Cbo_gw_ip")->itemText(10), "10 Analog In 2");
        QCOMPARE(control<QComboBox>(*m_window, "Cmb_swtch_ip")->itemText(1),
                 QStringLiteral("11 DigOut 1 – Spülventil"));
        QCOMPARE(control<QComboBox>(*m_window, "Cmb_swtch_gw")->itemText(0),
                 QStringLiteral("1  IP:ungültig"));
        m_window->document().edit([](Configuration &c) { c.limitValues[0].channel = 9; });
        QCOMPARE(control<QComboBox>(*m_window, "Cmb_swtch_gw")->itemText(0),
                 QStringLiteral("1  IP:9 AnalogIn 1 – Füllstand"));
        QCOMPARE(control<QLabel>(*m_window, "lbl_ip_bezeichnung_9")->text(), "AnalogIn 1");
        QVERIFY(control<QLabel>(*m_window, "lbl_ip_bezeichnung_9")
                    ->toolTip()
                    .contains(QStringLiteral("Füllstand")));
        QCOMPARE(m_window->tabs().describe({"Txt_ip_delta_8"}),
                 QStringLiteral("IP, 9 AnalogIn 1 – Füllstand Delta"));
        clickMenu("mnu_Save");
        QCOMPARE(contentOf(path("werk-7.names")),
                 QStringLiteral("9=Füllstand;\n11=Spülventil;x\n12=Licht;\n").toUtf8());
        clickMenu("mnu_undo");
        QCOMPARE(control<QComboBox>(*m_window, "Cbo_gw_ip")->itemText(9), "9 AnalogIn 1");
    }

public Q_SLOTS:
    void noteOpened(const QUrl &url) { m_opened += url; }

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }

    QString fileWith(const QString &station) const
    {
        const Environment environment = fixedEnvironment();
        Configuration configuration;
        makeNew(configuration, environment);
        configuration.gsm.stationId = station;
        const QString file = path(QString(station).replace(u' ', u'-').toLower() + ".xml");
        return replaceFile(file, writeConfiguration(configuration, environment)) ? file : QString();
    }

    static QString stationIn(const QString &file)
    {
        Configuration configuration;
        const auto report = readConfigurationFile(file, configuration, fixedEnvironment());
        return report.document ? configuration.gsm.stationId : report.document.message();
    }

    /// The one transmission that is remembered.
    RememberedTransmission remembered() const
    {
        RecordDatabase database;
        std::optional<TransmissionRow> row;
        QList<TransmissionStepRow> steps;
        const QString place = m_dataFolder + "/transmissions.sqlite";
        return QFile::exists(place) && openForTransmissions(database, place) &&
                       TransmissionTable(database).read(1, row, steps) && row
                   ? RememberedTransmission{*row, steps}
                   : RememberedTransmission();
    }

    void start(const QStringList &arguments)
    {
        Environment environment = fixedEnvironment();
        environment.programFolder = m_programFolder.isEmpty() ? m_folder->path() : m_programFolder;
        environment.dataFolder = m_dataFolder;
        m_window =
            std::make_unique<FormMain>(Services{environment, m_timers, *m_line, m_network,
                                                [this] { return m_ports; }, m_folder->path() + "/instance",
                                                [this] {
                                                    auto line = std::make_unique<test::RecordedLine>();
                                                    m_stationLine = line.get();
                                                    return line;
                                                }});
        m_window->start(arguments);
        QWidget *mode = operationalMode();
        QVERIFY(QTest::qWaitForWindowActive(mode != nullptr ? mode : m_window.get()));
    }

    /// Items and boxes of one list that read the same, but for a number in front, and whose tool tips do not
    /// tell them apart.
    QStringList choicesReadAlike() const
    {
        static const QRegularExpression leading("^(\\d+ +|on +)+");
        QStringList found;
        const auto look = [&found](const QString &list, const QList<QPair<QString, QString>> &choices) {
            QHash<QString, QString> tips;
            for (const auto &[text, tip] : choices) {
                const QString read = QString(text).remove(leading).simplified().toLower();
                if (!read.isEmpty() && tips.contains(read) && (tips[read] == tip || tip.isEmpty())) {
                    found += list + ": " + text;
                }
                tips[read] = tip;
            }
        };
        for (const QComboBox *box : m_window->findChildren<QComboBox *>()) {
            QList<QPair<QString, QString>> choices;
            for (int item = 0; item < box->count(); ++item) {
                const QString tip = box->itemData(item, Qt::ToolTipRole).toString();
                // What is left of an entry of a limit value without its number is no choice of its own.
                choices += {box->itemText(item).contains("  IP:") ? QString() : box->itemText(item), tip};
            }
            look(box->objectName(), choices);
        }
        for (const QGroupBox *group : m_window->findChildren<QGroupBox *>()) {
            QList<QPair<QString, QString>> choices;
            for (const QAbstractButton *button : group->findChildren<QAbstractButton *>()) {
                choices += {button->text(), button->toolTip()};
            }
            if (!group->objectName().isEmpty()) { // or a card whose rows are no choices
                look(group->objectName(), choices);
            }
        }
        return found;
    }

    static QWidget *operationalMode()
    {
        const QWidgetList windows = QApplication::topLevelWidgets();
        const auto found = std::ranges::find(windows, QString("Form_betriebsmodus"), &QObject::objectName);
        return found == windows.end() ? nullptr : *found;
    }
    QLineEdit *field(const QString &name) { return control<QLineEdit>(*m_window, name); }
    QString lastEvent() const { return m_window->findChild<QLabel *>("lbl_event")->toolTip().simplified(); }
    QAction *action(const QString &name) { return m_window->findChild<QAction *>(name); }
    void clickMenu(const QString &name) { action(name)->trigger(); }
    /// The texts of the messages that stand open.
    QStringList shownMessages() const
    {
        QStringList texts;
        for (const QLabel *label : m_window->findChildren<QLabel *>("Label_msg")) {
            if (label->isVisible()) {
                texts += label->text();
            }
        }
        return texts;
    }
    void chooseLanguage(const QString &button)
    {
        clickMenu("mnu_settings");
        auto *choice = control<QAbstractButton>(*m_window, button);
        QTest::mouseClick(choice, Qt::LeftButton, {}, {10, choice->height() / 2});
        QTest::mouseClick(control<QAbstractButton>(*m_window, "btnOk"), Qt::LeftButton);
    }
    static QString plain(const QAction *action) { return action->text().remove(u'&'); }

    void drop(const QString &file)
    {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(file)});
        QDragEnterEvent enter({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(m_window.get(), &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent event({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(m_window.get(), &event);
    }

    /// The visible controls that do not show all of their text.
    QStringList cutOff() const
    {
        QStringList cut = test::cutOff(*m_window);
        for (const Page *page : m_window->findChildren<Page *>()) {
            const int lacking = page->width() - page->parentWidget()->width();
            if (page->isVisible() && lacking > 0) {
                cut += QStringLiteral("%1: %2 pixels").arg(page->objectName()).arg(lacking);
            }
        }
        return cut;
    }

    /// Of all controls, with their names in front: what they show, what a pointer or a screen reader is told.
    QStringList shownTexts() const
    {
        QStringList texts;
        for (const QObject *object : m_window->findChildren<QObject *>()) {
            // Bytes, and when they are shown is left to chance; a journal, which keeps what it once told.
            if (object->objectName() == u"txt_test_debug" ||
                object->objectName() == u"txt_connection_events") {
                continue;
            }
            for (const char *name :
                 {"text", "plainText", "title", "windowTitle", "toolTip", "statusTip", "iconText",
                  "placeholderText", "currentText", "accessibleName", "accessibleDescription"}) {
                const QString text = object->property(name).toString();
                if (!text.isEmpty()) {
                    texts += object->objectName() + u' ' + QLatin1String(name) + u' ' + text;
                }
            }
            const auto *view = qobject_cast<const QAbstractItemView *>(object);
            const auto *box = qobject_cast<const QComboBox *>(object);
            const QAbstractItemModel *model = view != nullptr  ? view->model()
                                              : box != nullptr ? box->model()
                                                               : nullptr;
            for (int row = 0; model != nullptr && row < model->rowCount(); ++row) {
                for (int column = 0; column < model->columnCount(); ++column) {
                    for (const int role : {Qt::DisplayRole, Qt::ToolTipRole, Qt::AccessibleTextRole}) {
                        texts +=
                            object->objectName() + " item " + model->index(row, column).data(role).toString();
                        texts += object->objectName() + " header " +
                                 model->headerData(column, Qt::Horizontal, role).toString();
                    }
                }
            }
            if (const auto *tabs = qobject_cast<const QTabBar *>(object)) {
                for (int i = 0; i < tabs->count(); ++i) {
                    texts += tabs->tabText(i) + tabs->tabToolTip(i) + tabs->accessibleTabName(i);
                }
            }
        }
        return texts;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    EventLoopTimers m_timers;
    std::unique_ptr<SilentLine> m_line;
    SilentLine m_network;
    QStringList m_ports;
    QString m_dataFolder;    ///< empty: nothing is to be left
    QString m_programFolder; ///< empty: the test's folder
    QList<QUrl> m_opened;
    test::RecordedLine *m_stationLine = nullptr; ///< of the station that was added last
    std::unique_ptr<FormMain> m_window;
};

QTEST_MAIN(FormMainTest)
#include "form_main_test.moc"
