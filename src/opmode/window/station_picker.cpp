#include "opmode/window/station_picker.h"

#include "look/list_views.h"
#include "opmode/tree/station_tree.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QVBoxLayout>

namespace ktr {

StationPicker::StationPicker(const StationTree &tree, QWidget *parent)
    : QWidget(parent),
      m_stations(new QStandardItemModel(this)),
      m_shown(new QSortFilterProxyModel(this)),
      m_filter(searchField(QStringLiteral("Text_export_filter"), this)),
      m_all(new QCheckBox(tr("All that are shown"), this)),
      m_list(new QListView(this)),
      m_count(new QLabel(this))
{
    for (int row = 0; row < tree.rowCount(); ++row) {
        const QModelIndex station = tree.index(row, 0);
        auto *item = new QStandardItem(station.data().toString());
        item->setData(station.data(StationTree::KeyRole), StationTree::KeyRole);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        item->setCheckState(Qt::Unchecked);
        m_stations->appendRow(item);
    }
    m_shown->setSourceModel(m_stations);
    m_shown->setFilterCaseSensitivity(Qt::CaseInsensitive);

    m_filter->setPlaceholderText(tr("Find a station"));
    m_filter->setAccessibleName(m_filter->placeholderText());
    m_filter->setToolTip(tr("Shows the stations whose names hold this text"));
    m_all->setObjectName(QStringLiteral("Check_export_allShown"));
    m_all->setToolTip(tr("Ticks the stations of the list, or none of them"));
    m_list->setObjectName(QStringLiteral("lst_export_stations"));
    m_list->setAccessibleName(tr("Stations"));
    m_list->setToolTip(tr("The space bar ticks the station that is chosen"));
    m_list->setModel(m_shown);
    m_list->setUniformItemSizes(true);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    constexpr int fewestRows = 4;
    m_list->setMinimumHeight(fewestRows * (fontMetrics().height() + 6));

    auto *lines = new QVBoxLayout(this);
    lines->setContentsMargins(0, 0, 0, 0);
    lines->addWidget(m_filter);
    lines->addWidget(m_all);
    lines->addWidget(m_list, 1);
    m_count->setObjectName(QStringLiteral("Label_export_chosen"));
    lines->addWidget(m_count);

    goDownInto(*m_filter, *m_list);
    connect(m_filter, &QLineEdit::textChanged, this, [this](const QString &text) {
        m_shown->setFilterFixedString(text.trimmed());
        showTicks();
    });
    connect(m_all, &QCheckBox::clicked, this, [this](bool on) { tickShown(on); });
    connect(m_stations, &QStandardItemModel::itemChanged, this, [this] {
        if (!m_isTickingMany) {
            showTicks();
            Q_EMIT changed();
        }
    });
    showTicks();
}

QStringList StationPicker::ticked() const
{
    QStringList keys;
    for (int row = 0; row < m_stations->rowCount(); ++row) {
        const QStandardItem *item = m_stations->item(row);
        if (item->checkState() == Qt::Checked) {
            keys += item->data(StationTree::KeyRole).toString();
        }
    }
    return keys;
}

void StationPicker::tickShown(bool on)
{
    m_isTickingMany = true;
    for (int row = 0; row < m_shown->rowCount(); ++row) {
        m_shown->setData(m_shown->index(row, 0), on ? Qt::Checked : Qt::Unchecked, Qt::CheckStateRole);
    }
    m_isTickingMany = false;
    showTicks();
    Q_EMIT changed();
}

/// How many are ticked, those that the filter hides too: they are exported with the others.
void StationPicker::showTicks()
{
    int shown = 0;
    for (int row = 0; row < m_shown->rowCount(); ++row) {
        const auto state = m_shown->index(row, 0).data(Qt::CheckStateRole).value<Qt::CheckState>();
        shown += state == Qt::Checked ? 1 : 0;
    }
    m_all->setEnabled(m_shown->rowCount() > 0);
    const Qt::CheckState state = shown == 0                     ? Qt::Unchecked
                                 : shown == m_shown->rowCount() ? Qt::Checked
                                                                : Qt::PartiallyChecked;
    m_all->setTristate(state == Qt::PartiallyChecked); // a click gives all or none, never some
    m_all->setCheckState(state);
    const auto all = static_cast<int>(ticked().size());
    const QString count = tr("%1 chosen").arg(locale().toString(all));
    m_count->setText(
        shown == all ? count : tr("%1, %2 of them not shown").arg(count, locale().toString(all - shown)));
}

} // namespace ktr
