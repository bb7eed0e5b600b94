#include "app/form_main.h"
#include "config/configuration_file.h"
#include "look/outside_texts.h"
#include "opmode/window/form_betriebsmodus.h"
#include "platform/files.h"
#include "platform/registry.h"
#include "support/environment.h"
#include "support/recorded_line.h"
#include "support/silent_line.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QToolTip>
#include <QTreeView>

#include <atomic>
#include <fcntl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace ktr;
using namespace ktr::test;

namespace {

/// In the present folder a pipe waits under this name; a station's name holds no "/".
const QString hostile = QStringLiteral("<img src=\"pipe\">");

/// A pipe that notes when somebody opens it to read. Whoever does finds it empty and is not held up.
class Pipe
{
public:
    explicit Pipe(const QByteArray &path) : m_path(path)
    {
        m_made = mkfifo(m_path.constData(), 0600) == 0;
        m_writer = std::thread([this] {
            const int own = open(m_path.constData(), O_WRONLY); // comes back when there is a reader
            m_isRead = true;
            unlink(m_path.constData());
            close(own);
        });
    }
    ~Pipe()
    {
        const int own = open(m_path.constData(), O_RDONLY | O_NONBLOCK); // fails when it was read
        m_writer.join();
        close(own);
    }
    bool isMade() const { return m_made; }
    bool isRead() const { return m_isRead; }

private:
    QByteArray m_path;
    bool m_made;
    std::atomic<bool> m_isRead = false;
    std::thread m_writer;
};

} // namespace

class OutsideTextsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir::setCurrent(m_folder->path()));
        MRegistry::setRegistryFile(path("registry.json"));
        m_pipe = std::make_unique<Pipe>(QFile::encodeName(path("pipe")));
        QVERIFY(m_pipe->isMade());
        m_labels = m_tips = 0;
    }

    void cleanup()
    {
        QToolTip::hideText();
        m_window.reset();
        m_pipe.reset();
        m_folder.reset();
    }

    void noPageOfTheMainWindowReadsATextAsMarkUp()
    {
        start();
        QTRY_VERIFY(m_window->findChild<QPushButton *>("cmd_logfile_open") != nullptr);
        // The module says it, too, and the summary of a transmission names the fields that were not taken.
        Q_EMIT m_serial.received("at+cmgs=\"" + hostile.toLatin1() + "\"\r");
        Q_EMIT m_serial.received("V,2.1.5," + hostile.toLatin1() + ",KTR\x1A");
        m_window->findChild<QAction *>("mnu_doConfig")->trigger();
        auto *detail = m_window->findChild<QLabel *>("lbl_transmission_detail");
        for (int step = 0; step < 200 && !detail->text().contains("<a href"); ++step) {
            Q_EMIT m_serial.received("at+cmgr=1\r");
        }
        QVERIFY2(detail->text().contains("&lt;img"), qPrintable(detail->text()));
        m_window->findChild<QAbstractButton *>("cmd_problems")->setChecked(true);
        for (int page = 0; page < m_window->tabs().count(); ++page) {
            m_window->tabs().setCurrentIndex(page);
            look(*m_window);
        }
        QVERIFY2(m_labels >= 50 && m_tips >= 10, qPrintable(QString("%1 %2").arg(m_labels).arg(m_tips)));
        for (const char *opening : {"mnu_about", "mnu_settings"}) {
            m_window->findChild<QAction *>(opening)->trigger();
            lookAtOther();
        }
        lookAtNext();
        m_window->document().edit([](Configuration &configuration) { configuration.info.author += u'!'; });
        QVERIFY(m_window->close()); // asks whether to save
        QVERIFY(!m_pipe->isRead());
    }

    void noPageOfTheOperationalModeReadsATextAsMarkUp()
    {
        const QByteArray stubs = m_folder->path().toLocal8Bit();
        qputenv("PATH", stubs + ':' + qgetenv("PATH"));
        QVERIFY(replaceFile(path("notify-send"), "#!/bin/sh\nfor text; do :; done\necho \"$text\" >told\n"));
        QFile::setPermissions(path("notify-send"), QFile::ReadOwner | QFile::ExeOwner);
        start();
        m_window->findChild<QAction *>("mnu_betriebsmodus")->trigger();
        QWidget *const window = other();
        QVERIFY(window != nullptr);
        m_station->say("+CSQ: " + hostile.toLatin1() + '\r');
        m_station->say("at+cmgs=\"" + hostile.toLatin1() + "\"\r");
        m_station->say("M," + hostile.toLatin1() + " fail\x1A");
        auto *bar = window->findChild<QWidget *>("AlarmBar");
        QTRY_VERIFY(bar->isVisible());
        auto *tree = window->findChild<QTreeView *>();
        tree->expandAll();
        auto *pages = window->findChild<QTabWidget *>("TabStrip_pages");
        for (int page = 0; page < pages->count(); ++page) {
            pages->setCurrentIndex(page);
            look(*window);
        }
        QVERIFY(window->findChild<QLabel *>("lbl_pic0_csq")->text().contains(hostile));
        QVERIFY2(m_labels >= 15 && m_tips >= 30, qPrintable(QString("%1 %2").arg(m_labels).arg(m_tips)));
        for (const char *opening : {"mnu_export", "mnu_station_list", "mnu_station_del"}) {
            lookAtNext();
            window->findChild<QAction *>(opening)->trigger();
        }
        // A desktop that reads mark-up finds none; another shows no escapes.
        QTRY_VERIFY(QFileInfo(path("told")).size() > 0);
        QByteArray told;
        QVERIFY(readFile(path("told"), told, 1000));
        QVERIFY2(told.contains("img src") && !told.contains('<') && !told.contains('&'), told.constData());
        lookAtNext(); // that a station is watched
        QVERIFY(!window->close());
        qobject_cast<Form_betriebsmodus *>(window)->setAsksBeforeEnd(false);
        QVERIFY(window->close());
        QVERIFY(!m_pipe->isRead());
    }

    void aTipThatIsOpenFollowsItsText()
    {
        showOutsideTextsPlain(*qApp);
        QLabel label("label");
        label.setToolTip("searching");
        label.show();
        QVERIFY(QTest::qWaitForWindowExposed(&label));
        QCursor::setPos(label.mapToGlobal(label.rect().center()));
        lookAtTip(label, label.rect().center(), [&label] {
            QCOMPARE(QToolTip::text(), "searching");
            label.setToolTip("connected");
            QCOMPARE(QToolTip::text(), "connected");
        });
    }

    void messagesOnOneLineAreSentencesOfTheirOwn()
    {
        QCOMPARE(asSentences("Saved: a.xml"), "Saved: a.xml");
        QCOMPARE(asSentences("It holds for this run\n Other windows are not noticed: a\n\nEnd."),
                 "It holds for this run. Other windows are not noticed: a. End.");
        QCOMPARE(asSentences("First of all:\none, \ntwo!\r\n"), "First of all: one, two!");
    }

    void aLongTipIsFolded()
    {
        QCOMPARE(foldedTip("a\nb c\n"), "a\nb c\n");
        const QString word(79, u'w');
        QCOMPARE(foldedTip(word + " b " + word + u'w' + word), word + "\nb\n" + word + "w\n" + word);
        const QString folded = foldedTip(QString(100'000, u'x'));
        QCOMPARE(folded.count(u'\n'), 14);
        QVERIFY(folded.endsWith("x…"));
        QCOMPARE(foldedTip(folded), folded);
    }

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }

    /// The program with hostile interface texts, a hostile configuration and hostile stations.
    void start()
    {
        QString texts = "[english]\r\n";
        for (int number = 1; number <= TextTable::count; ++number) {
            texts += QString("Text%1=%2\r\n").arg(number).arg(hostile);
        }
        QVERIFY(replaceFile(path("language.ini"), texts.toLatin1()));
        const QByteArray marks = hostile.toHtmlEscaped().toLatin1();
        QByteArray nodes = "<KTR>";
        const auto node = [&](const QByteArray &key, const QByteArray &text) {
            nodes += "<item hostAddress=\"10.0.0.7\" online=\"-1\" key=\"" + key + "\" text=\"" + text +
                     "\" ForeColor=\"255\"/>";
        };
        node(marks, marks);
        node(marks + "/meldung", marks);
        node(marks + "/meldung/+49 --&gt; M," + marks, "+49 --&gt; M," + marks + QByteArray(5000, 'x'));
        node(marks + "/history", marks);
        node(marks + "/history/1", marks);
        node(marks + "/ip", "IP (" + marks + ")");
        node(marks + "/ip/ip1", marks + " = " + marks);
        QVERIFY(replaceFile(path("nodes.xml"), nodes + "</KTR>"));

        Environment environment = fixedEnvironment();
        environment.programFolder = m_folder->path();
        Configuration configuration;
        makeNew(configuration, environment);
        const QString endless(100'000, u'x');
        configuration.gsm.stationId = hostile;
        configuration.info.author = configuration.info.comment = hostile;
        for (Administrator &administrator : configuration.administrators) {
            administrator.name = hostile + endless;
        }
        for (LimitValue &value : configuration.limitValues) {
            value.alarm = hostile + endless; // too long to be sent: a problem
            value.channel = 9;
        }
        for (Scaling &scaling : configuration.scaling) {
            scaling.unit = hostile + endless;
        }
        for (SwitchPoint &point : configuration.switchPoints) {
            point.value = hostile + endless;
            point.target = 1;
        }
        QVERIFY(replaceFile(path("hostile.xml"), writeConfiguration(configuration, environment)));
        m_window = std::make_unique<FormMain>(Services{environment, m_timers, m_serial, m_network,
                                                       [] { return QStringList(hostile); }, path("instance"),
                                                       [this] {
                                                           auto line = std::make_unique<RecordedLine>();
                                                           m_station = line.get();
                                                           return line;
                                                       }});
        m_window->start({"-load", path("hostile.xml")});
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }

    /// Looks at all labels and at the tool tip of all that is to be seen in a window.
    void look(QWidget &window)
    {
        window.grab();
        QCoreApplication::processEvents();
        QList<QPointer<QWidget>> widgets{&window};
        for (QWidget *widget : window.findChildren<QWidget *>()) {
            widgets += widget;
        }
        for (const QPointer<QWidget> &widget : widgets) {
            if (widget == nullptr) { // a tool tip that another one took the place of
                continue;
            }
            if (const auto *label = qobject_cast<QLabel *>(widget.data())) {
                QVERIFY2(!isRead(*label) && label->text().size() < 20'000,
                         qPrintable(label->objectName() + ": " + label->text()));
                m_labels += label->text().contains("<img") ? 1 : 0;
            }
            if (!widget->isVisible()) {
                continue;
            }
            auto *view = qobject_cast<QAbstractItemView *>(widget.data());
            if (view != nullptr && view->model() != nullptr) {
                lookAtTips(*view);
            } else if (!widget->toolTip().isEmpty()) {
                lookAtTip(*widget, widget->rect().center());
            }
        }
    }

    static bool isRead(const QLabel &label)
    {
        const bool isMarkUp = label.textFormat() == Qt::RichText ||
                              (label.textFormat() == Qt::AutoText && Qt::mightBeRichText(label.text()));
        return isMarkUp && label.text().contains("<img");
    }

    void lookAtTips(QAbstractItemView &view)
    {
        if (auto *header = qobject_cast<QHeaderView *>(&view)) {
            for (int section = 0; section < header->count(); ++section) {
                const int along = header->sectionViewportPosition(section) + 3;
                const bool flat = header->orientation() == Qt::Horizontal;
                lookAtTip(*header->viewport(), flat ? QPoint(along, 5) : QPoint(5, along));
            }
            return;
        }
        for (int row = 0; row < view.model()->rowCount(); ++row) {
            for (int column = 0; column < view.model()->columnCount(); ++column) { // else it is slow to show
                QVERIFY(view.model()->index(row, column).data().toString().size() < 6000);
            }
        }
        for (int y = 3; y < view.viewport()->height(); y += 8) {
            for (int x = 40; x < view.viewport()->width(); x += 120) {
                lookAtTip(*view.viewport(), {x, y});
            }
        }
    }

    void lookAtTip(
        QWidget &widget, const QPoint &place, const std::function<void()> &whileOpen = [] {})
    {
        QHelpEvent event(QEvent::ToolTip, place, widget.mapToGlobal(place));
        QApplication::sendEvent(&widget, &event);
        for (const QWidget *window : QApplication::topLevelWidgets()) {
            const auto *tip = window->inherits("QTipLabel") ? qobject_cast<const QLabel *>(window) : nullptr;
            if (tip != nullptr && tip->isVisible()) {
                QVERIFY2(!isRead(*tip), qPrintable(tip->text()));
                QVERIFY2(tip->text().size() <= 1300 && tip->width() < 1500,
                         qPrintable(tip->text().left(200)));
                QVERIFY(!tip->text().contains("&lt;"));
                m_tips += tip->text().contains("<img") ? 1 : 0;
            }
        }
        whileOpen();
        QToolTip::hideText();
    }

    /// The window that is open besides the main window.
    QWidget *other() const
    {
        for (QWidget *window : QApplication::topLevelWidgets()) {
            if (window != m_window.get() && window->isVisible() && !window->inherits("QTipLabel")) {
                return window;
            }
        }
        return nullptr;
    }

    void lookAtOther()
    {
        QWidget *const window = other();
        QVERIFY(window != nullptr);
        look(*window);
        window->close();
    }

    /// Looks at the next window that asks something, and refuses.
    void lookAtNext()
    {
        QTimer::singleShot(0, this, [this] {
            QWidget *const window = QApplication::activeModalWidget();
            QVERIFY(window != nullptr);
            look(*window);
            if (auto *box = qobject_cast<QMessageBox *>(window)) {
                QTest::mouseClick(box->button(QMessageBox::No), Qt::LeftButton);
            } else if (auto *cancel = window->findChild<QPushButton *>("CancelButton")) {
                QTest::mouseClick(cancel, Qt::LeftButton);
            } else {
                window->close();
            }
        });
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<Pipe> m_pipe;
    EventLoopTimers m_timers;
    SilentLine m_serial;
    SilentLine m_network;
    RecordedLine *m_station = nullptr;
    std::unique_ptr<FormMain> m_window;
    int m_labels = 0; ///< that hold the marks, letter for letter
    int m_tips = 0;
};

QTEST_MAIN(OutsideTextsTest)
#include "outside_texts_test.moc"
