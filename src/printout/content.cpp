#include "printout/content.h"

#include "config/channels.h"
#include "config/fields.h"
#include "platform/text_rules.h"

#include <algorithm>

namespace ktr {

namespace {

using Style = PrintColumn::Style;

/// The numbers of the texts that title the printout.
enum Title : int {
    Ethernet = 13,
    Gsm = 18,
    PhoneNumber = 19,
    Admin = 20,
    Pin = 21,
    StationId = 22,
    AliveCycle = 23,
    Ip = 24,
    Identifier = 25,
    Interval = 26,
    InMinutes = 27,
    Delta = 28,
    Counter = 29,
    Invert = 31,
    Divider = 32,
    StartValue = 33,
    Scale = 34,
    Offset = 35,
    Factor = 36,
    Unit = 37,
    Hours = 39,
    LimitValueTitle = 40,
    LimitValueShort = 41,
    Notification = 42,
    Invalid = 43,
    Hysteresis = 44,
    Delay = 45,
    Comparison = 46,
    NotificationTo = 47,
    Type = 49,
    FirstSwitchType = 50,
    SwitchValue = 66,
    Start = 67,
    Holidays = 69,
    Send = 78,
    FileInformation = 85,
    Author = 86,
    ConfigurationVersion = 87,
    Date = 90,
    Comment = 91,
    LogFile = 92,
    Subnet = 94,
    Mac = 95,
    Channel = 97,
    Export = 108,
    On = 112,
    Off = 113,
    History = 119,
    Period = 122,
    Pulses = 138,
    Kelvin = 151,
    Switchpoints = 165,
    OnSaturdays = 170,
    Repetitions = 171,
};

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
    QString text(int title) const { return m_texts.text(title).trimmed(); }
    QString onOff(bool value) const { return text(value ? On : Off); }
    bool all() const { return m_entries == PrintedEntries::All; }

    /// A table of names and values.
    static PrintTable facts(const QList<QStringList> &rows)
    {
        constexpr double nameWidth = 42;
        PrintTable table{{{{}, nameWidth, Style::Label}, {{}, printWidth - nameWidth}}, rows};
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
        return {text(FileInformation),
                {facts({{text(Author), info.author},
                        {text(ConfigurationVersion),
                         words({info.version, stamped ? u'(' + stamp + u')' : QString()})},
                        {text(Date), info.date},
                        {text(Comment), info.comment},
                        {text(LogFile), info.logFile},
                        {words({text(History), text(Export)}), info.historyExportFile}})}};
    }

    PrintSection gsm() const
    {
        const GsmSettings &settings = m_configuration.gsm;
        // A printout lies around: it tells that there is a PIN, not which and not how long.
        const QString pin = settings.pin.isEmpty() ? QString() : QStringLiteral("****");
        PrintTable administrators{{{text(Admin), 16}, {text(Identifier), 82}, {text(PhoneNumber), 82}}, {}};
        for (int index = 0; const Administrator &administrator : m_configuration.administrators) {
            administrators.rows +=
                {QString::number(++index), orNone(administrator.name), orNone(administrator.number)};
        }
        return {text(Gsm),
                {facts({{text(StationId), settings.stationId},
                        {text(Type), settings.stationType},
                        {text(Pin), pin},
                        {text(AliveCycle), settings.aliveCycle}}),
                 administrators}};
    }

    // Which record describes a channel, null where none does.

    const DigitalInput *countingInput(int channel) const
    {
        return channel >= 1 && channel <= 4 ? &m_configuration.digitalInputs[index(channel - 1)] : nullptr;
    }
    const OutputHours *outputHours(int channel) const
    {
        return channel == 15 || channel == 16 ? &m_configuration.outputHours[index(channel - 15)] : nullptr;
    }
    const Scaling *scaling(int channel) const
    {
        const bool input = channel == 9 || channel == 10;
        const bool output = channel == 13 || channel == 14;
        return input || output ? &m_configuration.scaling[index(channel - (input ? 9 : 11))] : nullptr;
    }
    static std::size_t index(int number) { return static_cast<std::size_t>(number); }

    /// What a channel counts: pulses, hours or, as an empty text, nothing.
    QString counted(int channel) const
    {
        const DigitalInput *input = countingInput(channel);
        if (input == nullptr) {
            return outputHours(channel) != nullptr ? text(Hours) : QString();
        }
        const bool pulses = channel <= 2;
        return (pulses ? input->countsPulses : input->countsHours) ? text(pulses ? Pulses : Hours)
                                                                   : QString();
    }

    QString limitUnit(int channel) const
    {
        const Scaling *scaled = scaling(channel);
        return scaled != nullptr        ? scaled->unit
               : isTemperature(channel) ? QStringLiteral("°C")
                                        : counted(channel);
    }
    QString hysteresisUnit(int channel) const
    {
        return isTemperature(channel) ? text(Kelvin) : limitUnit(channel);
    }
    static bool isTemperature(int channel) { return channel == 17 || channel == 18; }

    QString channelName(int channel) const
    {
        const QString name = channelText(channel);
        return channel == 0 ? text(Invalid) : name.isEmpty() ? QString::number(channel) : name;
    }

    QStringList counterCells(int channel) const
    {
        const QString kind = counted(channel);
        if (const OutputHours *output = outputHours(channel)) {
            return {kind, {}, onOff(output->inverted), orNone(output->value)};
        }
        const DigitalInput *input = countingInput(channel);
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
        const Scaling *scaled = scaling(channel);
        return scaled == nullptr
                   ? QStringList{{}, {}, {}}
                   : QStringList{orNone(scaled->offset), orNone(scaled->factor), orNone(scaled->unit)};
    }

    PrintSection channels() const
    {
        const QString counter = text(Counter);
        const QString scale = text(Scale);
        PrintTable table{{{text(Channel), 33},
                          {words({text(Interval), text(InMinutes)}), 17, Style::Number},
                          {text(Delta), 15, Style::Number},
                          {text(Type), 17, Style::Text, counter},
                          {text(Divider), 15, Style::Number, counter},
                          {text(Invert), 14, Style::Text, counter},
                          {text(StartValue), 19, Style::Number, counter},
                          {text(Offset), 16, Style::Number, scale},
                          {text(Factor), 16, Style::Number, scale},
                          {text(Unit), 18, Style::Text, scale}},
                         {}};
        for (int channel = 1; channel <= channelCount; ++channel) {
            const Archiving &archiving = m_configuration.archiving[index(channel - 1)];
            table.rows +=
                QStringList{channelName(channel), orNone(archiving.interval), orNone(archiving.delta)} +
                counterCells(channel) + scalingCells(channel);
        }
        return {text(Channel), {table}};
    }

    PrintSection outputValues() const
    {
        QList<QStringList> rows;
        for (int channel = 11; const OutputValue &value : m_configuration.outputValues) {
            rows += {channelName(channel++), onOff(value.digital)};
        }
        for (int channel = 13; const OutputValue &value : m_configuration.outputValues) {
            rows += {channelName(channel), words({orNone(value.analog), scaling(channel)->unit})};
            ++channel;
        }
        rows += {text(Send), onOff(m_configuration.sendValues.front().enabled)};
        return {text(SwitchValue), {facts(rows)}};
    }

    QString administratorName(std::size_t administrator) const
    {
        const QString &name = m_configuration.administrators[administrator].name;
        return name.trimmed().isEmpty() ? words({text(Admin), QString::number(administrator + 1)}) : name;
    }

    QString recipients(const LimitValue &limitValue) const
    {
        const auto count = m_configuration.administrators.size();
        QStringList names;
        for (std::size_t administrator = 0; administrator < count; ++administrator) {
            if ((limitValue.recipients >> administrator & 1) != 0) {
                names += administratorName(administrator);
            }
        }
        // Six names in each row would bury the rows that name a few.
        return names.size() == qsizetype(count) ? words({text(Admin), QStringLiteral("1–%1").arg(count)})
                                                : orNone(names.join(u'\n'));
    }

    QString repetitions(const LimitValue &limitValue) const
    {
        return limitValue.repetitions == 0
                   ? none
                   : QStringLiteral("%1 × %2").arg(QString::number(limitValue.repetitions),
                                                   orNone(limitValue.repetitionInterval));
    }
    QString repetitionsTitle() const { return words({text(Repetitions), text(InMinutes)}); }

    QString comparison(const LimitValue &limitValue) const
    {
        static const QStringList signs{QString(), QStringLiteral("<"), QStringLiteral("="),
                                       QStringLiteral(">")};
        const QString sign = signs.value(limitValue.comparison, QString::number(limitValue.comparison));
        return words({sign, orNone(limitValue.limit), limitUnit(limitValue.channel)});
    }

    /// The numbers of the limit values that a mask combines.
    QString combined(double reference) const
    {
        if (!(reference >= 0 && reference <= 0xFFFF)) {
            return numberText(reference, m_locale); // no mask: shown as it is
        }
        const auto mask = static_cast<unsigned>(reference);
        QStringList numbers;
        for (unsigned bit = 0; bit < LimitValue::firstReference; ++bit) {
            if ((mask >> bit & 1U) != 0) {
                numbers += QString::number(bit + 1);
            }
        }
        return orNone(numbers.join(u", "));
    }

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
        return list(text(LimitValueTitle) + u" 1–16",
                    {{{text(LimitValueShort), 7},
                      {text(Channel), 27},
                      {text(Comparison), 24},
                      {text(Hysteresis), 17},
                      {text(Delay), 12, Style::Number},
                      {text(NotificationTo), 33},
                      {repetitionsTitle(), 20},
                      {text(Notification), 40}},
                     limitValueRows(0, LimitValue::firstReference, [this](const LimitValue &limitValue) {
                         const int channel = limitValue.channel;
                         return QStringList{channelName(channel), comparison(limitValue),
                                            words({orNone(limitValue.hysteresis), hysteresisUnit(channel)}),
                                            orNone(limitValue.delay)};
                     })});
    }

    PrintSection combinations() const
    {
        return list(text(LimitValueTitle) + u" 17–20",
                    {{{text(LimitValueShort), 8},
                      {text(LimitValueTitle), 40},
                      {text(NotificationTo), 48},
                      {repetitionsTitle(), 30},
                      {text(Notification), 54}},
                     limitValueRows(LimitValue::firstReference, LimitValue::count,
                                    [this](const LimitValue &limitValue) {
                                        return QStringList{combined(limitValue.reference)};
                                    })});
    }

    QString target(int position) const
    {
        constexpr int firstAdministrator = 5;
        if (position >= firstAdministrator && position < targetCount) {
            return administratorName(index(position - firstAdministrator));
        }
        const QString name = targetText(position);
        return position == 0 ? text(Invalid) : name.isEmpty() ? QString::number(position) : name;
    }

    /// With its number: the two types that react to a limit value may read alike.
    QString switchType(int type) const
    {
        constexpr int saturdays = 6; // came to the text table later than the others
        const int number =
            type == saturdays ? int{OnSaturdays} : FirstSwitchType + type - (type > saturdays ? 1 : 0);
        const bool known = type >= 0 && type <= 16;
        return words({QString::number(type), known ? text(number) : QString()});
    }

    QString startTime(const QString &start) const
    {
        const std::optional<QDateTime> moment = toMinute(start);
        return moment ? words({m_locale.toString(moment->date(), QLocale::ShortFormat),
                               moment->toString(QStringLiteral("hh:mm"))})
                      : orNone(start);
    }

    QString watchedLimitValue(int number) const
    {
        const bool watchesChannel = number >= 0 && number < LimitValue::firstReference;
        return words({QString::number(number + 1),
                      watchesChannel
                          ? u'(' + channelName(m_configuration.limitValues[index(number)].channel) + u')'
                          : QString()});
    }

    PrintSection switchPoints() const
    {
        constexpr int periodic = 14;
        PrintTable table{{{QStringLiteral("#"), 8},
                          {text(Channel), 36},
                          {text(Type), 34},
                          {text(Start), 34},
                          {text(SwitchValue), 18, Style::Number},
                          {words({text(Period), text(InMinutes)}), 16, Style::Number},
                          {text(LimitValueTitle), 34}},
                         {}};
        for (int number = 0; const SwitchPoint &point : m_configuration.switchPoints) {
            ++number;
            if (!all() && point.target == 0) {
                continue;
            }
            const bool reacts = point.reactsToLimitValue();
            table.rows += {QString::number(number),
                           target(point.target),
                           switchType(point.type),
                           reacts ? QString() : startTime(point.start),
                           orNone(point.value),
                           point.type == periodic ? orNone(point.period) : QString(),
                           reacts ? watchedLimitValue(point.limitValue) : QString()};
        }
        return list(text(Switchpoints), table);
    }

    PrintSection holidays() const
    {
        constexpr int columns = 5;
        PrintTable table{QList<PrintColumn>(columns, {{}, printWidth / columns}), {}};
        for (int at = 0; const QString &line : m_configuration.holidays.lines()) {
            if (at++ % columns == 0) {
                table.rows += QStringList(columns);
            }
            const QDate date =
                QDate::fromString(u"20" + line.section(u'\t', 0, 0), QStringLiteral("yyyyMMdd"));
            table.rows.back()[(at - 1) % columns] =
                date.isValid() ? m_locale.toString(date, QLocale::ShortFormat) : line;
        }
        return list(text(Holidays), table);
    }

    PrintSection ethernet() const
    {
        const EthernetSettings &settings = m_configuration.ethernet;
        return {text(Ethernet),
                {facts({{text(Ip), settings.ip},
                        {text(Subnet), settings.subnet},
                        {text(Mac), macBytes(settings).join(u'-')}})}};
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
