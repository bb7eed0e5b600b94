#include "opmode/keeping/station_names.h"

#include "opmode/tree/node_texts.h"
#include "platform/text_rules.h"

#include <QCoreApplication>

namespace ktr {

namespace {

constexpr qsizetype told = 20;
constexpr qsizetype longestName = 60;

} // namespace

void StationNames::add(const QString &name)
{
    if (m_all.contains(name)) {
        return;
    }
    m_all.insert(name);
    if (m_names.size() < told) {
        const QString line = onOneLine(name).simplified();
        m_names += line.size() > longestName ? line.left(longestName) + QChar(0x2026) : line;
    }
}

void StationNames::add(std::string_view key)
{
    add(textOf(key.substr(0, key.find('/'))));
}

QString StationNames::text() const
{
    const QString names = m_names.join(QLatin1String(", "));
    return m_all.size() == m_names.size() ? names
                                          : QCoreApplication::translate("Files", "%1 and %2 more")
                                                .arg(names, QString::number(m_all.size() - m_names.size()));
}

} // namespace ktr
