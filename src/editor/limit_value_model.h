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

} // namespace ktr
