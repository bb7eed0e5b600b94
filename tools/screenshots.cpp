// Pictures of every page of the main window and of the operational mode: screenshots FOLDER [--all]. Without
// --all only those that the documentation shows.

#include "app/form_main.h"
#include "lang/load_texts.h"
#include "lang/translations.h"
#include "look/style.h"
#include "operational_pictures.h"
#include "platform/environment.h"
#include "platform/registry.h"
#include "support/silent_line.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDateTimeEdit>
#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QTabBar>
#include <QTemporaryDir>

#include <cstdio>

using namespace ktr;

namespace {

constexpr QSize laptop(1366, 728); // what a task bar leaves
constexpr QSize smallest(1024, 700);
constexpr QSize comfortable(1060, 620);
constexpr std::array pageNames = {"gsm",  "ip",       "limit-values", "switch-points", "test",
                                  "info", "ethernet", "connection",   "calibration"};
static_assert(pageNames.size() == pageCount);

void settle()
{
    for (int turn = 0; turn < 50; ++turn) {
        QCoreApplication::processEvents();
    }
}

/// The sample in a folder whose name is the same anywhere, since the status bar tells it; gone at the end.
class ShownSample
{
public:
    ShownSample()
    {
        QDir().mkpath(folder());
        QFile::remove(path());
        QFile::copy(QStringLiteral("samples/pumping-station.xml"), path());
    }
    ~ShownSample()
    {
        QFile::remove(path());
        QDir().rmdir(folder()); // unless somebody else has files there
    }
    Q_DISABLE_COPY_MOVE(ShownSample)

    static QString folder() { return QDir::tempPath() + QStringLiteral("/stations"); }
    static QString path() { return folder() + QStringLiteral("/pumping-station.xml"); }
};

/// The window that compares the sample with what somebody else made of it, while this user edited it, too.
QPixmap compared(FormMain &window, const QSize &size)
{
    Configuration other = window.document().configuration();
    other.versionText = other.info.version = QStringLiteral("2026-11-20 16:42:10");
    other.administrators[2].number = QStringLiteral("+447700900199");
    other.limitValues[2].limit = QStringLiteral("0.4");
    other.limitValues[2].recipients = 7;
    other.switchPoints[0].value = QStringLiteral("0");
    other.holidays.add(QDate(2027, 5, 3));
    window.document().edit([](Configuration &mine) {
        mine.limitValues[2].limit = QStringLiteral("0.3");
        mine.limitValues[2].alarm = QStringLiteral("Wet well low");
        mine.archiving[8].interval = QStringLiteral("10");
    });
    window.compareWith(other, QStringLiteral("pumping-station (from the site).xml"));
    for (QWidget *compare : QApplication::topLevelWidgets()) {
        if (compare->objectName() == u"Form_compare") {
            compare->resize(size);
            settle();
            return compare->grab();
        }
    }
    return {};
}

/// The window that plays the sample, with a level that has risen and a flow that has ceased.
QPixmap foretold(FormMain &window, const QSize &size)
{
    window.findChild<QAction *>(QStringLiteral("mnu_foretell"))->trigger();
    auto *foretell = window.findChild<QWidget *>(QStringLiteral("Form_foretell"));
    if (foretell == nullptr) {
        return {};
    }
    foretell->resize(size);
    auto *begin = foretell->findChild<QDateTimeEdit *>(QStringLiteral("Date_foretell_begin"));
    begin->setDateTime(QDateTime(QDate(2026, 12, 29), QTime(8, 0)));
    Q_EMIT begin->editingFinished();
    for (const auto &[channel, value] : {std::pair(10, "40"), std::pair(9, "3,6"), std::pair(10, "4")}) {
        auto *field = foretell->findChild<QLineEdit *>(QStringLiteral("Txt_foretell_%1").arg(channel));
        field->setText(QLatin1String(value));
        Q_EMIT field->textEdited(field->text());
    }
    for (int step = 0; step < 6; ++step) {
        foretell->findChild<QAbstractButton *>(QStringLiteral("Cmd_foretell_step"))->click();
    }
    settle();
    QPixmap picture = foretell->grab();
    foretell->close();
    return picture;
}

/// What the user calls the inputs and outputs.
QPixmap names(FormMain &window)
{
    window.findChild<QAction *>(QStringLiteral("mnu_names"))->trigger();
    auto *dialog = window.findChild<QWidget *>(QStringLiteral("Dlg_names"));
    if (dialog == nullptr) {
        return {};
    }
    settle();
    QPixmap picture = dialog->grab();
    dialog->close();
    return picture;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.isEmpty() || !QDir().mkpath(arguments.front())) {
        std::fprintf(stderr, "usage: screenshots FOLDER [--all]\n");
        return 2;
    }
    const QDir pictures(QDir(arguments.front()).absolutePath());
    QDir::setCurrent(QStringLiteral(KTR_SOURCE_DIR));
    const bool all = arguments.contains(QStringLiteral("--all"));
    const QTemporaryDir folder;
    MRegistry::setRegistryFile(folder.filePath(QStringLiteral("registry.json")));
    const ShownSample sample;
    if (!QFileInfo::exists(sample.path())) {
        std::fprintf(stderr, "screenshots: %s cannot be written\n", qPrintable(sample.path()));
        return 1;
    }

    for (const Appearance appearance : {Appearance::Light, Appearance::Dark}) {
        applyAppearance(application, appearance);
        for (const char *language : {"english", "deutsch"}) {
            const bool dark = appearance == Appearance::Dark;
            const bool german = language[0] == 'd';
            const QString suffix =
                QStringLiteral("%1-%2").arg(german ? QStringLiteral("de") : QStringLiteral("en"),
                                            dark ? QStringLiteral("dark") : QStringLiteral("light"));
            const QLocale locale(german ? QLocale::German : QLocale::English);
            QLocale::setDefault(locale); // as the system's would be
            TextTable texts;
            LoadTexts(texts, QString::fromLatin1(language), QStringLiteral("data/language.ini"));
            Translations translations;
            translations.use(QString::fromLatin1(language));
            if (!all && dark && !german) {
                continue; // the manual shows pages that are light, and other documents one language dark
            }
            QString failed = takeOperationalPictures(pictures, texts, locale, laptop, suffix);
            if (all && failed.isEmpty()) {
                failed = takeOperationalPictures(pictures, texts, locale, smallest,
                                                 QLatin1String("small-") + suffix);
            }
            if (!failed.isEmpty()) {
                std::fprintf(stderr, "screenshots: %s cannot be written\n", qPrintable(failed));
                return 1;
            }
            test::SilentLine line;
            test::SilentLine network;
            EventLoopTimers timers;
            Environment environment = systemEnvironment();
            environment.locale = locale;
            FormMain window({environment, timers, line, network,
                             [] { return QStringList{QStringLiteral("/dev/ttyUSB0")}; },
                             folder.filePath(QStringLiteral("instance"))});
            window.resize(laptop);
            window.start({u'-' + QString::fromLatin1(language), QStringLiteral("-load"), sample.path()});
            settle();
            for (int page = 0; page < pageCount; ++page) {
                window.tabs().setCurrentIndex(page);
                window.tabs().tabBar()->clearFocus();
                settle();
                const QString name =
                    QStringLiteral("%1-%2.png")
                        .arg(QLatin1String(pageNames[static_cast<std::size_t>(page)]), suffix);
                if (!window.grab().save(pictures.filePath(name))) {
                    std::fprintf(stderr, "screenshots: %s cannot be written\n", qPrintable(name));
                    return 1;
                }
            }
            const QString name = QStringLiteral("compare-%1.png").arg(suffix);
            if (!compared(window, all ? smallest : comfortable).save(pictures.filePath(name))) {
                std::fprintf(stderr, "screenshots: %s cannot be written\n", qPrintable(name));
                return 1;
            }
            const QString named = QStringLiteral("names-%1.png").arg(suffix);
            if (all && !names(window).save(pictures.filePath(named))) {
                std::fprintf(stderr, "screenshots: %s cannot be written\n", qPrintable(named));
                return 1;
            }
            const QString played = QStringLiteral("foretell-%1.png").arg(suffix);
            if (!foretold(window, all ? smallest : laptop).save(pictures.filePath(played))) {
                std::fprintf(stderr, "screenshots: %s cannot be written\n", qPrintable(played));
                return 1;
            }
        }
    }
    return 0;
}
