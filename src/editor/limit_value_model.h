#pragma once

#include "editor/entry_model.h"
#include "lang/text_table.h"

namespace ktr {

/// All limit values: channel or combined entries, condition, text.
class LimitValueModel : public EntryModel
{
    Q_OBJECT

public:
    explicit LimitValueModel(QObject *parent = nullptr);

    void setTexts(const TextTable &texts);
    void show(const Configuration &configuration, const TextTable &texts);
};

/// The comparisons of limit values in the order of their values, 1 to 3.
QStringList comparisonSigns();

/// The limit values that a combination refers to, as the user counts them: "1+3+5".
QString combinedEntries(double reference);

} // namespace ktr
