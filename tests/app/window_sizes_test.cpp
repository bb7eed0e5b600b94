#include "app/form_main.h"
#include "help/help_places.h"
#include "look/style.h"
#include "opmode/window/message_line.h"
#include "platform/registry.h"
#include "support/cut_off.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/recorded_line.h"
#include "support/silent_line.h"

#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QMenu>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace ktr;
using namespace ktr::test;

namespace {

constexpr QSize smallest(1024, 700);

/// The actions of a window's menus, those of submenus included, that open a window or page and may be tried.
QList<QAction *> openers(const QWidget &window)
{
    static const QStringList excluded = {
        "mnu_close", "mnu_exit",          "mnu_Exit", "mnu_Load",          "mnu_SaveAs",  "mnu_Save",
        "mnu_print", "mnu_doApplication", "mnu_wall", "mnu_betriebsmodus", "mnu_del_stn", "mnu_doConfig"};
    QList<QAction *> found;
    for (QAction *action : window.findChildren<QAction *>()) {
        if (action->objectName().startsWith("mnu_") && action->menu() == nullptr && action->isEnabled() &&
            !excluded.contains(action->objectName())) {
            found += action;
        }
    }
    return found;
}

} // namespace

class WindowSizesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        MRegistry::setRegistryFile(m_folder->filePath("registry.json"));
        QVERIFY(QFile::copy(KTR_SOURCE_DIR "/data/language.ini", m_folder->filePath("language.ini")));
        QVERIFY(QFile::copy(KTR_SOURCE_DIR "/samples/pumping-station.xml", m_folder->filePath("pump.xml")));
    }
    void cleanup()
    {
        m_window.reset();
        m_folder.reset();
    }

    void whateverAMenuOpensShowsAllInASmallWindow_data()
    {
        QTest::addColumn<QString>("language");
        QTest::newRow("English") << "-english";
        QTest::newRow("German") << "-deutsch";
    }
    void whateverAMenuOpensShowsAllInASmallWindow()
    {
        QFETCH(QString, language);
        applyAppearance(*qApp, Appearance::Light);
        start({language, "-load", m_folder->filePath("pump.xml"), "-operational"});
        QWidget *mode = nullptr;
        for (QWidget *window : QApplication::topLevelWidgets()) {
            mode = window->objectName() == u"Form_betriebsmodus" ? window : mode;
        }
        QVERIFY(mode != nullptr);
        m_cut.clear();
        m_opened = {"Form_betriebsmodus", m_window->objectName()};
        mode->findChild<MessageLine *>()->pin(QString("What must not go under. ").repeated(12));
        tryMenus(*mode);
        tryMenus(*m_window);
        m_cut.removeDuplicates();
        for (const QString &cut : m_cut) {
            qWarning("%s", qPrintable(cut));
        }
        QVERIFY(m_cut.isEmpty());
        for (const char *window : {"Form_record", "Form_retention", "Form_foretell", "Form_compare",
                                   "Form_transmissions", "Dlg_names", "Form_rules"}) {
            QVERIFY2(m_opened.contains(window), qPrintable(m_opened.join(u' ')));
        }
    }

private:
    void start(const QStringList &arguments)
    {
        Environment environment = fixedEnvironment();
        environment.programFolder = m_folder->path();
        m_window = std::make_unique<FormMain>(
            Services{environment, m_timers, m_line, m_network, [] { return QStringList("/dev/ttyUSB0"); },
                     m_folder->path() + "/instance", [] { return std::make_unique<RecordedLine>(); }});
        m_window->start(arguments);
    }

    /// Triggers each of its actions and looks at the window and what was opened.
    void tryMenus(QWidget &window)
    {
        for (const QPointer<QAction> action : openers(window)) {
            if (action == nullptr) {
                continue;
            }
            // What asks is looked at and declined, however many questions follow.
            QTimer modal;
            QObject::connect(&modal, &QTimer::timeout, this, [this] {
                if (QWidget *asks = QApplication::activeModalWidget()) {
                    look(*asks);
                    asks->close();
                }
            });
            modal.start(0);
            action->trigger();
            QCoreApplication::processEvents();
            const QWidgetList all = QApplication::topLevelWidgets();
            for (const QPointer<QWidget> &opened : QList<QPointer<QWidget>>(all.begin(), all.end())) {
                if (opened == nullptr || !opened->isVisible() || opened->objectName().isEmpty()) {
                    continue;
                }
                look(*opened);
                if (opened == nullptr) { // it went meanwhile
                    continue;
                }
                if (opened != m_window.get() && opened->objectName() != u"Form_betriebsmodus") {
                    opened->close();
                }
            }
        }
    }

    void look(QWidget &window)
    {
        m_opened += window.objectName();
        m_opened.removeDuplicates();
        // The toolkit's own dialogs lay themselves out.
        if (qobject_cast<QMenu *>(&window) != nullptr || qobject_cast<QFileDialog *>(&window) != nullptr) {
            return;
        }
        const bool isOwn = window.isWindow() && window.objectName() != u"Dialog" &&
                           window.objectName() != u"SavePdfDialog" && !window.objectName().startsWith("qt_");
        if (isOwn && !hasHelpPlace(window.objectName())) {
            m_cut += "F1 finds nothing about " + window.objectName();
        }
        window.resize(window.isModal() ? window.size().boundedTo(smallest) : smallest);
        const QList<QTabWidget *> pages = window.findChildren<QTabWidget *>();
        noteCut(window);
        for (QTabWidget *tabs : pages) {
            const int shown = tabs->currentIndex();
            for (int tab = 0; tab < tabs->count(); ++tab) {
                tabs->setCurrentIndex(tab);
                noteCut(window);
            }
            tabs->setCurrentIndex(shown);
        }
    }
    void noteCut(const QWidget &window)
    {
        constexpr int turns = 5; // for texts that come after, and the layouts that follow them
        for (int turn = 0; turn < turns; ++turn) {
            QCoreApplication::processEvents();
        }
        m_cut += cutOff(window);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    ManualTimers m_timers;
    SilentLine m_line;
    SilentLine m_network;
    std::unique_ptr<FormMain> m_window;
    QStringList m_opened; ///< the names of the windows that were looked at
    QStringList m_cut;
};

QTEST_MAIN(WindowSizesTest)
#include "window_sizes_test.moc"
