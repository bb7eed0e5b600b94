#pragma once

#include "lang/text_table.h"
#include "opmode/operational_mode.h"

#include <QWidget>

class QComboBox;
class QLineEdit;

namespace ktr {

class StationTreeView;

/// The left side of the window: the tree of stations, and above it what narrows it down.
class StationTreePane : public QWidget
{
    Q_OBJECT

public:
    StationTreePane(OperationalMode &mode, const TextTable &texts, QWidget *parent = nullptr);

    StationTreeView &tree() { return *m_tree; }
    void applyFilter();
    void applyTexts();

private:
    OperationalMode &m_mode;
    const TextTable &m_texts;
    QLineEdit *m_search;
    QComboBox *m_kind; ///< of StationFilter::kinds()
    StationTreeView *m_tree;
};

} // namespace ktr
