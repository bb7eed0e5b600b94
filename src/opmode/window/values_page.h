#pragma once

#include "opmode/window/opmode_page.h"
#include "opmode/window/value_tile.h"

class QGridLayout;
class QLabel;
class QPushButton;
class QScrollArea;
class QTimer;

namespace ktr {

class ValueTimes;

/// The input values of the chosen station as it reported them last.
class ValuesPage : public HeadedPage
{
    Q_OBJECT

public:
    ValuesPage(OperationalMode &mode, const TextTable &texts, QWidget *parent = nullptr);

    void applyTexts() override;

protected:
    void stationChosen() override;
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *createContent();
    void arrangeTiles();
    void showValues();
    ValueTile::Content contentOf(int channel, const StationConfiguration &configuration) const;
    QString detailsOf(int channel, const StationConfiguration &configuration) const;
    QString staleReason() const;
    void showReportTime();
    void showRefresh();
    bool isWaiting() const;
    static QString waitingText();
    void requestValues();
    void showDelivery();
    void answer(const QString &line);

    QLabel *m_time;
    QLabel *m_answer;
    QPushButton *m_refresh;
    QScrollArea *m_scroll;
    QGridLayout *m_grid;
    std::array<ValueTile *, channelCount> m_tiles{};
    int m_columns = 0;
    bool m_isWaiting = false; ///< as shown last
    QTimer *m_batch;
    QTimer *m_ageing;
    ValueTimes *m_times;
};

} // namespace ktr
