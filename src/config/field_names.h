#pragma once

#include "config/configuration.h"
#include "lang/text_table.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

namespace ktr {

/// A field of a configuration with its names.
struct NamedField
{
    QString key;   ///< its place in the file: "Grenzwert3 Alarm", "PIN"
    QString page;  ///< where the user finds it, as in ComparedField
    QString entry; ///< empty where its page has none
    QString label;
    bool isStamp = false; ///< every edit writes it
    bool isSecret = false;
    bool isWhole = false; ///< stands for fields that have names of their own, too: the MAC address

    /// "Limit Value/LV 4/Notification"
    QString path() const;
};

/// All fields, in the order of the pages; holidays and the MAC address are one each.
QList<NamedField> namedFields(const TextTable &texts);

/// Finds fields by what people call them. One rule for all commands:
///
///     Grenzwert3 Alarm, Grenzwert3.Alarm      as in the file, which counts entries from 0
///     LV 4/Notification, GW 4/Meldung         as on the pages, which count from 1; the page may stand in
///     front PIN, Station ID, MAC               the label alone where there is one only
///     identifier, address, number 1, name 1    what tables of stations say
///
/// Upper or lower case, blanks at the ends and ä or ae make no difference.
class FieldNames
{
public:
    /// The names of the first table are those that are told. None may be null or empty.
    explicit FieldNames(const QList<TextTable> &languages);

    struct Found
    {
        const NamedField *field = nullptr; ///< null: none, or more than one
        QString complaint{};               ///< then, in words for the user, with the nearest names
    };
    Found find(const QString &name) const;
    /// What a place in the file ("Grenzwert3 Alarm") is on the pages ("Limit Value/LV 4/Notification"), which
    /// count from 1; a text that is no field's place as it is.
    QString onPages(const QString &place) const;

    const QList<NamedField> &fields() const { return m_fields; }
    /// All names that lead to one field each: those of the pages in all languages, then those of the file.
    const QStringList &all() const { return m_all; }

private:
    QString told(const QList<int> &fields) const;
    QList<int> nearest(const QString &name) const;

    QList<NamedField> m_fields;
    QStringList m_all;
    QHash<QString, QList<int>> m_keys;
    QHash<QString, QList<int>> m_aliases;
    QHash<QString, QList<int>> m_labels;
};

/// The names in English and German; those of `told` are told.
FieldNames fieldNamesOfAllLanguages(const TextTable &told = TextTable());

/// What a field holds, as text: numbers with a point, boxes as "0" and "1", holidays as "091224, 091225".
QString fieldValue(const Configuration &configuration, const QString &key);

/// What became of a value that a field was to be given.
struct FieldSetting
{
    bool isStored = false; ///< false: the field is as it was
    QString fault{}; ///< what is wrong with the value, to go on from it in a message; empty when nothing
};

/// Gives a field a value as if it was typed: by the field's own rule and check. "yes" and "no", in German,
/// too, are as good as "1" and "0". A faulty value is stored only where `anyway`, and where it can be.
FieldSetting setFieldValue(Configuration &configuration, const QString &key, const QString &value,
                           bool anyway = false);

} // namespace ktr
