#include "opmode/window/station_tree_pane.h"

#include "look/icons.h"
#include "opmode/window/branch_opener.h"
#include "opmode/window/curves/series_drag.h"
#include "opmode/window/station_tree_view.h"

#include <QComboBox>
#include <QLineEdit>
#include <QVBoxLayout>

namespace ktr {

StationTreePane::StationTreePane(OperationalMode &mode, const TextTable &texts, QWidget *parent)
    : QWidget(parent),
      m_mode(mode),
      m_texts(texts),
      m_search(new QLineEdit(this)),
      m_kind(new QComboBox(this)),
      m_tree(new StationTreeView(mode.tree(), this))
{
    m_search->setObjectName(QStringLiteral("Text_filter_station"));
    m_search->setClearButtonEnabled(true);
    m_search->addAction(icon(IconName::Search), QLineEdit::LeadingPosition);
    m_kind->setObjectName(QStringLiteral("Combo_filter_station"));
    m_kind->addItems(QStringList(static_cast<qsizetype>(StationFilter::kinds().size())));
    auto *column = new QVBoxLayout(this);
    column->addWidget(m_search);
    column->addWidget(m_kind);
    column->addWidget(m_tree, 1);
    new SeriesDrag(*m_tree, [&mode](const QModelIndex &node) { return seriesOfNode(mode, node); });
    auto *opener = new BranchOpener(*m_tree, mode.tree());
    connect(&mode, &OperationalMode::alarmRaised, opener, &BranchOpener::reveal);
    connect(m_search, &QLineEdit::textChanged, this, &StationTreePane::applyFilter);
    connect(m_kind, &QComboBox::activated, this, &StationTreePane::applyFilter);
}

void StationTreePane::applyFilter()
{
    const auto addressOf = [this](const QString &kennung) {
        const cStation *station = m_mode.station(kennung);
        return station == nullptr ? QString() : station->hostAddress();
    };
    m_tree->setFilter({addressOf, m_search->text().trimmed(),
                       &StationFilter::kinds()[static_cast<std::size_t>(m_kind->currentIndex())]});
}

void StationTreePane::applyTexts()
{
    m_search->setPlaceholderText(tr("Find a station (name or address)"));
    m_search->setAccessibleName(m_search->placeholderText());
    int item = 0;
    for (const StationFilter::Kind &kind : StationFilter::kinds()) {
        m_kind->setItemText(item++, kind.caption(m_texts));
    }
    m_kind->setAccessibleName(tr("Stations shown"));
    m_tree->setAccessibleName(tr("Stations"));
}

} // namespace ktr
