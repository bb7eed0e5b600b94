#include "config/channel_names.h"

#include "platform/files.h"
#include "platform/text_rules.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <utility>

namespace ktr {

namespace {

constexpr qint64 longestNames = qint64{1} << 16;

QString kept(const QString &text, int longest)
{
    return firstCharacters(onOneLine(text).trimmed(), longest).trimmed();
}

} // namespace

const ChannelName &ChannelNames::of(int channel) const
{
    static const ChannelName none;
    if (channel < 1 || channel > channelCount) {
        return none;
    }
    return channels[static_cast<std::size_t>(channel - 1)];
}

QString namedChannel(int channel, const ChannelNames &names)
{
    return withChannelName(channelText(channel), channel, names);
}

QString shortNamedChannel(int channel, const ChannelNames &names)
{
    const QString &name = names.of(channel).name;
    return name.isEmpty() ? channelText(channel) : QString::number(channel) + u' ' + name;
}

QString withChannelName(const QString &text, int channel, const ChannelNames &names)
{
    const QString &name = names.of(channel).name;
    return name.isEmpty() ? text : text + QStringLiteral(" – ") + name;
}

ChannelName storedChannelName(const QString &name, const QString &unit)
{
    QString plainUnit = unit;
    plainUnit.replace(u';', u' ');
    return {kept(name, ChannelName::longestName), kept(plainUnit, ChannelName::longestUnit)};
}

QString namesFileOf(const QString &configurationFile)
{
    const QFileInfo file(configurationFile);
    const QString name =
        (file.suffix().compare(QLatin1String("xml"), Qt::CaseInsensitive) == 0 ? file.completeBaseName()
                                                                               : file.fileName()) +
        QLatin1String(".names");
    return file.path() == u"." && !configurationFile.startsWith(u'.') ? name : file.path() + u'/' + name;
}

QByteArray writeChannelNames(const ChannelNames &names)
{
    QString text;
    for (int channel = 1; channel <= channelCount; ++channel) {
        if (const ChannelName &each = names.of(channel); each != ChannelName()) {
            text += QString::number(channel) + u'=' + each.name + u';' + each.unit + u'\n';
        }
    }
    return text.toUtf8();
}

ChannelNames readChannelNames(const QByteArray &content, QStringList &remarks)
{
    ChannelNames names;
    QString text = QString::fromUtf8(content);
    if (text.startsWith(QChar::ByteOrderMark)) {
        text.remove(0, 1);
    }
    const QStringList lines = text.split(u'\n');
    for (qsizetype line = 0; line < lines.size(); ++line) {
        const QString plain = lines[line].trimmed();
        if (plain.isEmpty()) {
            continue;
        }
        const auto channel = toWholeNumber(plain.section(u'=', 0, 0), 1, channelCount);
        if (!channel || !plain.contains(u'=')) {
            remarks += QCoreApplication::translate(
                           "Files", "names of inputs and outputs: line %1, %2, is not understood")
                           .arg(QString::number(line + 1), quotedInRemark(plain).trimmed());
            continue;
        }
        const QString value = plain.section(u'=', 1);
        const qsizetype end = value.lastIndexOf(u';');
        names.channels[static_cast<std::size_t>(*channel - 1)] =
            end < 0 ? storedChannelName(value, {}) : storedChannelName(value.left(end), value.mid(end + 1));
    }
    return names;
}

ChannelNames readNamesBeside(const QString &configurationFile, QStringList &remarks)
{
    const QString path = namesFileOf(configurationFile);
    if (configurationFile.isEmpty() || !QFileInfo::exists(path)) {
        return {};
    }
    QByteArray content;
    if (const Status read = readFile(path, content, longestNames); !read) {
        remarks += read.message();
        return {};
    }
    QStringList ofLines;
    ChannelNames names = readChannelNames(content, ofLines);
    for (const QString &remark : std::as_const(ofLines)) {
        remarks += fileFailure(path, remark).message();
    }
    return names;
}

} // namespace ktr
