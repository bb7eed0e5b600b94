#pragma once

#include "config/fields.h"
#include "lang/text_table.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace ktr {

/// A field as the manual tells it: one, however many records have it, and one for each control that shows it.
struct GuideField
{
    QString page;       ///< its page's anchor in the manual, the same in every language: "limit-values"
    QString anchor;     ///< its own, the control without an index: "Txt_gw_gw"
    QString label;      ///< as on the page
    QString meaning;    ///< as in its tool tip
    QString values;     ///< what it may be, with the unit
    QString whenNew;    ///< what "new" sets, in words
    QStringList places; ///< in the file: "Grenzwert0…15 Hysterese"
};

/// The anchors of the pages that have fields, in the order of the pages.
QStringList guidePages();

/// All fields, those of a page together, each page's in the order of the file.
QList<GuideField> guideFields(const TextTable &texts);

/// The fields of a page as a table in Markdown, each row with a link to the field's anchor.
QString guideTable(const QString &page, const TextTable &texts);

} // namespace ktr
