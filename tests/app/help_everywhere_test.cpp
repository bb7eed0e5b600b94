#include "app/form_main.h"
#include "help/help_keys.h"
#include "help/help_places.h"
#include "help/manual_texts.h"
#include "link/io_thread.h"
#include "platform/registry.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/recorded_line.h"
#include "support/silent_line.h"

#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QMenu>
#include <QPushButton>
#include <QRegularExpression>
#include <QTabBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>

using namespace Qt::StringLiterals;
using namespace ktr;
using namespace ktr::test;

namespace {

/// The actions of a window's menus that open a window or a page and may be tried.
QList<QAction *> openersOf(const QWidget &window)
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

/// What a user takes for a control: no part of another one, and neither a scroll bar nor an empty area.
bool isControl(const QWidget &widget)
{
    if (!widget.isVisible() || widget.isWindow() || widget.focusPolicy() == Qt::NoFocus ||
        widget.focusProxy() != nullptr || widget.objectName().startsWith("qt_")) {
        return false;
    }
    for (const QWidget *above = widget.parentWidget(); above != nullptr; above = above->parentWidget()) {
        if (qobject_cast<const QComboBox *>(above) != nullptr ||
            qobject_cast<const QAbstractSpinBox *>(above) != nullptr ||
            qobject_cast<const QAbstractItemView *>(above) != nullptr ||
            qobject_cast<const QMenu *>(above) != nullptr) {
            return false;
        }
    }
    return true;
}

/// Whether a text says more than a name does.
bool isSentence(const QString &text)
{
    static const QRegularExpression word(u"[\\w-]{2,}"_s, QRegularExpression::UseUnicodePropertiesOption);
    constexpr int fewest = 3;
    int words = 0;
    for (auto match = word.globalMatch(text); match.hasNext(); match.next()) {
        ++words;
    }
    return words >= fewest;
}

} // namespace

/// F1 and Shift+F1 at every control of all windows that a menu opens.
class HelpEverywhereTest : public QObject
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
        MRegistry::setRegistryFile({});
    }

    void everyControlHasASectionAndASentence_data()
    {
        QTest::addColumn<QString>("language");
        QTest::newRow("English") << "en";
        QTest::newRow("German") << "de";
    }
    void everyControlHasASectionAndASentence()
    {
        QFETCH(const QString, language);
        m_manual = &ManualTexts::in(language);
        m_seen.clear();
        m_windows.clear();
        m_faults.clear();
        start({"-language", language, "-load", m_folder->filePath("pump.xml"), "-operational"});
        QWidget *mode = nullptr;
        for (QWidget *window : QApplication::topLevelWidgets()) {
            mode = window->objectName() == u"Form_betriebsmodus" ? window : mode;
        }
        QVERIFY(mode != nullptr);
        tryMenus(*mode);
        m_window->show();
        tryMenus(*m_window);
        for (const QString &fault : m_faults) {
            qWarning("%s", qPrintable(fault));
        }
        QVERIFY(m_faults.isEmpty());
        QVERIFY(m_seen.size() > 250);
        for (const char *window : {"FormMain", "Form_betriebsmodus", "Form_record", "Form_retention",
                                   "Form_foretell", "Form_compare", "Form_transmissions", "Form_fleet",
                                   "Form_rules", "Form_limits", "Form_sound", "Form_export", "Form_stationen",
                                   "Form_place", "Dlg_names", "frmSettings", "Form_manual", "Form_report"}) {
            QVERIFY2(m_windows.contains(QLatin1String(window)), window);
        }
    }

private:
    void start(const QStringList &arguments)
    {
        Environment environment = fixedEnvironment();
        environment.programFolder = m_folder->path();
        Services services{environment,
                          m_timers,
                          m_line,
                          m_network,
                          [] { return QStringList("/dev/ttyUSB0"); },
                          m_folder->path() + "/instance",
                          [] { return std::make_unique<RecordedLine>(); }};
        services.io = &m_io;
        m_window = std::make_unique<FormMain>(services);
        m_window->start(arguments);
    }

    /// Triggers each of its actions and looks at the window and what was opened.
    void tryMenus(QWidget &window)
    {
        look(window);
        for (const QPointer<QAction> action : openersOf(window)) {
            if (action == nullptr) {
                continue;
            }
            QTimer modal; // what asks is looked at and declined, however many questions follow
            connect(&modal, &QTimer::timeout, this, [this] {
                const QPointer<QWidget> asks = QApplication::activeModalWidget();
                if (asks == nullptr || m_isLooking) {
                    return;
                }
                look(*asks);
                if (asks != nullptr) {
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
                if (opened != nullptr && opened != m_window.get() &&
                    opened->objectName() != u"Form_betriebsmodus") {
                    opened->close();
                }
            }
        }
    }

    void look(QWidget &window)
    {
        if (qobject_cast<QMenu *>(&window) != nullptr || qobject_cast<QFileDialog *>(&window) != nullptr) {
            return; // the toolkit's own
        }
        m_isLooking = true;
        m_windows += window.objectName();
        const QPointer<QWidget> there(&window); // it may go while pages are turned
        lookAtControls(window);
        const QList<QTabWidget *> all = window.findChildren<QTabWidget *>();
        for (const QPointer<QTabWidget> &tabs : QList<QPointer<QTabWidget>>(all.begin(), all.end())) {
            const int shown = tabs == nullptr ? 0 : tabs->currentIndex();
            for (int tab = 0; tabs != nullptr && tab < tabs->count(); ++tab) {
                tabs->setCurrentIndex(tab);
                QCoreApplication::processEvents();
                if (there != nullptr) {
                    lookAtControls(*there);
                }
            }
            if (tabs != nullptr) {
                tabs->setCurrentIndex(shown);
            }
        }
        m_isLooking = false;
    }

    void lookAtControls(const QWidget &window)
    {
        for (const QWidget *control : window.findChildren<QWidget *>()) {
            if (control->window() == &window && isControl(*control)) {
                lookAt(*control);
            }
        }
    }

    /// A tab strip is another one with each of its pages.
    void lookAt(const QWidget &control)
    {
        const auto *bar = qobject_cast<const QTabBar *>(&control);
        const QString name = control.window()->objectName() + u'/' +
                             (bar != nullptr ? u"tab "_s + bar->tabText(bar->currentIndex())
                                             : withoutIndex(control.objectName()));
        if (m_seen.contains(name)) {
            return;
        }
        m_seen += name;
        const QString anchor = helpAnchor(&control, *m_manual);
        const ManualPart *part = m_manual->part(anchor);
        const QString meaning = HelpKeys::meaning(&control);
        const bool isChapter = part == nullptr || part->level == 1;
        const QString says = meaning.section(u'\n', 1);
        if (isChapter || !isSentence(says.isEmpty() ? meaning : says)) {
            m_faults += u"%1 (%2) -> %3: \"%4\""_s.arg(name, QLatin1String(control.metaObject()->className()),
                                                       anchor, QString(meaning).replace(u'\n', u" | "_s));
        }
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    ManualTimers m_timers;
    SilentLine m_line;
    SilentLine m_network;
    IoThread m_io;
    std::unique_ptr<FormMain> m_window;
    const ManualTexts *m_manual = nullptr;
    QSet<QString> m_seen;    ///< controls, by window and name
    QSet<QString> m_windows; ///< that were looked at
    QStringList m_faults;
    bool m_isLooking = false;
};

QTEST_MAIN(HelpEverywhereTest)
#include "help_everywhere_test.moc"
