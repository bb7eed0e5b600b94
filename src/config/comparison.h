#pragma once

#include "config/configuration.h"
#include "lang/text_table.h"

#include <QList>
#include <QLocale>
#include <QString>

namespace ktr {

/// A field in which configurations differ, in the user's words. Values have their units, choices the texts of
/// their items, check boxes "yes" and "no"; an empty value is empty, and a secret one is never told.
struct ComparedField
{
    /// Who changed it since the common ancestor.
    enum class Change {
        Unknown, ///< there is no ancestor
        Mine,
        Theirs,
        Both,    ///< in the same way
        Conflict ///< each in another way
    };

    QString key; ///< its place in the file, as "Grenzwert3 Alarm"; of a holiday its date: "Feiertag 091224"
    QString control; ///< the control that shows it; empty when there is no single one
    int index = 0;   ///< of its record in the array of records
    QString page;    ///< the title of its page
    QString entry;   ///< the entry of that page; empty where it has none
    QString label;
    QString mine;
    QString theirs;
    QString base; ///< without an ancestor empty
    Change change = Change::Unknown;
    bool isStamp = false; ///< tells when a configuration was edited, not what it does

    bool operator==(const ComparedField &) const = default;
};

/// The languages of what is told: the table's and the locale's; our own texts are in the program's.
struct ComparisonWords
{
    const TextTable &texts;
    const QLocale &locale;
};

/// The fields in which two configurations differ, in the order of the pages and of their entries. An empty
/// text and the one that a file's reader puts in its place are the same.
QList<ComparedField> compareConfigurations(const Configuration &mine, const Configuration &theirs,
                                           const ComparisonWords &words);

/// All fields of a configuration in the same words and order, `theirs` being `mine`. Holidays are left out.
QList<ComparedField> describeConfiguration(const Configuration &configuration, const ComparisonWords &words);

/// The fields that either has changed since a common ancestor.
QList<ComparedField> compareConfigurations(const Configuration &mine, const Configuration &theirs,
                                           const Configuration &base, const ComparisonWords &words);

/// The input or output whose setting a control of the page of inputs shows, 1 to 18; 0 for none.
int channelOfControl(const QString &control);

/// Whether they differ in more than their stamps.
bool differInMoreThanStamps(const QList<ComparedField> &fields);

/// Copies what a row of a comparison stands for. False, and nothing happens, when the list of holidays has no
/// room left or there is no such field.
bool takeField(Configuration &to, const Configuration &from, const QString &key);

/// What two made of a common ancestor, together.
struct Merge
{
    Configuration configuration;    ///< where there are no conflicts
    QList<ComparedField> conflicts; ///< what both changed, each in another way, and holidays without room
};

/// Takes what only the other one has changed into mine. The stamps stay those of mine.
Merge mergeConfigurations(const Configuration &mine, const Configuration &theirs, const Configuration &base,
                          const ComparisonWords &words);

} // namespace ktr
