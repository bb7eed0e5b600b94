#include "printout/content.h"

#include "config/channel_use.h"
#include "config/channels.h"
#include "config/entry_texts.h"
#include "config/fields.h"
#include "platform/text_rules.h"

#include <algorithm>

namespace ktr {

namespace {

using Style = PrintColumn::Style;

const QString none = QStringLiteral("–");

QString orNone(const QString &text)
{
    return text.trimmed().isEmpty() ? none : text;
}

/// Words with a blank between them, the empty ones left out.
QString words(QStringList parts)
{
    parts.removeIf([](const QString &part) { return part.trimmed().isEmpty(); });
    return parts.join(u' ');
}

class Content
{
public:
    Content(const Configuration &configuration, const TextTable &texts, const QLocale &locale,
            PrintedEntries entries)
        : m_configuration(configuration), m_texts(texts), m_locale(locale), m_entries(entries)
    {}

    QList<PrintSection> sections() const
    {
        return {fileInformation(), gsm(),          channels(), outputValues(), limitValues(),
                combinations(),    switchPoints(), holidays(), ethernet()};
    }

private:
    QString text(Text title) const { return m_texts.text(title).trimmed(); }
    QString onOff(bool value) const { return text(value ? Text::On : Text::Off); }
    template <class Record, class Value> QString label(Value Record::*member) const
    {
        return labelText(fieldOf(member).label, m_texts).trimmed();
    }
    template <class Record, class Value> QString heading(Value Record::*member) const
    {
        const Field<Record> &field = fieldOf(member);
        return headingText(field.label, field.unit, m_texts);
    }
    bool all() const { return m_entries == PrintedEntries::All; }

    /// A table of names and values.
    static PrintTable facts(const QList<QStringList> &rows)
    {
        constexpr double nameWidth = 42;
        PrintTable table{{{{}, nameWidth, Style::Caption}, {{}, printWidth - nameWidth}}, rows};
        for (QStringList &row : table.rows) {
            row[1] = orNone(row[1]);
        }
        return table;
    }

    /// A section of one table; a single "–" tells that it has no rows.
    static PrintSection list(const QString &title, const PrintTable &table)
    {
        if (table.rows.isEmpty()) {
            return {title, {{{{{}, printWidth}}, {{none}}}}};
        }
        return {title, {table}};
    }

    PrintSection fileInformation() const
    {
        const FileInfo &info = m_configuration.info;
        const QString &stamp = m_configuration.versionText;
        const bool stamped = !stamp.isEmpty() && stamp != info.version;
        return {text(Text::FileInformation),
                {facts({{label(&FileInfo::author), info.author},
                        {label(&FileInfo::version),
                         words({info.version, stamped ? u'(' + stamp + u')' : QString()})},
                        {label(&FileInfo::date), info.date},
                        {label(&FileInfo::comment), info.comment},
                        {label(&FileInfo::logFile), info.logFile},
                        {words({label(&FileInfo::historyExportFile), text(Text::Export)}),
                         info.historyExportFile}})}};
    }

    PrintSection gsm() const
    {
        const GsmSettings &settings = m_configuration.gsm;
        // A printout lies around: it tells that there is a PIN, not which and not how long.
        const QString pin = settings.pin.isEmpty() ? QString() : QStringLiteral("****");
        PrintTable administrators{
            {{text(Text::Admin), 16}, {label(&Administrator::name), 82}, {label(&Administrator::number), 82}},
            {}};
        for (int index = 0; const Administrator &administrator : m_configuration.administrators) {
            administrators.rows +=
                {QString::number(++index), orNone(administrator.name), orNone(administrator.number)};
        }
        return {text(Text::Gsm),
                {facts({{label(&GsmSettings::stationId), settings.stationId},
                        {label(&GsmSettings::stationType), settings.stationType},
                        {label(&GsmSettings::pin), pin},
                        {label(&GsmSettings::aliveCycle), settings.aliveCycle}}),
                 administrators}};
    }

    /// What a channel counts: pulses, hours or, as an empty text, nothing.
    QString counted(int channel) const
    {
        if (QString own = countedUnit(m_configuration, channel); !own.isEmpty()) {
            return own;
        }
        switch (channelMeasure(m_configuration, channel)) {
        case Measure::Pulses:
            return text(Text::Pulses);
        case Measure::Hours:
            return text(Text::Hours);
        default:
            return {};
        }
    }

    LimitUnits units(int channel) const { return shownUnits(m_configuration, channel, m_texts); }

    static std::size_t index(int number) { return static_cast<std::size_t>(number); }

    QString nameOf(int channel) const { return channelName(m_configuration, channel, m_texts); }

    QStringList counterCells(int channel) const
    {
        const QString kind = counted(channel);
        if (const OutputHours *output = outputHoursOf(m_configuration, channel)) {
            return {kind, {}, onOff(output->inverted), orNone(output->value)};
        }
        const DigitalInput *input = countingInputOf(m_configuration, channel);
        if (input == nullptr) {
            return {{}, {}, {}, {}};
        }
        if (kind.isEmpty()) {
            return {none, {}, {}, {}};
        }
        return {kind, channel <= 2 ? orNone(input->divider) : QString(), onOff(input->inverted),
                orNone(input->value)};
    }

    QStringList scalingCells(int channel) const
    {
        const Scaling *scaled = scalingOf(m_configuration, channel);
        return scaled == nullptr
                   ? QStringList{{}, {}, {}}
                   : QStringList{orNone(scaled->offset), orNone(scaled->factor), orNone(scaled->unit)};
    }

    PrintSection channels() const
    {
        const QString counter = text(Text::Counter);
        const QString scale = text(Text::Scaling);
        PrintTable table{{{text(Text::Channel), 33},
                          {heading(&Archiving::interval), 17, Style::Number},
                          {label(&Archiving::delta), 15, Style::Number},
                          {text(Text::Type), 17, Style::Text, counter},
                          {label(&DigitalInput::divider), 15, Style::Number, counter},
                          {label(&DigitalInput::inverted), 14, Style::Text, counter},
                          {label(&DigitalInput::value), 19, Style::Number, counter},
                          {label(&Scaling::offset), 16, Style::Number, scale},
                          {label(&Scaling::factor), 16, Style::Number, scale},
                          {label(&Scaling::unit), 18, Style::Text, scale}},
                         {}};
        for (int channel = 1; channel <= channelCount; ++channel) {
            const Archiving &archiving = m_configuration.archiving[index(channel - 1)];
            table.rows += QStringList{nameOf(channel), orNone(archiving.interval), orNone(archiving.delta)} +
                          counterCells(channel) + scalingCells(channel);
        }
        return {text(Text::Channel), {table}};
    }

    PrintSection outputValues() const
    {
        QList<QStringList> rows;
        for (int channel = 11; const OutputValue &value : m_configuration.outputValues) {
            rows += {nameOf(channel++), onOff(value.digital)};
        }
        for (int channel = 13; const OutputValue &value : m_configuration.outputValues) {
            rows +=
                {nameOf(channel), words({orNone(value.analog), scalingOf(m_configuration, channel)->unit})};
            ++channel;
        }
        rows += {text(Text::Send), onOff(m_configuration.sendValues.front().enabled)};
        return {text(Text::SwitchValue), {facts(rows)}};
    }

    QString recipients(const LimitValue &limitValue) const
    {
        return orNone(recipientNames(m_configuration, limitValue.recipients, m_texts).join(u'\n'));
    }

    QString repetitions(const LimitValue &limitValue) const
    {
        return limitValue.repetitions == 0
                   ? none
                   : QStringLiteral("%1 × %2").arg(QString::number(limitValue.repetitions),
                                                   orNone(limitValue.repetitionInterval));
    }
    QString repetitionsTitle() const
    {
        return headingText(fieldOf(&LimitValue::repetitions).label,
                           fieldOf(&LimitValue::repetitionInterval).unit, m_texts);
    }

    QString comparison(const LimitValue &limitValue) const
    {
        return words({comparisonSign(limitValue.comparison), orNone(limitValue.limit),
                      units(limitValue.channel).limit});
    }

    QString combined(double reference) const { return orNone(combinationText(reference, m_locale)); }

    static bool inUse(const LimitValue &limitValue, int number)
    {
        const bool watches =
            LimitValue::isReference(number) ? limitValue.reference != 0 : limitValue.channel != 0;
        return watches || !limitValue.alarm.trimmed().isEmpty();
    }

    template <class Cells> QList<QStringList> limitValueRows(int first, int end, const Cells &cells) const
    {
        QList<QStringList> rows;
        for (int number = first; number < end; ++number) {
            const LimitValue &limitValue = m_configuration.limitValues[index(number)];
            if (all() || inUse(limitValue, number)) {
                rows +=
                    QStringList{QString::number(number + 1)} + cells(limitValue) +
                    QStringList{recipients(limitValue), repetitions(limitValue), orNone(limitValue.alarm)};
            }
        }
        return rows;
    }

    PrintSection limitValues() const
    {
        return list(text(Text::LimitValue) + u" 1–16",
                    {{{text(Text::LimitValueShort), 7},
                      {label(&LimitValue::channel), 27},
                      {label(&LimitValue::comparison), 24},
                      {label(&LimitValue::hysteresis), 17},
                      {label(&LimitValue::delay), 12, Style::Number},
                      {label(&LimitValue::recipients), 33},
                      {repetitionsTitle(), 20},
                      {label(&LimitValue::alarm), 40}},
                     limitValueRows(0, LimitValue::firstReference, [this](const LimitValue &limitValue) {
                         const int channel = limitValue.channel;
                         return QStringList{nameOf(channel), comparison(limitValue),
                                            words({orNone(limitValue.hysteresis), units(channel).hysteresis}),
                                            orNone(limitValue.delay)};
                     })});
    }

    PrintSection combinations() const
    {
        return list(text(Text::LimitValue) + u" 17–20",
                    {{{text(Text::LimitValueShort), 8},
                      {text(Text::LimitValue), 40},
                      {label(&LimitValue::recipients), 48},
                      {repetitionsTitle(), 30},
                      {label(&LimitValue::alarm), 54}},
                     limitValueRows(LimitValue::firstReference, LimitValue::count,
                                    [this](const LimitValue &limitValue) {
                                        return QStringList{combined(limitValue.reference)};
                                    })});
    }

    PrintSection switchPoints() const
    {
        PrintTable table{{{QStringLiteral("#"), 8},
                          {text(Text::Channel), 36},
                          {label(&SwitchPoint::type), 34},
                          {label(&SwitchPoint::start), 34},
                          {label(&SwitchPoint::value), 18, Style::Number},
                          {heading(&SwitchPoint::period), 16, Style::Number},
                          {label(&SwitchPoint::limitValue), 34}},
                         {}};
        for (int number = 0; const SwitchPoint &point : m_configuration.switchPoints) {
            ++number;
            if (!all() && point.target == 0) {
                continue;
            }
            const bool reacts = point.reactsToLimitValue();
            table.rows +=
                {QString::number(number),
                 targetName(m_configuration, point.target, m_texts),
                 switchTypeName(point.type, m_texts),
                 reacts ? QString() : orNone(startText(point.start, m_locale)),
                 orNone(point.value),
                 point.type == SwitchPoint::periodic ? orNone(point.period) : QString(),
                 reacts ? watchedLimitValue(m_configuration, point.limitValue, m_texts) : QString()};
        }
        return list(text(Text::Switchpoints), table);
    }

    PrintSection holidays() const
    {
        constexpr int columns = 5;
        PrintTable table{QList<PrintColumn>(columns, {{}, printWidth / columns}), {}};
        for (int at = 0; const QString &line : m_configuration.holidays.lines()) {
            if (at++ % columns == 0) {
                table.rows += QStringList(columns);
            }
            table.rows.back()[(at - 1) % columns] = holidayText(line, m_locale);
        }
        return list(text(Text::Holidays), table);
    }

    PrintSection ethernet() const
    {
        const EthernetSettings &settings = m_configuration.ethernet;
        return {text(Text::Ethernet),
                {facts({{label(&EthernetSettings::ip), settings.ip},
                        {label(&EthernetSettings::subnet), settings.subnet},
                        {label(&EthernetSettings::mac3), macBytes(settings).join(u'-')}})}};
    }

    const Configuration &m_configuration;
    const TextTable &m_texts;
    const QLocale &m_locale;
    PrintedEntries m_entries;
};

} // namespace

QList<PrintSection> printContent(const Configuration &configuration, const TextTable &texts,
                                 const QLocale &locale, PrintedEntries entries)
{
    return Content(configuration, texts, locale, entries).sections();
}

} // namespace ktr
