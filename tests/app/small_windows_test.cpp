#include "app/about_window.h"
#include "app/language_setting.h"
#include "app/preview_window.h"
#include "app/printing.h"
#include "app/settings_window.h"
#include "app/third_parties.h"
#include "config/fields.h"
#include "lang/text_table.h"
#include "look/message_dialog.h"
#include "look/outside_texts.h"
#include "look/window_place.h"
#include "platform/registry.h"
#include "support/environment.h"

#include <QAbstractScrollArea>
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPrinter>
#include <QPrinterInfo>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QScreen>
#include <QScrollBar>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace ktr;
using namespace Qt::StringLiterals;

namespace {

template <class T> T *child(const QWidget *window, QLatin1StringView name)
{
    T *const found = window->findChild<T *>(name);
    if (found == nullptr) {
        qFatal("no %s in %s", name.data(), qPrintable(window->objectName()));
    }
    return found;
}

QList<QWidget *> openDialogs()
{
    QList<QWidget *> dialogs;
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->objectName() == "Dialog"_L1 && window->isVisible()) {
            dialogs += window;
        }
    }
    return dialogs;
}

/// Runs when the dialog that is asked for next waits for its answer.
void whenItAsks(const std::function<void(QWidget *)> &act)
{
    QTimer::singleShot(0, qApp, [act] {
        QVERIFY(!openDialogs().isEmpty());
        act(openDialogs().last());
    });
}

void press(const QWidget *window, QLatin1StringView button)
{
    QTest::mouseClick(child<QPushButton>(window, button), Qt::LeftButton);
}

/// Whether a length in pixels is the nearest to one in twips.
bool isTwips(int pixels, int twips)
{
    return std::abs(pixels * 15 - twips) <= 7;
}

void setMachineText(const QString &key, const QString &valueName, const QString &text)
{
    MRegistry::CreateRegistryKey(u"hkey_local_machine"_s, key);
    MRegistry::SetRegistryString(u"hkey_local_machine"_s, key, valueName, text);
}

Configuration freshConfiguration()
{
    Configuration configuration;
    makeNew(configuration, test::fixedEnvironment());
    return configuration;
}

} // namespace

class SmallWindowsTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { qputenv("QT_QPA_PLATFORM", "offscreen"); }

private Q_SLOTS:
    void init()
    {
        MRegistry::setRegistryFile(
            m_folder.filePath(QString::fromLatin1(QTest::currentTestFunction()) + "/registry.json"_L1));
        m_texts.fillEnglish();
    }
    void cleanup() { QTRY_VERIFY(openDialogs().isEmpty()); }

    void aWindowComesBackWhereItWasAndOnAScreenThatIsThere()
    {
        const QRect place(100, 120, 420, 310);
        const auto close = [](const QString &name, const QRect &at) {
            QWidget window;
            keepWindowPlace(window, name);
            window.setGeometry(at);
            window.show();
            QVERIFY(QTest::qWaitForWindowExposed(&window));
            window.hide();
        };
        close(u"Form_one"_s, place);
        QWidget again;
        keepWindowPlace(again, u"Form_one"_s);
        QCOMPARE(again.geometry(), place);
        close(u"Form_far"_s, place.translated(9000, 9000)); // on a screen that is gone
        QWidget back;
        keepWindowPlace(back, u"Form_far"_s);
        QVERIFY(back.screen()->geometry().contains(back.geometry()));
        const QRect screen = back.screen()->availableGeometry();
        close(u"Form_wide"_s, screen.adjusted(10, 10, 90, 90)); // on one that was a little larger
        QWidget wide;
        keepWindowPlace(wide, u"Form_wide"_s);
        QVERIFY(screen.contains(wide.geometry()));
    }

    void aDialogKeepsItsMeasuresWhateverTextAndFont_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("question");
        QTest::newRow("word") << u"ok"_s << false;
        QTest::newRow("long") << u"some words "_s.repeated(60) << false;
        QTest::newRow("lines") << u"one\r\ntwo\r\nthree"_s << false;
        QTest::newRow("long word") << QString(90, u'w') << false;
        QTest::newRow("short question") << u"?"_s << true;
        QTest::newRow("long question") << u"some words "_s.repeated(60) << true;
    }
    void aDialogKeepsItsMeasuresWhateverTextAndFont()
    {
        QFETCH(QString, text);
        QFETCH(bool, question);
        const auto check = [question](QWidget *window) {
            const auto *const label = child<QLabel>(window, "Label_msg"_L1);
            const auto *const ok = child<QPushButton>(window, "OKButton"_L1);
            const auto *const cancel = child<QPushButton>(window, "CancelButton"_L1);
            QVERIFY(isTwips(window->height() - label->height(), 1400));
            QVERIFY(isTwips(window->width() - label->width(), 640));
            const bool scrolls = !label->isVisible(); // a word that is wider than the screen
            QVERIFY(scrolls || label->height() >= label->heightForWidth(label->width()));
            QVERIFY(isTwips(window->height() - ok->geometry().bottom() - 1, 600));
            QCOMPARE(cancel->isVisible(), question);
            if (question) {
                QVERIFY(isTwips(window->width() - ok->x(), 2900));
                QVERIFY(isTwips(window->width() - cancel->x(), 1500));
                QVERIFY(ok->geometry().right() < cancel->x() && ok->x() > 0);
            } else {
                QVERIFY(isTwips(window->width() - ok->geometry().right() - 1, 220));
            }
            QVERIFY(window->rect().contains(label->geometry()) && window->rect().contains(ok->geometry()));
            QVERIFY(label->geometry().bottom() < ok->y());
        };
        const auto checkAll = [&check](QWidget *window) {
            check(window);
            const int before = window->height();
            QFont large = window->font();
            large.setPointSize(large.pointSize() * 2);
            child<QLabel>(window, "Label_msg"_L1)->setFont(large);
            QTRY_VERIFY(window->height() > before);
            check(window);
            child<QLabel>(window, "Label_msg"_L1)->setText(u"another text\n"_s.repeated(12));
            QCoreApplication::sendPostedEvents();
            check(window);
            press(window, "OKButton"_L1);
        };
        if (question) {
            whenItAsks(checkAll);
            QVERIFY(Dialog::question(nullptr, m_texts, text));
        } else {
            Dialog::message(nullptr, m_texts, text);
            checkAll(openDialogs().value(0));
        }
    }

    void linesBelowOneHeadingStandInOneMessageUntilItIsAnswered()
    {
        const QString heading = u"too long"_s;
        Dialog::line(nullptr, m_texts, heading, u"first"_s);
        const int height = openDialogs().value(0)->height();
        for (const QString &line : {u"second"_s, u"first"_s}) { // what stands there is not told again
            Dialog::line(nullptr, m_texts, heading, line);
        }
        QCOMPARE(openDialogs().size(), 1);
        QWidget *const shown = openDialogs().front();
        QCOMPARE(shown->findChild<QLabel *>(u"Label_msg"_s)->text(), u"too long\nfirst\nsecond"_s);
        QVERIFY(shown->height() > height);
        QTest::keyClick(shown, Qt::Key_Enter);
        Dialog::line(nullptr, m_texts, heading, u"third"_s);
        QTRY_COMPARE(openDialogs().size(), 1);
        QCOMPARE(openDialogs().front()->findChild<QLabel *>(u"Label_msg"_s)->text(), u"too long\nthird"_s);
        QTest::keyClick(openDialogs().front(), Qt::Key_Enter);
        QTRY_VERIFY(openDialogs().isEmpty());
    }

    void noTextMakesABoxLargerThanTheScreen()
    {
        const QString huge = u"words of a file "_s.repeated(200'000);
        const QSize screen = QGuiApplication::primaryScreen()->availableSize();
        whenItAsks([&screen](QWidget *window) {
            QVERIFY(window->height() < screen.height());
            QVERIFY(window->rect().contains(child<QPushButton>(window, "CancelButton"_L1)->geometry()));
            press(window, "CancelButton"_L1);
        });
        QVERIFY(!Dialog::question(nullptr, m_texts, QString(1'000'000, u'w')));
        QTRY_VERIFY(openDialogs().isEmpty());
        for (int line = 0; line < 40; ++line) {
            Dialog::line(nullptr, m_texts, u"too long"_s, QString::number(line) + huge);
        }
        QWidget *const shown = openDialogs().value(0);
        QVERIFY(shown->frameGeometry().bottom() < screen.height()); // also where it grew
        auto *const text = child<QPlainTextEdit>(shown, "txt_msg"_L1);
        QVERIFY(text->isVisible() && text->geometry().bottom() < child<QWidget>(shown, "OKButton"_L1)->y());
        QCOMPARE(text->toPlainText().split(u'\n').size(), 41);
        QVERIFY(text->toPlainText().size() < 41 * 450);
        QTest::keyClick(shown, Qt::Key_PageDown);
        QVERIFY(text->verticalScrollBar()->value() > 0);
        QTest::keyClick(shown, Qt::Key_Enter);

        showOutsideTextsPlain(*qApp);
        QMessageBox box(QMessageBox::Question, u"box"_s, u"A file with a long "_s + huge + u"\nSave it?"_s);
        box.show();
        QVERIFY(box.height() < screen.height());
        QVERIFY2(box.text().startsWith(u"A file"_s) && box.text().endsWith(u"\nSave it?"_s) &&
                     box.text().contains(u"characters left out"_s),
                 qPrintable(box.text()));
        QCOMPARE(boundedText(shortenedLine(huge)), shortenedLine(huge));
        for (const qsizetype most : {3, 4, 40, 99, 100, 400}) {
            const QString shortened = shortenedLine(u"begin"_s + huge + u"end"_s, most);
            QVERIFY2(shortened.size() <= most && shortened.contains(u'…'), qPrintable(shortened));
            QVERIFY(shortened.startsWith(u'b') && (most < 4 || shortened.endsWith(u'd')));
        }
        QCOMPARE(boundedText(u"a\nb\nc\nd"_s, 2), u"a\nb\n… and 2 lines more"_s);
    }

    void twoMessagesAreOpenAtATimeAndStandOverTheirParent()
    {
        QWidget parent;
        parent.setGeometry(100, 100, 600, 500);
        parent.show();
        Dialog::message(&parent, m_texts, u"first"_s);
        Dialog::message(&parent, m_texts, u"second"_s);
        const QList<QWidget *> dialogs = openDialogs();
        QCOMPARE(dialogs.size(), 2);
        QVERIFY(!dialogs[0]->isModal());
        QVERIFY((dialogs[0]->frameGeometry().center() - parent.frameGeometry().center()).manhattanLength() <
                10); // the frame's width is known late
        QTest::keyClick(dialogs[0], Qt::Key_Escape);
        QTRY_COMPARE(openDialogs().size(), 1);
        QTest::keyClick(dialogs[1], Qt::Key_Enter);
        QTRY_VERIFY(parent.findChildren<QWidget *>(u"Dialog"_s).isEmpty()); // deleted, not hidden
    }

    void aQuestionIsAnsweredByButtonsKeysAndClosing()
    {
        m_texts.setText(132, u"Abbrechen"_s);
        whenItAsks([](QWidget *window) {
            QCOMPARE(child<QPushButton>(window, "CancelButton"_L1)->text(), u"Abbrechen"_s);
            press(window, "CancelButton"_L1);
        });
        QVERIFY(!Dialog::question(nullptr, m_texts, u"sure?"_s));
        QCOMPARE(openDialogs().size(), 1); // it is answered before it closes
        QTRY_VERIFY(openDialogs().isEmpty());
        whenItAsks([](QWidget *window) { QTest::keyClick(window, Qt::Key_Return); });
        QVERIFY(Dialog::question(nullptr, m_texts, u"sure?"_s));
        QTRY_VERIFY(openDialogs().isEmpty());
        whenItAsks([](QWidget *window) { QTest::keyClick(window, Qt::Key_Return); });
        QVERIFY(!Dialog::questionOfLoss(nullptr, m_texts, u"sure?"_s));
        QTRY_VERIFY(openDialogs().isEmpty());
        whenItAsks([](QWidget *window) { press(window, "OKButton"_L1); });
        QVERIFY(Dialog::questionOfLoss(nullptr, m_texts, u"sure?"_s));
        QTRY_VERIFY(openDialogs().isEmpty());
        whenItAsks([](QWidget *window) { QTest::keyClick(window, Qt::Key_Escape); });
        QVERIFY(!Dialog::question(nullptr, m_texts, u"sure?"_s));
        QTRY_VERIFY(openDialogs().isEmpty());
        whenItAsks([](QWidget *window) { window->close(); });
        QVERIFY(!Dialog::question(nullptr, m_texts, u"sure?"_s));
        auto *const parent = new QWidget;
        whenItAsks([parent](QWidget *) { delete parent; });
        QVERIFY(!Dialog::question(parent, m_texts, u"sure?"_s));
    }

    void anInputGivesItsTextOrNothing()
    {
        whenItAsks([](QWidget *window) {
            auto *const field = child<QLineEdit>(window, "Text_input"_L1);
            QCOMPARE(field->text(), u"10.0.0.1"_s);
            const QRect prompt = child<QLabel>(window, "Label_msg"_L1)->geometry();
            QVERIFY(window->rect().contains(field->geometry()) && field->y() > prompt.bottom());
            QVERIFY(field->geometry().bottom() < child<QPushButton>(window, "OKButton"_L1)->y());
            QTest::keyClicks(field, u"1.2.3.4"_s); // the proposal is selected
            QTest::keyClick(field, Qt::Key_Return);
        });
        QCOMPARE(Dialog::input(nullptr, m_texts, u"IP"_s, u"10.0.0.1"_s), u"1.2.3.4"_s);
        QTRY_VERIFY(openDialogs().isEmpty());
        whenItAsks([](QWidget *window) { press(window, "CancelButton"_L1); });
        QVERIFY(!Dialog::input(nullptr, m_texts, u"IP"_s, u"10.0.0.1"_s));
        QTRY_VERIFY(openDialogs().isEmpty());
    }

    void theAboutWindowNamesTheVersionAndTellsWhenThereIsNoSystemInformation()
    {
        frmAbout about(m_texts);
        about.show();
        QCOMPARE(about.windowTitle(), u"About KTRconfig"_s);
        QCOMPARE(child<QLabel>(&about, "lblTitle"_L1)->text(), u"KTRconfig"_s);
        const QString version = child<QLabel>(&about, "lblVersion"_L1)->text();
        QVERIFY2(QRegularExpression(u"^Version \\d+\\.\\d+\\.\\d\\d+$"_s).match(version).hasMatch(),
                 qPrintable(version));
        // A key that names a program which is not there is as good as none.
        setMachineText(u"SOFTWARE\\Microsoft\\Shared Tools\\MSINFO"_s, u"PATH"_s, u"none"_s);
        press(&about, "cmdSysInfo"_L1);
        auto *const box = about.findChild<QMessageBox *>();
        QVERIFY(box != nullptr);
        QCOMPARE(box->text(), u"System Information is unavailable at this time."_s);
        box->close();
        press(&about, "cmdOK"_L1);
        QVERIFY(!about.isVisible());
    }

    void theAboutWindowAndTheDocumentNameTheWorksOfOthers()
    {
        const frmAbout about(m_texts);
        QStringList shown;
        for (const QLabel *label : about.findChildren<QLabel *>()) {
            shown += label->text();
        }
        QFile document(QStringLiteral(KTR_SOURCE_DIR "/docs/third-party.md"));
        QVERIFY(document.open(QIODevice::ReadOnly));
        static const QRegularExpression row(u"^\\| ([^|]*) \\| ([^|]*) \\|"_s,
                                            QRegularExpression::MultilineOption);
        QStringList documented;
        for (const auto &match : row.globalMatch(QString::fromUtf8(document.readAll()))) {
            documented += match.captured(1) + u": "_s + match.captured(2);
        }
        documented.removeAll(u"work: licence"_s);
        QStringList listed;
        for (const ThirdParty &party : thirdParties()) {
            listed += party.name + u": "_s + party.licence;
            const bool inProgram = party.where == ThirdParty::Where::Program;
            const bool told = inProgram ? shown.contains(party.name) && shown.contains(party.licence)
                                        : shown.join(u'\n').contains(party.name);
            QCOMPARE(told, party.where != ThirdParty::Where::Development);
        }
        QCOMPARE(documented, listed);
    }

    void theSettingsWindowWritesNothingThatWasNotChanged()
    {
        QCOMPARE(languageAtStart(), u"english"_s);
        QStringList languages;
        frmSettings settings(
            m_texts, [&](const QString &language) { languages += language; }, Appearance::Light,
            [](Appearance) {});
        const auto chooseDark = [&settings] {
            settings.show();
            QTest::keyClick(child<QRadioButton>(&settings, "optAppearance_2"_L1), Qt::Key_Space);
            press(&settings, "btnOk"_L1);
        };
        settings.setLanguageOfRun(germanLanguage);
        settings.show();
        QVERIFY(child<QRadioButton>(&settings, "optLanguage_1"_L1)->isChecked());
        chooseDark();
        QCOMPARE(languageSetting(), u"english"_s);
        QVERIFY(languages.isEmpty());
        settings.show();
        QTest::keyClick(child<QRadioButton>(&settings, "optLanguage_0"_L1), Qt::Key_Space);
        press(&settings, "btnOk"_L1);
        QCOMPARE(languages, QStringList(u"english"_s)); // for this run, too
        settings.show();
        QVERIFY(child<QRadioButton>(&settings, "optLanguage_0"_L1)->isChecked());
        settings.close();
        setLanguageSetting(u"fr"_s); // its file is missing just now
        chooseDark();
        QCOMPARE(languageSetting(), u"fr"_s);
    }

    void theSettingsWindowKeepsTheLanguageAndAppliesIt()
    {
        QCOMPARE(languageAtStart(), u"english"_s);
        QStringList languages;
        QList<Appearance> appearances;
        frmSettings settings(
            m_texts,
            [&](const QString &language) {
                languages += language;
                m_texts.setText(131, u"Gut"_s);
                for (const auto button : {"btnOk"_L1, "btnAbort"_L1, "btnApply"_L1}) {
                    QVERIFY(!child<QPushButton>(&settings, button)->isEnabled());
                }
            },
            Appearance::Light, [&](Appearance appearance) { appearances += appearance; });
        settings.show();
        auto *const apply = child<QPushButton>(&settings, "btnApply"_L1);
        auto *const german = child<QRadioButton>(&settings, "optLanguage_1"_L1);
        QVERIFY(child<QRadioButton>(&settings, "optLanguage_0"_L1)->isChecked());
        QVERIFY(child<QRadioButton>(&settings, "optAppearance_1"_L1)->isChecked());
        QVERIFY(!apply->isEnabled());

        QTest::keyClick(german, Qt::Key_Space);
        QVERIFY(apply->isEnabled());
        press(&settings, "btnAbort"_L1);
        QVERIFY(!settings.isVisible() && languages.isEmpty());
        QCOMPARE(languageSetting(), u"english"_s);

        settings.show();
        QVERIFY(!german->isChecked() && !apply->isEnabled());
        QTest::keyClick(german, Qt::Key_Space);
        press(&settings, "btnApply"_L1);
        QVERIFY(settings.isVisible() && !apply->isEnabled());
        QCOMPARE(child<QPushButton>(&settings, "btnOk"_L1)->text(), u"Gut"_s);
        QCOMPARE(languageSetting(), u"deutsch"_s);
        QVERIFY(appearances.isEmpty());

        QTest::keyClick(child<QRadioButton>(&settings, "optAppearance_2"_L1), Qt::Key_Space);
        QVERIFY(apply->isEnabled());
        press(&settings, "btnOk"_L1);
        QVERIFY(!settings.isVisible());
        QCOMPARE(languages, QStringList({u"deutsch"_s, u"deutsch"_s}));

        settings.offerLanguages({{u"fr"_s, u"ktrconfig_fr.qm"_s}});
        settings.show();
        QVERIFY(german->isChecked());
        auto *const french = child<QRadioButton>(&settings, "optLanguage_2"_L1);
        QCOMPARE(french->text(), u"Français"_s);
        QTest::keyClick(french, Qt::Key_Space);
        press(&settings, "btnOk"_L1);
        QCOMPARE(languages.constLast(), u"fr"_s);
        QCOMPARE(languageSetting(), u"fr"_s);
        settings.show();
        QVERIFY(french->isChecked() && !apply->isEnabled());
        settings.close();
        QCOMPARE(appearances, QList<Appearance>{Appearance::Dark});
    }

    void thePreviewTurnsPagesAndShowsUnusedEntriesOnDemand()
    {
        frm_preview preview(m_texts);
        preview.showConfiguration(freshConfiguration(), {});
        QVERIFY(QTest::qWaitForWindowActive(&preview)); // or it has no shortcuts
        const auto *const page = child<QSpinBox>(&preview, "spn_page"_L1);
        const int brief = page->maximum();
        child<QAction>(&preview, "act_all_entries"_L1)->trigger();
        QVERIFY(page->maximum() > brief);
        QTest::keyClick(&preview, Qt::Key_PageDown, Qt::ControlModifier);
        QCOMPARE(page->value(), 2);
        auto *const sheets = preview.findChild<QAbstractScrollArea *>(); // turned by scrolling, too
        sheets->verticalScrollBar()->setValue(sheets->verticalScrollBar()->maximum());
        QCOMPARE(page->value(), page->maximum());
        child<QAction>(&preview, "act_entries_in_use"_L1)->trigger();
        QCOMPARE(page->maximum(), brief);
        QVERIFY(page->value() <= brief);
        QTest::keyClick(&preview, Qt::Key_Escape);
        QVERIFY(!preview.isVisible());
    }

    void printingKeepsToTheChosenPagesAndCopies()
    {
        PrintoutOptions options;
        options.entries = PrintedEntries::All;
        const Printout printout(freshConfiguration(), m_texts, options);
        QVERIFY(printout.pageCount() >= 3);
        const QString path = m_folder.filePath(u"out.pdf"_s);
        const auto print = [&](int from, int to) {
            QPrinter printer(QPrinter::HighResolution);
            preparePrinter(printer);
            printer.setOutputFileName(path);
            printer.setPrintRange(QPrinter::PageRange);
            printer.setFromTo(from, to);
            printer.setCopyCount(2);
            return printTo(printer, printout);
        };
        QVERIFY(print(2, 3));
        QFile pdf(path);
        QVERIFY(pdf.open(QIODevice::ReadOnly));
        QCOMPARE(pdf.readAll().count("/Type /Page\n"), 2 * 2);
        QVERIFY(!print(90, 95));
    }

    void withoutAPrinterTheUserIsTold()
    {
        if (!QPrinterInfo::availablePrinterNames().isEmpty()) {
            QSKIP("this machine has one");
        }
        frm_preview preview(m_texts);
        preview.showConfiguration(freshConfiguration(), {});
        child<QAction>(&preview, "act_print"_L1)->trigger();
        auto *const box = preview.findChild<QMessageBox *>();
        QVERIFY(box != nullptr && box->text().startsWith("No printer is installed."_L1));
    }

private:
    QTemporaryDir m_folder;
    TextTable m_texts;
};

QTEST_MAIN(SmallWindowsTest)
#include "small_windows_test.moc"
