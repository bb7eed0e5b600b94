#include "config/fields_in_files.h"

#include "platform/files.h"
#include "platform/text_rules.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace ktr {

FieldsInFiles::FieldsInFiles(Environment environment, QList<FieldAssignment> assignments, Check check,
                             bool anyway)
    : m_environment(std::move(environment)),
      m_assignments(std::move(assignments)),
      m_check(std::move(check)),
      m_anyway(anyway)
{}

bool FieldsInFiles::add(const QString &file)
{
    const bool isThere = std::ranges::any_of(m_documents, [&file](const std::unique_ptr<Document> &other) {
        return isSameFile(other->fileName(), file);
    });
    if (isThere) {
        m_told += QCoreApplication::translate("FieldsInFiles", "%1 is named twice").arg(file);
        return false;
    }
    auto document = std::make_unique<Document>(m_environment);
    const ReadReport report = document->load(file);
    m_told += report.remarks;
    if (!report.document) {
        m_told += report.document.message();
    }
    if (!report.document || !report.isConfiguration) {
        return false;
    }
    m_documents.push_back(std::move(document));
    return assign(*m_documents.back());
}

bool FieldsInFiles::assign(Document &document)
{
    Configuration configuration = document.configuration();
    bool isSound = true;
    const auto tell = [&](const FieldAssignment &each, const QString &fault) {
        m_told += QStringLiteral("%1: %2: %3%4")
                      .arg(document.fileName(), each.field.path(),
                           quotedInRemark(shownValue(each.field, each.value)), fault);
    };
    QStringList keys;
    for (const FieldAssignment &each : m_assignments) {
        keys += each.field.key;
        const QString before = fieldValue(configuration, each.field.key);
        const FieldSetting set = setFieldValue(configuration, each.field.key, each.value, m_anyway);
        const QString after = fieldValue(configuration, each.field.key);
        if (!set.fault.isEmpty()) {
            tell(each, set.fault);
        }
        isSound = isSound && set.isStored;
        if (set.isStored && before != after) {
            m_changes += QStringLiteral("%1: %2: %3 -> %4")
                             .arg(document.fileName(), each.field.path(), shownValue(each.field, before),
                                  shownValue(each.field, after));
        }
    }
    const auto faults = m_check(document.configuration(), configuration, keys);
    for (const FieldAssignment &each : m_assignments) {
        if (const QString fault = faults.value(each.field.key); !fault.isEmpty()) {
            tell(each, fault);
            isSound = isSound && m_anyway;
        }
    }
    if (isSound && configuration != document.configuration()) {
        document.edit([&configuration](Configuration &present) { present = configuration; });
    }
    return isSound;
}

Status FieldsInFiles::save(const QString &as)
{
    int written = 0;
    for (const std::unique_ptr<Document> &document : m_documents) {
        if (!as.isEmpty()) {
            document->setFileName(as);
        } else if (!document->isModified()) {
            continue; // it has these values already
        }
        if (const Status saved = save(*document); !saved) {
            return written == 0 ? saved
                                : Status::failed(QCoreApplication::translate("FieldsInFiles",
                                                                             "%1; files saved before: %2")
                                                     .arg(saved.message())
                                                     .arg(written));
        }
        ++written;
    }
    return Status::done();
}

Status FieldsInFiles::save(Document &document)
{
    QString backup;
    if (Status kept = document.backUp(backup); !kept) {
        return kept;
    }
    if (!backup.isEmpty()) {
        m_told += QCoreApplication::translate("FieldsInFiles", "what stood in %1 is kept as %2")
                      .arg(document.fileName(), backup);
    }
    return document.save();
}

QString shownValue(const NamedField &field, const QString &value)
{
    return field.isSecret && !value.isEmpty() ? QStringLiteral("****") : value;
}

} // namespace ktr
