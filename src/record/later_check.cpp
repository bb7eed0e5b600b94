#include "record/later_check.h"

#include "platform/files.h"
#include "record/record_database.h"

namespace ktr {

using namespace Qt::StringLiterals;

LaterCheck::LaterCheck(QString path, std::function<void(const Status &)> ended)
    : m_path(std::move(path)), m_ended(std::move(ended))
{
    m_thread.start([this] { run(); });
}

LaterCheck::~LaterCheck()
{
    m_isEnding = true;
    m_thread.wait();
}

void LaterCheck::run()
{
    if (const std::optional<Status> sound = look()) {
        QMetaObject::invokeMethod(
            &m_receiver, [this, sound] { m_ended(*sound); }, Qt::QueuedConnection);
    }
}

/// Table by table, so that it can be broken off, and so that the writer's log is cut back in between. Gives
/// nothing where it could not be looked through.
std::optional<Status> LaterCheck::look()
{
    RecordDatabase database;
    bool isRead = static_cast<bool>(database.open(m_path, RecordDatabase::Use::Read));
    const auto each = [&](const QString &statement) {
        QStringList texts;
        QSqlQuery *query = database.prepared(statement);
        isRead = isRead && query != nullptr && database.run(*query);
        while (isRead && query->next()) {
            texts += query->value(0).toString();
        }
        isRead = isRead && database.wasReadToItsEnd(*query);
        if (query != nullptr) {
            query->finish();
        }
        return texts;
    };
    const QStringList tables =
        each(u"SELECT name FROM sqlite_master WHERE type = 'table' AND rootpage > 0 ORDER BY name"_s);
    Status sound = Status::done();
    for (qsizetype i = 0; isRead && sound && i < tables.size(); ++i) {
        if (m_isEnding) {
            return std::nullopt;
        }
        const QStringList found = each(u"PRAGMA quick_check('%1')"_s.arg(tables[i]));
        if (isRead && found != QStringList{u"ok"_s}) {
            sound = fileFailure(m_path, found.join(u"; "_s));
        }
    }
    if (!isRead) {
        sound = database.failure();
    }
    if (database.isMoved()) { // it was mended meanwhile
        return Status::done();
    }
    return isRead || database.isDamaged() ? std::optional(sound) : std::nullopt;
}

} // namespace ktr
