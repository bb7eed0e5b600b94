#include "opmode/window/curves/series_chooser.h"

#include "look/list_views.h"
#include "opmode/operational_mode.h"
#include "opmode/window/curves/series_drag.h"
#include "opmode/window/input_caption.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace ktr {

namespace {

constexpr int keyRole = Qt::UserRole;
constexpr int channelRole = Qt::UserRole + 1;
constexpr int filledRole = Qt::UserRole + 2;
constexpr int searchedRole = Qt::UserRole + 3;

QString keyOf(const QTreeWidgetItem &item)
{
    return item.data(0, keyRole).toString();
}

int channelOf(const QTreeWidgetItem &item)
{
    return item.data(0, channelRole).toInt();
}

bool hasPart(const QString &name, QStringView text)
{
    return name.contains(text, Qt::CaseInsensitive);
}

/// Whether the text is a part of a station's input: "level", "analog in 1", or with a part of the station's
/// name in front "north level".
bool isInputMeant(const QString &station, const QString &input, const QString &text)
{
    bool isMeant = hasPart(input, text);
    for (qsizetype blank = text.indexOf(u' '); blank >= 0 && !isMeant;
         blank = text.indexOf(u' ', blank + 1)) {
        const QStringView view(text);
        isMeant = hasPart(station, view.first(blank)) && hasPart(input, view.sliced(blank).trimmed());
    }
    return isMeant;
}

/// All that an input is called by.
QString searchedName(int channel, const ChannelNames &names)
{
    return inputCaption(channel, names) + u'\n' + shortInputCaption(channel, names);
}

/// The same of all inputs; most stations have no names for them.
QStringList searchedNames(const ChannelNames &names)
{
    const auto make = [](const ChannelNames &of) {
        QStringList all;
        for (int channel = 1; channel <= channelCount; ++channel) {
            all += searchedName(channel, of);
        }
        return all;
    };
    static const QStringList unnamed = make({});
    return names.isEmpty() ? unnamed : make(names);
}

} // namespace

SeriesChooser::SeriesChooser(const OperationalMode &mode, ChannelsOf channelsOf, QWidget *parent)
    : QWidget(parent),
      m_mode(mode),
      m_channelsOf(std::move(channelsOf)),
      m_search(searchField(QStringLiteral("Text_curves_search"), this)),
      m_list(new QTreeWidget(this)),
      m_nothing(new QLabel(this))
{
    m_list->setObjectName(QStringLiteral("List_curves_inputs"));
    m_list->setHeaderHidden(true);
    m_list->setUniformRowHeights(true);
    m_list->setTextElideMode(Qt::ElideMiddle); // stations often begin alike
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins({});
    m_nothing->setObjectName(QStringLiteral("lbl_curves_nothing"));
    m_nothing->setWordWrap(true);
    m_nothing->hide();
    column->addWidget(m_search);
    column->addWidget(m_nothing);
    column->addWidget(m_list, 1);
    connect(m_list, &QTreeWidget::itemExpanded, this, &SeriesChooser::fill);
    connect(m_list, &QTreeWidget::itemChanged, this, [this](const QTreeWidgetItem *item) {
        if (channelOf(*item) > 0) {
            Q_EMIT chosen({keyOf(*item), channelOf(*item)}, item->checkState(0) == Qt::Checked);
        }
    });
    connect(m_search, &QLineEdit::textChanged, this, [this] {
        filter();
        openHits();
    });
    m_search->installEventFilter(this);
    m_list->installEventFilter(this);
    new SeriesDrag(*m_list, [this](const QModelIndex &index) {
        const QString key = index.data(keyRole).toString();
        const int channel = index.data(channelRole).toInt();
        return key.isEmpty() ? QList<SeriesId>()
               : channel > 0 ? QList<SeriesId>{{key, channel}}
                             : usualSeries(m_mode, key);
    });
}

void SeriesChooser::applyTexts()
{
    m_search->setPlaceholderText(tr("Find a station or an input"));
    m_search->setAccessibleName(m_search->placeholderText());
    m_search->setToolTip(tr("Down goes into the list; Enter chooses the only input that is found"));
    m_nothing->setText(tr("No station and no input with values is called so."));
    m_list->setAccessibleName(tr("Inputs to draw"));
    m_list->setToolTip(tr("Open a station to see its inputs with values; the space bar or Enter chooses"));
}

void SeriesChooser::setFocusOnSearch()
{
    m_search->setFocus(Qt::OtherFocusReason);
}

void SeriesChooser::refresh()
{
    const StationTree &tree = m_mode.tree();
    bool isSame = tree.rowCount() == m_list->topLevelItemCount();
    for (int row = 0; row < tree.rowCount() && isSame; ++row) {
        const QModelIndex station = tree.index(row, 0);
        isSame = station.data(StationTree::KeyRole).toString() == keyOf(*m_list->topLevelItem(row)) &&
                 station.data(Qt::EditRole).toString() == m_list->topLevelItem(row)->text(0);
    }
    if (isSame) {
        return;
    }
    const QSignalBlocker quiet(m_list);
    m_list->clear();
    QList<QTreeWidgetItem *> items;
    for (int row = 0; row < tree.rowCount(); ++row) {
        const QModelIndex station = tree.index(row, 0);
        auto *item = new QTreeWidgetItem({station.data(Qt::EditRole).toString()});
        item->setData(0, keyRole, station.data(StationTree::KeyRole));
        item->setToolTip(0, item->text(0));
        item->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
        items += item;
    }
    m_list->addTopLevelItems(items);
    filter();
}

QTreeWidgetItem *SeriesChooser::itemOf(const QString &kennung) const
{
    for (int row = 0; row < m_list->topLevelItemCount(); ++row) {
        if (keyOf(*m_list->topLevelItem(row)) == kennung) {
            return m_list->topLevelItem(row);
        }
    }
    return nullptr;
}

/// Each time it is opened: there may be more by then.
void SeriesChooser::fill(QTreeWidgetItem *station)
{
    const QString kennung = keyOf(*station);
    m_channelsOf(kennung, [this, kennung](const QList<int> &channels) { addInputs(kennung, channels); });
}

void SeriesChooser::addInputs(const QString &kennung, const QList<int> &channels)
{
    QTreeWidgetItem *station = itemOf(kennung);
    if (station == nullptr) {
        return;
    }
    const QSignalBlocker quiet(m_list);
    qDeleteAll(station->takeChildren());
    for (const int channel : channels) {
        addInput(*station, channel);
    }
    if (channels.isEmpty()) {
        auto *none = new QTreeWidgetItem(station, {tr("It has not sent any values yet.")});
        none->setFlags(Qt::NoItemFlags);
    }
    station->setData(0, filledRole, true);
    tick();
    filter();
    m_list->viewport()->update();
}

void SeriesChooser::addInput(QTreeWidgetItem &station, int channel)
{
    const ChannelNames names = m_mode.channelNames(keyOf(station));
    const QString &unit = names.of(channel).unit;
    auto *item =
        new QTreeWidgetItem(&station, {shortInputCaption(channel, names) +
                                       (unit.isEmpty() ? QString() : QStringLiteral(" [%1]").arg(unit))});
    item->setData(0, keyRole, keyOf(station));
    item->setData(0, channelRole, channel);
    item->setData(0, searchedRole, searchedName(channel, names));
    item->setToolTip(0, station.text(0) + QStringLiteral(" – ") + inputCaption(channel, names));
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
}

void SeriesChooser::setChosen(const QList<SeriesId> &series)
{
    m_chosen = series;
    const QSignalBlocker quiet(m_list);
    tick();
    m_list->viewport()->update();
}

void SeriesChooser::tick()
{
    for (int row = 0; row < m_list->topLevelItemCount(); ++row) {
        QTreeWidgetItem &station = *m_list->topLevelItem(row);
        for (int child = 0; child < station.childCount(); ++child) {
            QTreeWidgetItem &input = *station.child(child);
            if (const int channel = channelOf(input); channel > 0) {
                const bool isChosen = m_chosen.contains(SeriesId{keyOf(station), channel});
                input.setCheckState(0, isChosen ? Qt::Checked : Qt::Unchecked);
            }
        }
    }
}

/// Stations with such a name, or with an input that is called so, which alone is shown then.
void SeriesChooser::filter()
{
    const QString text = m_search->text().simplified();
    bool isAny = false;
    for (int row = 0; row < m_list->topLevelItemCount(); ++row) {
        QTreeWidgetItem &station = *m_list->topLevelItem(row);
        const bool isShown = filterStation(station, text);
        station.setHidden(!isShown);
        isAny = isAny || isShown;
    }
    m_nothing->setVisible(!isAny && !text.isEmpty());
}

/// Of a station whose inputs are not known yet those that it may have are meant.
bool SeriesChooser::filterStation(QTreeWidgetItem &station, const QString &text)
{
    const QString name = station.text(0);
    const bool isStation = text.isEmpty() || hasPart(name, text);
    bool hasInput = false;
    for (int child = 0; child < station.childCount(); ++child) {
        QTreeWidgetItem &input = *station.child(child);
        const bool isMeant = isStation || isInputMeant(name, input.data(0, searchedRole).toString(), text);
        input.setHidden(!isMeant);
        hasInput = hasInput || isMeant;
    }
    if (isStation || station.data(0, filledRole).toBool()) {
        return isStation || hasInput;
    }
    const QStringList inputs = searchedNames(m_mode.channelNames(keyOf(station)));
    return std::ranges::any_of(inputs, [&](const QString &input) { return isInputMeant(name, input, text); });
}

/// The only station that was found shows its inputs, and so do some that were found by an input.
void SeriesChooser::openHits()
{
    constexpr qsizetype some = 12;
    const QString text = m_search->text().simplified();
    QList<QTreeWidgetItem *> hits;
    for (int row = 0; row < m_list->topLevelItemCount() && hits.size() <= some; ++row) {
        if (QTreeWidgetItem *station = m_list->topLevelItem(row); !station->isHidden()) {
            hits += station;
        }
    }
    if (text.isEmpty() || hits.size() > some) {
        return;
    }
    for (QTreeWidgetItem *hit : std::as_const(hits)) {
        if (hits.size() == 1 || !hasPart(hit->text(0), text)) {
            hit->setExpanded(true); // it is filled by that
        }
    }
}

/// Those of open stations that the search leaves.
QList<QTreeWidgetItem *> SeriesChooser::shownInputs() const
{
    QList<QTreeWidgetItem *> inputs;
    for (int row = 0; row < m_list->topLevelItemCount(); ++row) {
        const QTreeWidgetItem *station = m_list->topLevelItem(row);
        for (int child = 0; child < station->childCount() && station->isExpanded(); ++child) {
            QTreeWidgetItem *input = station->child(child);
            if (!station->isHidden() && !input->isHidden() && channelOf(*input) > 0) {
                inputs += input;
            }
        }
    }
    return inputs;
}

/// To the first input that is found, or else to the first station.
bool SeriesChooser::goIntoList()
{
    const QList<QTreeWidgetItem *> inputs =
        m_search->text().trimmed().isEmpty() ? QList<QTreeWidgetItem *>() : shownInputs();
    QTreeWidgetItem *wanted = inputs.value(0);
    for (int row = 0; wanted == nullptr && row < m_list->topLevelItemCount(); ++row) {
        QTreeWidgetItem *station = m_list->topLevelItem(row);
        wanted = station->isHidden() ? nullptr : station;
    }
    if (wanted != nullptr) { // otherwise nothing is found
        m_list->setCurrentItem(wanted);
        m_list->scrollToItem(wanted);
        m_list->setFocus(Qt::OtherFocusReason);
    }
    return true;
}

/// An input is chosen, or no longer; a station is opened or closed.
bool SeriesChooser::press(QTreeWidgetItem *item)
{
    if (item == nullptr || item->isHidden()) {
        return false;
    }
    if (channelOf(*item) > 0) {
        item->setCheckState(0, item->checkState(0) == Qt::Checked ? Qt::Unchecked : Qt::Checked);
    } else if (item->parent() == nullptr) {
        item->setExpanded(!item->isExpanded());
    }
    return true;
}

bool SeriesChooser::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress) {
        return QWidget::eventFilter(watched, event);
    }
    const int key = static_cast<const QKeyEvent *>(event)->key();
    const bool isEnter = key == Qt::Key_Return || key == Qt::Key_Enter;
    if (watched == m_list) {
        return isEnter && press(m_list->currentItem());
    }
    if (key == Qt::Key_Down) {
        return goIntoList();
    }
    if (!isEnter) {
        return false;
    }
    const QList<QTreeWidgetItem *> inputs = shownInputs();
    return inputs.size() == 1 ? press(inputs.first()) : goIntoList();
}

} // namespace ktr
