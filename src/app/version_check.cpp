#include "app/version_check.h"

#include "config/channels.h"
#include "config/document.h"
#include "lang/text_table.h"
#include "link/conversation_log.h"
#include "link/module_link.h"

namespace ktr {

VersionCheck::VersionCheck(const ModuleLink &link, Document &document, const TextTable &texts)
    : m_transmitter(link.transmitter()), m_document(document), m_texts(texts)
{
    connect(&m_transmitter, &Transmitter::started, this, [this] { m_isOverwritingReported = false; });
    connect(&link, &ModuleLink::changed, this,
            [this, &link] { m_isDifferenceReported = m_isDifferenceReported && link.isConnected(); });
}

void VersionCheck::takeConfigured(const QString &version)
{
    m_module.configuration = version;
    Q_EMIT changed();
}

void VersionCheck::forget()
{
    m_module = {};
    Q_EMIT changed();
}

void VersionCheck::handleVersion(const VersionReply &version)
{
    m_module = version;
    Q_EMIT changed();
    takeStationType(version.stationType);
    reportDifference(version.configuration);
}

/// The module knows best what it is. This is no edit of the user, so it is no step of undo.
void VersionCheck::takeStationType(const QString &type)
{
    if (type == m_document.configuration().gsm.stationType) {
        return;
    }
    if (!isStationType(type)) {
        Q_EMIT statusMessage(
            tr("The module reports a station type that is not known: %1").arg(logText(type)));
        return;
    }
    m_document.adjust([&type](Configuration &configuration) { configuration.gsm.stationType = type; });
    Q_EMIT statusMessage(tr("The station type is %1, as the module reports").arg(type));
}

void VersionCheck::reportDifference(const QString &moduleVersion)
{
    const bool isTransmitting = m_transmitter.isTransmitting();
    const Configuration &local = isTransmitting ? m_transmitter.transmitted() : m_document.configuration();
    bool &isReported = isTransmitting ? m_isOverwritingReported : m_isDifferenceReported;
    if (isReported || moduleVersion == Transmitter::versionOnLine(local)) {
        return;
    }
    isReported = true;
    const QString text = m_texts.text(Text::DifferentVersions) + u'\n' +
                         m_texts.text(Text::ConfigurationToolVersion) + u' ' + logText(local.versionText) +
                         u'\n' + m_texts.text(Text::ModuleApplicationVersion) + u' ' + logText(moduleVersion);
    if (isTransmitting) {
        Q_EMIT overwritingFound(text);
    } else {
        Q_EMIT differenceFound(text);
    }
}

} // namespace ktr
