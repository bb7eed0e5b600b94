#pragma once

#include "config/channel_names.h"
#include "config/channel_use.h"
#include "platform/file_mark.h"

#include <QHash>
#include <QList>

#include <functional>
#include <memory>

namespace ktr {

/// A limit value on an input or output, as it was configured. Modules report values, and compare them, in the
/// unit that the configuration scales to: nothing is to be converted.
struct InputLimit
{
    int number;        ///< of the limit value, counted from 1
    int channel;       ///< 1 to 18
    int comparison;    ///< 1 "<", 2 "=", 3 ">"
    double limit;      ///< in the channel's unit
    double hysteresis; ///< in the channel's unit
    QString text;      ///< of the notification

    /// Whether a value lies beyond it, without regard to delay and hysteresis.
    bool isBeyond(double value) const;
    bool operator==(const InputLimit &) const = default;
};

/// What a configuration says of a module's inputs and outputs.
struct ConfiguredInputs
{
    QString station;    ///< its identifier
    ChannelNames names; ///< with the units of scaled channels and counters of hours
    std::array<Measure, channelCount> measures{};
    QList<InputLimit> limits; ///< by channel, then by number

    Measure measure(int channel) const; ///< None of what is no channel
    QList<InputLimit> limitsOf(int channel) const;

    bool operator==(const ConfiguredInputs &) const = default;
};

ConfiguredInputs inputsOf(const Configuration &configuration);

/// The configurations of folders, and others, each read again only when its file has changed. To be used on
/// one thread.
class ConfigurationFiles
{
public:
    /// Of a folder with more files these are looked at.
    static constexpr int mostFiles = 20'000;

    struct File
    {
        std::shared_ptr<const ConfiguredInputs> inputs; ///< null: it is no configuration that can be read
        QDateTime modified;
        QDateTime namesModified;
    };
    struct Files
    {
        QHash<QString, File> files;    ///< by path without symbolic links
        QHash<QString, QString> links; ///< those paths of what was asked for by others
    };

    /// Once `goesOn` gives false it ends. `other` are files outside the folders, or in them; what is called
    /// `passedOver`, as the list of stations, is none.
    Files read(
        const QStringList &folders, const QStringList &other, const QString &passedOver,
        const std::function<bool()> &goesOn = [] { return true; });

private:
    struct Known
    {
        FileStamp configurationOf;
        FileStamp namesOf;
        File file;
    };
    void look(const QFileInfo &configuration);

    QHash<QString, Known> m_known;
    QHash<QString, Known> m_before;
};

} // namespace ktr
