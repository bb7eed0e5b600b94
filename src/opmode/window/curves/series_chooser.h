#pragma once

#include "opmode/curves/curve_series.h"

#include <QWidget>

class QLabel;
class QLineEdit;
class QTreeWidget;
class QTreeWidgetItem;

namespace ktr {

/// A list of all stations and of their inputs with values, to be ticked.
class SeriesChooser : public QWidget
{
    Q_OBJECT

public:
    /// Tells the inputs of a station that have any values, now or later.
    using ChannelsOf =
        std::function<void(const QString &kennung, std::function<void(const QList<int> &channels)> tell)>;
    SeriesChooser(const OperationalMode &mode, ChannelsOf channelsOf, QWidget *parent = nullptr);

    void applyTexts();
    /// Lists the stations anew where they are others.
    void refresh();
    /// Ticks these and no others.
    void setChosen(const QList<SeriesId> &series);
    void setFocusOnSearch();

Q_SIGNALS:
    void chosen(const ktr::SeriesId &series, bool isChosen);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void fill(QTreeWidgetItem *station);
    void addInputs(const QString &kennung, const QList<int> &channels);
    void addInput(QTreeWidgetItem &station, int channel);
    void filter();
    bool filterStation(QTreeWidgetItem &station, const QString &text);
    void openHits();
    QList<QTreeWidgetItem *> shownInputs() const;
    bool goIntoList();
    bool press(QTreeWidgetItem *item);
    void tick();
    QTreeWidgetItem *itemOf(const QString &kennung) const;

    const OperationalMode &m_mode;
    ChannelsOf m_channelsOf;
    QLineEdit *m_search;
    QTreeWidget *m_list;
    QLabel *m_nothing;
    QList<SeriesId> m_chosen;
};

} // namespace ktr
