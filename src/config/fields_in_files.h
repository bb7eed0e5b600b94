#pragma once

#include "config/document.h"
#include "config/field_names.h"

#include <functional>
#include <memory>
#include <vector>

namespace ktr {

/// A field and what it is to hold.
struct FieldAssignment
{
    NamedField field;
    QString value;
};

/// Sets fields in several configuration files: in all of them, or where anything is wrong in none.
class FieldsInFiles
{
public:
    /// What is wrong with what the fields (by their keys) hold together: why, to go on from the value.
    using Check = std::function<QHash<QString, QString>(const Configuration &before,
                                                        const Configuration &after, const QStringList &keys)>;

    /// With `anyway` a faulty value is stored where it can be.
    FieldsInFiles(Environment environment, QList<FieldAssignment> assignments, Check check,
                  bool anyway = false);

    /// Reads a file and sets the fields in what was read. False where that cannot be done, or the file is
    /// there already; told() says why.
    bool add(const QString &file);

    /// Saves the files in which something changed; with a name the only one is saved there. What another
    /// program made of a file meanwhile is kept beside it, which told() says.
    Status save(const QString &as = {});

    /// What was remarked of files and values, a line each. No PIN stands in it, nor in changes().
    const QStringList &told() const { return m_told; }
    /// "a.xml: GSM/PIN: **** -> ****"
    const QStringList &changes() const { return m_changes; }

private:
    bool assign(Document &document);
    Status save(Document &document);

    Environment m_environment;
    QList<FieldAssignment> m_assignments;
    Check m_check;
    bool m_anyway;
    std::vector<std::unique_ptr<Document>> m_documents;
    QStringList m_told;
    QStringList m_changes;
};

/// A value as it may be shown: a secret one becomes stars.
QString shownValue(const NamedField &field, const QString &value);

} // namespace ktr
