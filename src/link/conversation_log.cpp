#include "link/conversation_log.h"

#include "platform/files.h"

#include <QDateTime>
#include <QRegularExpression>

namespace ktr {

namespace {

const QString hidden = QStringLiteral("****");

/// Also those beyond ASCII: a terminal takes some of them for the start of a control sequence.
bool isControl(QChar c)
{
    return c < u' ' || (c >= QChar(0x7F) && c <= QChar(0x9F));
}

} // namespace

QString withoutPin(const QString &line)
{
    // It is given, changed and asked for no longer.
    for (const QLatin1String &command :
         {QLatin1String("at+cpin=\""), QLatin1String("at+cpwd=\""), QLatin1String("at+clck=\"")}) {
        if (line.contains(command.chopped(1), Qt::CaseInsensitive)) {
            return command + hidden + u'"';
        }
    }
    // The numbers command has the PIN as its first field. A module that refuses a command repeats it.
    static const QRegularExpression numbersCommand(
        QStringLiteral("(^|: |-> |<-- |<---- |[\\r\\n\\x1A])([ >]*[Nn],)[^,]*(,|$)"),
        QRegularExpression::DotMatchesEverythingOption);
    QString masked = line;
    return masked.replace(numbersCommand, QStringLiteral("\\1\\2") + hidden + QStringLiteral("\\3"));
}

QString logText(const QString &line)
{
    qsizetype length = line.size();
    while (length > 0 && (line[length - 1] == u'\r' || line[length - 1] == u'\n')) {
        --length;
    }
    QString text;
    text.reserve(length);
    for (const QChar c : withoutPin(line.left(length))) {
        if (c == u'\r') {
            text += QLatin1String("\\r");
        } else if (c == u'\n') {
            text += QLatin1String("\\n");
        } else if (isControl(c)) {
            text += QStringLiteral("\\x%1").arg(c.unicode(), 2, 16, QLatin1Char('0'));
        } else {
            text += c;
        }
    }
    return text;
}

QString fromLogText(const QString &text)
{
    // Only the escapes that logText() writes; anything else after a backslash is text.
    static const QRegularExpression escape(QStringLiteral(R"(\\(?:([rn])|x([0189][0-9a-f]|7f)))"));
    QString line;
    qsizetype end = 0;
    for (const QRegularExpressionMatch &match : escape.globalMatch(text)) {
        line += QStringView(text).mid(end, match.capturedStart() - end);
        if (const QStringView letter = match.capturedView(1); !letter.isEmpty()) {
            line += letter == u"r" ? u'\r' : u'\n';
        } else {
            line += QChar(match.capturedView(2).toUShort(nullptr, 16));
        }
        end = match.capturedEnd();
    }
    return line + QStringView(text).mid(end);
}

Status ConversationLog::open(const QString &path)
{
    m_file.setFileName(path);
    constexpr QFileDevice::Permissions ownersAlone = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered, ownersAlone)) {
        return fileFailure(path, m_file.errorString());
    }
    return Status::done();
}

void ConversationLog::write(const QDateTime &now, const QString &line)
{
    if (m_file.isOpen()) {
        const QString text = now.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz ")) + logText(line) + u'\n';
        m_file.write(text.toUtf8());
    }
}

Status ConversationLog::status() const
{
    if (m_file.error() == QFileDevice::NoError) {
        return Status::done();
    }
    return fileFailure(m_file.fileName(), m_file.errorString());
}

} // namespace ktr
