#include "platform/profile_file.h"

#include "platform/files.h"
#include "platform/text_rules.h"

#include <QHash>

#include <algorithm>

namespace ktr {

namespace {

// Not QStringView::trimmed: the no-break space of Windows-1252 belongs to the text.
QStringView withoutBlanks(QStringView text)
{
    const auto isBlank = [](QChar c) { return c == u' ' || (c >= u'\t' && c <= u'\r'); };
    while (!text.isEmpty() && isBlank(text.front())) {
        text = text.sliced(1);
    }
    while (!text.isEmpty() && isBlank(text.back())) {
        text.chop(1);
    }
    return text;
}

QStringView withoutQuotes(QStringView text)
{
    const bool quoted =
        text.size() >= 2 && text.front() == text.back() && (text.front() == u'"' || text.front() == u'\'');
    return quoted ? text.sliced(1, text.size() - 2) : text;
}

QString folded(QStringView name)
{
    return withoutBlanks(name).toString().toCaseFolded();
}

} // namespace

/// Sections with their keys and values, by folded names.
class ProfileFile::Content
{
public:
    explicit Content(const QString &text);
    QString value(const QString &section, const QString &key) const
    {
        return m_sections.value(folded(section)).value(folded(key));
    }

private:
    using Section = QHash<QString, QString>;

    QHash<QString, Section> m_sections;
};

ProfileFile::Content::Content(const QString &text)
{
    Section *section = nullptr; // none before the first header, nor below a header that is there already
    for (QStringView rest = text; !rest.isEmpty();) {
        const auto *const end =
            std::find_if(rest.begin(), rest.end(), [](QChar c) { return c == u'\n' || c == u'\r'; });
        const qsizetype length = end - rest.begin();
        const QStringView line = withoutBlanks(rest.first(length));
        rest = rest.sliced(std::min(length + 1, rest.size()));

        if (line.startsWith(u'[') && line.contains(u']')) {
            const QString name = folded(line.sliced(1, line.indexOf(u']') - 1));
            section = m_sections.contains(name) ? nullptr : &m_sections[name];
            continue;
        }
        const qsizetype equals = line.indexOf(u'=');
        if (section == nullptr || equals < 0 || line.startsWith(u';')) {
            continue;
        }
        if (const QString key = folded(line.first(equals)); !section->contains(key)) {
            section->insert(key, withoutQuotes(withoutBlanks(line.sliced(equals + 1))).toString());
        }
    }
}

Status ProfileFile::load(const QString &path)
{
    m_content.reset();
    QByteArray bytes;
    const Status read = readFile(path, bytes, longestFile);
    return read ? parse(bytes) : read;
}

Status ProfileFile::parse(const QByteArray &bytes)
{
    m_content = std::make_shared<const Content>(textOfFile(bytes));
    return Status::done();
}

QString ProfileFile::value(const QString &section, const QString &key, qsizetype limit) const
{
    return m_content != nullptr ? firstCharacters(m_content->value(section, key), limit) : QString();
}

} // namespace ktr
