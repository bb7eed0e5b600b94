#include "opmode/configured_inputs.h"

#include "config/configuration_file.h"
#include "platform/text_rules.h"

#include <QDir>
#include <QSet>

#include <algorithm>
#include <utility>

namespace ktr {

namespace {

constexpr qint64 longestFile = qint64{1} << 20;
constexpr int lessThan = 1;
constexpr int equalTo = 2;
constexpr int greaterThan = 3;

/// What the user calls it, else what the configuration says.
QString unitOf(const Configuration &configuration, int channel)
{
    const QString &own = configuration.names.of(channel).unit;
    if (!own.isEmpty()) {
        return own;
    }
    switch (channelMeasure(configuration, channel)) {
    case Measure::Scaled:
        return onOneLine(scalingOf(configuration, channel)->unit).trimmed();
    case Measure::Hours:
        return QStringLiteral("h");
    case Measure::Temperature:
        return QStringLiteral("°C");
    default:
        return {};
    }
}

QList<InputLimit> limitsIn(const Configuration &configuration)
{
    QList<InputLimit> limits;
    for (int index = 0; index < LimitValue::firstReference; ++index) {
        const LimitValue &value = configuration.limitValues[static_cast<std::size_t>(index)];
        const std::optional<double> limit = toNumber(value.limit);
        const bool isUsed = value.channel >= 1 && value.channel <= channelCount &&
                            value.comparison >= lessThan && value.comparison <= greaterThan;
        if (isUsed && limit) {
            const double hysteresis = std::max(0.0, toNumber(value.hysteresis).value_or(0));
            limits += InputLimit{index + 1, value.channel, value.comparison, *limit, hysteresis, value.alarm};
        }
    }
    std::ranges::stable_sort(limits, {}, &InputLimit::channel);
    return limits;
}

std::shared_ptr<const ConfiguredInputs> readInputs(const QFileInfo &file)
{
    if (file.size() > longestFile) {
        return nullptr;
    }
    Configuration configuration;
    const ReadReport report = readConfigurationFile(file.filePath(), configuration, Environment());
    if (!report.opened || !report.document || !report.isConfiguration) {
        return nullptr;
    }
    QStringList remarks; // told when that configuration is opened
    configuration.names = readNamesBeside(file.filePath(), remarks);
    return std::make_shared<const ConfiguredInputs>(inputsOf(configuration));
}

} // namespace

bool InputLimit::isBeyond(double value) const
{
    return comparison == lessThan ? value < limit : comparison == equalTo ? value == limit : value > limit;
}

Measure ConfiguredInputs::measure(int channel) const
{
    return channel < 1 || channel > channelCount ? Measure::None
                                                 : measures[static_cast<std::size_t>(channel - 1)];
}

QList<InputLimit> ConfiguredInputs::limitsOf(int channel) const
{
    QList<InputLimit> found;
    std::ranges::copy_if(limits, std::back_inserter(found),
                         [channel](const InputLimit &each) { return each.channel == channel; });
    return found;
}

ConfiguredInputs inputsOf(const Configuration &configuration)
{
    ConfiguredInputs inputs;
    inputs.station = configuration.gsm.stationId.trimmed();
    inputs.names = configuration.names;
    for (int channel = 1; channel <= channelCount; ++channel) {
        const auto at = static_cast<std::size_t>(channel - 1);
        inputs.names.channels[at].unit = unitOf(configuration, channel);
        inputs.measures[at] = channelMeasure(configuration, channel);
    }
    inputs.limits = limitsIn(configuration);
    return inputs;
}

ConfigurationFiles::Files ConfigurationFiles::read(const QStringList &folders, const QStringList &other,
                                                   const QString &passedOver,
                                                   const std::function<bool()> &goesOn)
{
    m_before = std::exchange(m_known, {});
    QSet<QString> looked;
    for (const QString &name : folders) {
        const QString folder = name.isEmpty() ? QString() : QFileInfo(name).canonicalFilePath();
        if (folder.isEmpty() || looked.contains(folder)) {
            continue;
        }
        looked.insert(folder);
        const QFileInfoList files =
            QDir(folder).entryInfoList({QStringLiteral("*.xml")}, QDir::Files, QDir::Name);
        for (const QFileInfo &file : files.first(std::min<qsizetype>(files.size(), mostFiles))) {
            if (!goesOn()) {
                return {};
            }
            if (file.fileName() != passedOver) {
                look(file.isSymLink() ? QFileInfo(file.canonicalFilePath()) : file);
            }
        }
    }
    Files found;
    for (const QString &path : other) {
        const QString canonical = QFileInfo(path).canonicalFilePath();
        if (!canonical.isEmpty() && goesOn()) {
            look(QFileInfo(canonical));
            found.links.insert(path, canonical);
        }
    }
    m_before.clear();
    for (auto known = m_known.cbegin(); known != m_known.cend(); ++known) {
        if (known->file.inputs != nullptr) {
            found.files.insert(known.key(), known->file);
        }
    }
    return found;
}

void ConfigurationFiles::look(const QFileInfo &configuration)
{
    const QString path = configuration.filePath();
    if (!configuration.isFile() || m_known.contains(path)) {
        return;
    }
    const QFileInfo names(namesFileOf(path));
    const auto before = m_before.constFind(path);
    if (before != m_before.cend() && before->configurationOf.stillHolds(configuration) &&
        before->namesOf.stillHolds(names)) {
        m_known.insert(path, *before);
        return;
    }
    Known known{FileStamp(configuration), FileStamp(names), {}}; // before they are read
    known.file = {readInputs(configuration), configuration.lastModified(), names.lastModified()};
    // One that was only touched counts as the same for who compares.
    if (before != m_before.cend() && before->file.inputs != nullptr && known.file.inputs != nullptr &&
        *before->file.inputs == *known.file.inputs) {
        known.file.inputs = before->file.inputs;
    }
    m_known.insert(path, known);
}

} // namespace ktr
