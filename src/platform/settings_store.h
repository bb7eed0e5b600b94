#pragma once

#include <QList>
#include <QString>

#include <utility>

namespace ktr {

/// The application under which this program keeps its settings.
inline const QString settingsOwner = QStringLiteral("KTR_Config");

/// The user's settings of this and related programs: texts addressed by application, section and key. They
/// stand in the registry below one fixed key, where other programs look for them.
class SettingsStore
{
public:
    /// The stored text, which may be empty; `fallback` when there is none or it cannot be read.
    QString GetSetting(const QString &application, const QString &section, const QString &key,
                       const QString &fallback = QString()) const;

    /// Stores a text, up to its first zero. Gives false when that failed; what was stored then stays.
    bool SaveSetting(const QString &application, const QString &section, const QString &key,
                     const QString &value);

    /// Stores several texts of a section (key, text), waiting for the disk once. Gives false when one of them
    /// could not be stored; in a registry that is a file none is then.
    bool SaveSettings(const QString &application, const QString &section,
                      const QList<std::pair<QString, QString>> &values);
};

} // namespace ktr
