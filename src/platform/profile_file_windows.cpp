#include "platform/files.h"
#include "platform/profile_file.h"
#include "platform/text_rules.h"

#include <QDir>
#include <QRegularExpression>
#include <QTemporaryFile>

#include <algorithm>
#include <windows.h>

namespace ktr {

/// The system's own reader works on files, and takes 8-bit ones for its present code page, which is not
/// Windows-1252. It is given a copy in UTF-16, which it reads as it is.
class ProfileFile::Content
{
public:
    bool write(const QString &text)
    {
        static const QRegularExpression lineEnd(QStringLiteral("\r\n|\r|\n"));
        static const QRegularExpression comment(QStringLiteral("^\\s*;"));
        QStringList kept = text.split(lineEnd);
        kept.removeIf([](const QString &line) { return line.contains(comment); }); // some take them for keys
        const QString lines = QChar(QChar::ByteOrderMark) + kept.join(QLatin1String("\r\n"));
        const qint64 size = lines.size() * qint64{sizeof(QChar)};
        const bool written =
            m_copy.open() && m_copy.write(reinterpret_cast<const char *>(lines.utf16()), size) == size;
        m_copy.close();
        return written;
    }

    QString value(const QString &section, const QString &key, qsizetype limit) const
    {
        constexpr qsizetype longest = 10'000;
        constexpr qsizetype bytesPerCharacter = 3; // at most, in UTF-8
        limit = std::clamp<qsizetype>(limit, 0, longest);
        QByteArray buffer(limit * bytesPerCharacter + 1, '\0');
        const DWORD length =
            ::GetPrivateProfileStringA(section.toLocal8Bit().constData(), key.toLocal8Bit().constData(), "",
                                       buffer.data(), static_cast<DWORD>(buffer.size()),
                                       QDir::toNativeSeparators(m_copy.fileName()).toLocal8Bit().constData());
        buffer.truncate(static_cast<qsizetype>(length));
        return firstCharacters(QString::fromLocal8Bit(buffer), limit);
    }

private:
    QTemporaryFile m_copy;
};

Status ProfileFile::load(const QString &path)
{
    m_content.reset();
    QByteArray bytes;
    if (Status read = readFile(path, bytes, longestFile); !read) {
        return read;
    }
    const Status parsed = parse(bytes);
    return parsed ? parsed : fileFailure(path, parsed.message());
}

Status ProfileFile::parse(const QByteArray &bytes)
{
    m_content.reset();
    const auto content = std::make_shared<Content>();
    if (!content->write(textOfFile(bytes))) {
        return Status::failed(QStringLiteral("the folder of temporary files cannot be written"));
    }
    m_content = content;
    return Status::done();
}

QString ProfileFile::value(const QString &section, const QString &key, qsizetype limit) const
{
    return m_content != nullptr ? m_content->value(section, key, limit) : QString();
}

} // namespace ktr
