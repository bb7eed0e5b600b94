#include "app/program_start.h"

#include "app/language_setting.h"
#include "platform/registry.h"

namespace ktr {

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
    connect(&m_takeOver, &TakeOver::givenUp, this, &ProgramStart::givenUp);
    connect(&m_takeOver, &TakeOver::done, this, &ProgramStart::finish);
    connect(&m_instance, &SingleInstance::frontRequested, this, &ProgramStart::frontRequested);
    connect(&m_instance, &SingleInstance::closeRequested, this, &ProgramStart::closeRequested);
}

void ProgramStart::begin(const CommandLine &options)
{
    languageSetting();
    const bool isCorrupt = MRegistry::lastError() == MRegistry::Error::Corrupt;
    const QString kept = languageAtStart(); // this write moves damaged settings aside
    m_language.use(!options.language.isEmpty() ? options.language
                   : options.german            ? QString(germanLanguage)
                   : options.english           ? QString(englishLanguage)
                                               : kept);
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
    Q_EMIT done(remark);
}

QStringList ProgramStart::troubles() const
{
    QStringList troubles = m_settingsTroubles;
    if (!m_instance.trouble()) {
        troubles += tr("Other KTRconfig windows may not be noticed: %1").arg(m_instance.trouble().message());
    }
    return troubles;
}

} // namespace ktr
