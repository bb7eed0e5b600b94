#include "app/program_start.h"

#include "app/language_setting.h"
#include "look/program_name.h"
#include "platform/registry.h"
#include "platform/settings_store.h"
#include "platform/terminal.h"

#include <cstdio>

namespace ktr {

namespace {

const QString proposedKey = QStringLiteral("language");
const QString proposed = QStringLiteral("proposed");

void printOnTerminal(const QString &line)
{
    borrowConsole();
    prepareConsole();
    std::fputs((programName + QLatin1String(": ") + line + u'\n').toUtf8().constData(), stderr);
    std::fflush(stderr);
}

/// What the command line asks this start to open.
QStringList wantedOf(const CommandLine &options)
{
    QStringList wanted;
    if (options.operationalMode) {
        wanted += QStringLiteral("-operational");
    }
    if (!options.record.isEmpty()) {
        wanted += QLatin1String("-record ") + options.record;
    }
    if (options.load) {
        wanted += QLatin1String("-load ") + options.fileNameAsWritten.trimmed();
    } else if (!options.bareFileName.isEmpty()) {
        wanted += options.bareFileName;
    }
    return wanted;
}

} // namespace

ProgramStart::ProgramStart(const Environment &environment, Timers &timers, const QString &instanceName,
                           const TextTable &texts, InterfaceLanguage &language, std::function<Works()> works)
    : m_language(language),
      m_instance(timers, instanceName, std::move(works)),
      m_takeOver(m_instance, texts, m_wait, environment.programFolder)
{
    m_wait.setObjectName(QStringLiteral("Tmr_wait"));
    m_wait.setSingleShot(true);
    connect(&m_takeOver, &TakeOver::titleWanted, this, &ProgramStart::titleWanted);
    connect(&m_takeOver, &TakeOver::statusMessage, this, &ProgramStart::statusMessage);
    connect(&m_takeOver, &TakeOver::givenUp, this, &ProgramStart::giveUp);
    connect(&m_takeOver, &TakeOver::done, this, &ProgramStart::finish);
    connect(&m_instance, &SingleInstance::frontRequested, this, &ProgramStart::frontRequested);
    connect(&m_instance, &SingleInstance::closeRequested, this, &ProgramStart::closeRequested);
}

/// Empty where another one is asked for, or there are no texts of it.
QString ProgramStart::languageOfSystem(const CommandLine &options, bool isFirst,
                                       const QStringList &spoken) const
{
    const bool isAsked = options.german || options.english || !options.language.isEmpty();
    const bool isProposed =
        SettingsStore().GetSetting(settingsOwner, settings_sections::startup, proposedKey) == proposed;
    if (isAsked || !(isFirst || isProposed)) {
        return {};
    }
    const QString first = spoken.value(0).replace(u'-', u'_');
    const QString exactly = m_language.nameOf(first);
    return exactly.isEmpty() ? m_language.nameOf(first.section(u'_', 0, 0)) : exactly;
}

void ProgramStart::keepProposed()
{
    if (!m_proposed.isEmpty()) {
        setLanguageSetting(m_proposed);
        proposeNone();
    }
}

void ProgramStart::proposeNone()
{
    m_isLanguageOfRun = false;
    m_proposed.clear();
    SettingsStore().SaveSetting(settingsOwner, settings_sections::startup, proposedKey, QString());
}

void ProgramStart::begin(const CommandLine &options, bool isWelcomed, const QStringList &systemLanguages)
{
    m_wanted = wantedOf(options);
    const bool isFirst = languageSetting().isEmpty();
    const bool isCorrupt = MRegistry::lastError() == MRegistry::Error::Corrupt;
    const QString kept = languageAtStart(); // this write moves damaged settings aside
    const QString named = m_language.nameOf(options.language);
    m_proposed = isWelcomed ? languageOfSystem(options, isFirst, systemLanguages) : QString();
    if (!m_proposed.isEmpty() && isFirst) { // also at the next start, if this run ends without a choice
        SettingsStore().SaveSetting(settingsOwner, settings_sections::startup, proposedKey, proposed);
    }
    m_isLanguageOfRun =
        !m_proposed.isEmpty() || options.german || options.english || !options.language.isEmpty();
    m_language.use(!named.isEmpty()        ? named
                   : options.german        ? QString(germanLanguage)
                   : options.english       ? QString(englishLanguage)
                   : !m_proposed.isEmpty() ? m_proposed
                                           : kept);
    if (named.isEmpty() && !options.language.isEmpty()) {
        m_settingsTroubles += tr("There are no texts of the language \"%1\"").arg(options.language);
    }
    if (isCorrupt) {
        m_settingsTroubles +=
            tr("The settings could not be read; they are kept under another name beside the new ones");
    }
    const Status place = MRegistry::checkPlace();
    if (!place || languageSetting().isEmpty()) {
        m_settingsTroubles += tr("The settings cannot be written; what is chosen holds for this run");
    }
    if (!place) {
        m_settingsTroubles += place.message();
    }
    if (m_instance.claim()) {
        finish({});
    } else {
        m_takeOver.begin();
    }
}

void ProgramStart::finish(const QString &remark)
{
    m_isDone = true;
    if (m_takeOver.hasEndedOther()) {
        printOnTerminal(tookPlace());
    }
    Q_EMIT done(remark);
}

/// Who started the program from a terminal or a script sees no window of it.
void ProgramStart::giveUp()
{
    QString line = tr("The KTRconfig that is open already goes on; this one ends.");
    if (!m_wanted.isEmpty()) {
        line += u' ' + tr("Not done: %1").arg(m_wanted.join(QLatin1String(", ")));
    }
    printOnTerminal(line);
    Q_EMIT givenUp();
}

QString ProgramStart::tookPlace()
{
    return tr("The KTRconfig that was open already was closed; this one takes its place.");
}

QStringList ProgramStart::troubles() const
{
    QStringList troubles = m_settingsTroubles;
    if (m_takeOver.hasEndedOther()) {
        troubles += tookPlace();
    }
    if (!m_instance.trouble()) {
        troubles += tr("Other KTRconfig windows may not be noticed: %1").arg(m_instance.trouble().message());
    }
    return troubles;
}

} // namespace ktr
