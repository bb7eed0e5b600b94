#include "app/file_dialogs.h"
#include "platform/helper_program.h"
#include "platform/registry.h"
#include "platform/settings_store.h"
#include "support/test_files.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace ktr;
using namespace Qt::StringLiterals;
using test::contentOf;
using test::writeFile;

namespace {

const QString xmlFilter = u"*.xml|*.xml"_s;

QString stored()
{
    return SettingsStore().GetSetting(u"CommonDialog"_s, u"Filename"_s, u"LastSelectedFilename"_s);
}

void store(const QString &text)
{
    QVERIFY(SettingsStore().SaveSetting(u"CommonDialog"_s, u"Filename"_s, u"LastSelectedFilename"_s, text));
}

QFileDialog *openDialog()
{
    return qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
}

} // namespace

class FileDialogsTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { qputenv("QT_QPA_PLATFORM", "offscreen"); }

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_dialogs = std::make_unique<FileDialogs>(nullptr, m_folder->path());
        m_dialogs->setCurrentFile(path(u"current.xml"_s));
        MRegistry::setRegistryFile(path(u"registry.json"_s));
    }

    void theHelperIsStartedAndItsAnswerReadUpToTheEndMark_data()
    {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("expected");
        QTest::newRow("file") << u"/some/folder/pumping station.xml§"_s
                              << u"/some/folder/pumping station.xml"_s;
        QTest::newRow("umlaut") << u"C:\\Pläne\\Größe.xml§"_s << u"C:\\Pläne\\Größe.xml"_s;
        QTest::newRow("cancelled") << u"§"_s << QString();
    }
    void theHelperIsStartedAndItsAnswerReadUpToTheEndMark()
    {
        QFETCH(QString, answer);
        QFETCH(QString, expected);
        installHelper();
        QString proposal;
        QString whileBusy = u"not asked"_s;
        // The script tells its arguments; the rest of the helper is played here.
        whenHelperRuns([&] {
            proposal = stored();
            QVERIFY(m_dialogs->isBusy());
            whileBusy = m_dialogs->askOpen(xmlFilter);
            QCOMPARE(stored(), proposal); // the second request has left the first one's exchange alone
            store(answer.chopped(1));     // not complete
            QTimer::singleShot(20, qApp, [answer] { store(answer); });
        });
        store(u"/an/old/answer.xml§"_s);
        QCOMPARE(m_dialogs->askSave(u"KTR_Mill Lane"_s, xmlFilter), expected);
        QCOMPARE(proposal, u"KTR_Mill Lane"_s);
        QCOMPARE(whileBusy, QString());
        QVERIFY(!m_dialogs->isBusy());
        QCOMPARE(contentOf(path(u"arguments"_s)), "ShowSave\n*.xml|*.xml\n");

        QVERIFY(QFile::remove(path(u"arguments"_s)));
        whenHelperRuns([&] {
            QCOMPARE(stored(), QString());
            store(answer);
        });
        QCOMPARE(m_dialogs->askOpen(xmlFilter), expected);
        QCOMPARE(contentOf(path(u"arguments"_s)), "ShowOpen\n*.xml|*.xml\n");
    }

    void withoutAUsableHelperTheDialogIsInProcess_data()
    {
        QTest::addColumn<QByteArray>("helper");
        QTest::addColumn<bool>("storeWorks");
        QTest::newRow("none") << QByteArray() << true;
        QTest::newRow("cannot be started") << QByteArray("#!/no/such/shell\n") << true;
        QTest::newRow("no exchange") << QByteArray("#!/bin/sh\n") << false;
    }
    void withoutAUsableHelperTheDialogIsInProcess()
    {
        QFETCH(QByteArray, helper);
        QFETCH(bool, storeWorks);
        if (!helper.isEmpty()) {
            installHelper(helper);
        }
        QVERIFY(writeFile(path(u"station.xml"_s), "<KTR/>"));
        if (!storeWorks) {
            MRegistry::setRegistryFile(path(u"station.xml/below-a-file.json"_s));
        }
        whenDialogOpens([this](QFileDialog *dialog) {
            QCOMPARE(dialog->objectName(), u"CommonDialog"_s);
            QVERIFY(m_dialogs->isBusy());
            QCOMPARE(m_dialogs->askOpen(xmlFilter), QString());
            typeName(dialog, u"station.xml"_s);
        });
        QCOMPARE(m_dialogs->askOpen(xmlFilter), path(u"station.xml"_s)); // in the current file's folder
        whenDialogOpens([](QFileDialog *dialog) { QTest::keyClick(dialog, Qt::Key_Escape); });
        QCOMPARE(m_dialogs->askOpen(xmlFilter), QString());
        QVERIFY(!m_dialogs->isBusy());
    }

    void savingAddsTheSuffixAndAsksBeforeAFileIsReplaced()
    {
        whenDialogOpens([](QFileDialog *dialog) {
            auto *const name = dialog->findChild<QLineEdit *>(u"fileNameEdit"_s);
            QCOMPARE(name->text(), u"KTR_a_b"_s);
            QTest::keyClick(name, Qt::Key_Return);
        });
        m_dialogs->setCurrentFile(QString()); // as "save as" leaves it
        QCOMPARE(m_dialogs->askSave(u"KTR_a/b"_s, xmlFilter), path(u"KTR_a_b.xml"_s));
        QVERIFY(QDir().mkpath(path(u"deeper"_s)));
        whenDialogOpens([](QFileDialog *dialog) {
            QTest::keyClick(dialog->findChild<QLineEdit *>(u"fileNameEdit"_s), Qt::Key_Return);
        });
        QCOMPARE(m_dialogs->askSave(u"KTR_a"_s, xmlFilter, path(u"deeper/Mill.xml"_s)),
                 path(u"deeper/Mill.xml"_s));

        QVERIFY(writeFile(path(u"there.xml"_s), "<KTR/>"));
        bool asked = false;
        whenDialogOpens([&asked](QFileDialog *dialog) {
            QTimer::singleShot(0, qApp, [&asked, dialog] {
                auto *const box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
                asked = box != nullptr;
                if (box != nullptr) {
                    QTest::mouseClick(box->button(QMessageBox::No), Qt::LeftButton);
                }
                dialog->reject();
            });
            typeName(dialog, u"there"_s);
        });
        QCOMPARE(m_dialogs->askSave(QString(), xmlFilter), QString());
        QVERIFY(asked);
    }

    void whatIsExportedStartsWhereSuchAFileWasSavedLastByWhateverWindow()
    {
        QVERIFY(QDir().mkpath(path(u"tables"_s)));
        const QString csv = u"CSV|*.csv"_s;
        const auto accept = [](QFileDialog *dialog) {
            QTest::keyClick(dialog->findChild<QLineEdit *>(u"fileNameEdit"_s), Qt::Key_Return);
        };
        whenDialogOpens([this, accept](QFileDialog *dialog) {
            dialog->setDirectory(path(u"tables"_s));
            accept(dialog);
        });
        QCOMPARE(m_dialogs->askSave(u"curves"_s, csv), path(u"tables/curves.csv"_s));
        FileDialogs other(nullptr, m_folder->path());
        whenDialogOpens(accept);
        QCOMPARE(other.askSave(u"history"_s, u"PNG|*.png"_s), path(u"tables/history.png"_s));
        whenDialogOpens(accept); // a configuration stands beside the one before
        QCOMPARE(m_dialogs->askSave(u"KTR"_s, xmlFilter), path(u"KTR.xml"_s));
        QVERIFY(QDir(path(u"tables"_s)).removeRecursively());
        whenDialogOpens(accept);
        QCOMPARE(m_dialogs->askSave(u"curves"_s, csv), path(u"curves.csv"_s));
    }

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }

    void installHelper(const QByteArray &script = {})
    {
        const QString file = path(u"CommonDialog"_s);
        const QByteArray recording =
            "#!/bin/sh\nprintf '%s\\n' \"$@\" > '" + path(u"arguments.new"_s).toUtf8() + "'\nmv '" +
            path(u"arguments.new"_s).toUtf8() + "' '" + path(u"arguments"_s).toUtf8() + "'\n";
        QVERIFY(writeFile(file, script.isEmpty() ? recording : script));
        QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        QCOMPARE(findHelper(m_folder->path(), u"CommonDialog"_s), QDir::toNativeSeparators(file));
    }

    void whenHelperRuns(const std::function<void()> &act)
    {
        repeat([this, act] {
            if (!QFile::exists(path(u"arguments"_s))) {
                return false;
            }
            act();
            return true;
        });
    }

    static void whenDialogOpens(const std::function<void(QFileDialog *)> &act)
    {
        repeat([act] {
            if (openDialog() == nullptr) {
                return false;
            }
            act(openDialog());
            return true;
        });
    }

    /// Tries every few milliseconds until it succeeded.
    static void repeat(const std::function<bool()> &attempt)
    {
        auto *const timer = new QTimer(qApp);
        connect(timer, &QTimer::timeout, timer, [timer, attempt, running = false]() mutable {
            if (running) {
                return; // in an attempt that processes events
            }
            running = true;
            if (attempt()) {
                timer->stop();
                timer->deleteLater();
            }
            running = false;
        });
        timer->start(5);
    }

    static void typeName(QFileDialog *dialog, const QString &name)
    {
        auto *const field = dialog->findChild<QLineEdit *>(u"fileNameEdit"_s);
        field->clear();
        QTest::keyClicks(field, name);
        QTest::keyClick(field, Qt::Key_Return);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<FileDialogs> m_dialogs;
};

QTEST_MAIN(FileDialogsTest)
#include "file_dialogs_test.moc"
