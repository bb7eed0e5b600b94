#pragma once

#include <QList>
#include <QString>

#include <utility>

namespace ktr {

/// The application under which this program keeps its settings.
inline const QString settingsOwner = QStringLiteral("KTR_Config");

/// Its sections; the keys stand with those who use them.
namespace settings_sections {
inline const QString startup = QStringLiteral("Startup");
inline const QString recentFiles = QStringLiteral("Recent");
inline const QString holidays = QStringLiteral("Feiertage");
inline const QString connection = QStringLiteral("Connection");
inline const QString mainWindow = QStringLiteral("Window");
inline const QString operationalMode = QStringLiteral("OperationalMode");
inline const QString record = QStringLiteral("Record");
inline const QString files = QStringLiteral("Files");
} // namespace settings_sections

/// The user's settings of this and related programs: texts addressed by application, section and key. They
/// stand in the registry below one fixed key, where other programs look for them.
class SettingsStore
{
public:
    /// The stored text, which may be empty; `fallback` when there is none or it cannot be read.
    QString GetSetting(const QString &application, const QString &section, const QString &key,
                       const QString &fallback = QString()) const;

    /// Everything that is stored for an application: sections, and the keys and texts of each.
    using Section = std::pair<QString, QList<std::pair<QString, QString>>>;
    QList<Section> AllSettings(const QString &application) const;

    /// Stores a text, up to its first zero. Gives false when that failed; what was stored then stays.
    bool SaveSetting(const QString &application, const QString &section, const QString &key,
                     const QString &value);

    /// Stores several texts of a section (key, text), waiting for the disk once. Gives false when one of them
    /// could not be stored; in a registry that is a file none is then.
    bool SaveSettings(const QString &application, const QString &section,
                      const QList<std::pair<QString, QString>> &values);
};

} // namespace ktr
