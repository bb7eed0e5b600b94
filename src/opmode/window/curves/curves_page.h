#pragma once

#include "opmode/curves/curve_csv.h"
#include "opmode/curves/curve_store.h"
#include "opmode/window/opmode_page.h"

class QComboBox;
class QLabel;
class QPushButton;
class QSplitter;
class QStackedWidget;
class QTimer;
class QToolButton;
class QTreeView;

namespace ktr {

class CurveColumns;
class CurvesCanvas;
class CurvesLegend;
class RangeBar;
class SeriesChooser;

/// Curves of inputs of several stations over one time.
class CurvesPage : public OpmodePage
{
    Q_OBJECT

public:
    /// Asks for the name of a file to write; empty for "cancel". The filter is "description|patterns".
    using AskFileName = std::function<QString(const QString &proposal, const QString &filter)>;
    CurvesPage(OperationalMode &mode, const TextTable &texts, AskFileName askFileName,
               QWidget *parent = nullptr);
    ~CurvesPage() override;

    void applyTexts() override;
    /// Adds to the curves those that are not among them; of a whole station (see usualChannels) when the
    /// record has told which inputs have values. What there is no room for is told.
    void add(const QList<SeriesId> &series);
    const QList<SeriesId> &series() const { return m_series; }

protected:
    void stationChosen() override {}
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void changeEvent(QEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *createBar();
    QWidget *createPlot();
    void connectParts();
    void restore();
    void keep();
    void restoreSeries();
    void stationsChanged();
    void addInputs(const QList<SeriesId> &series, QStringList left);
    void remove(const QList<SeriesId> &series);
    void removeChosen();
    void seriesChanged();
    void takeBack();
    void showChooser(bool isShown);
    void load(bool anew = false);
    void followOn();
    QList<ShownCurve> shownCurves() const;
    void draw();
    void tellState();
    void tellCursor();
    QString title() const;
    void savePicture();
    void saveTable();

    AskFileName m_askFileName;
    CurveStore m_store;
    KeptSeries m_kept;
    QList<SeriesId> m_series;
    QHash<int, SeriesId> m_slots;
    QList<SeriesId> m_hidden;
    QMap<int, SeriesId> m_away; ///< of removed stations that can be brought back, by their place
    bool m_isRestored = false;
    std::optional<HistoryLevel> m_level; ///< that the list's columns are made for
    qint64 m_readAt = 0;                 ///< when it was read anew, while it follows
    QTimer *m_follow;
    QTimer *m_stationsTimer;
    RangeBar *m_range;
    QComboBox *m_form;
    QToolButton *m_choose;
    QPushButton *m_picture;
    QPushButton *m_table;
    QSplitter *m_beside; ///< the curves and the chooser
    QSplitter *m_below;  ///< the plot and the list of curves
    QStackedWidget *m_stack;
    QLabel *m_empty;
    std::unique_ptr<CurvesCanvas> m_canvas;
    QLabel *m_state;
    CurvesLegend *m_legend;
    QTreeView *m_list;
    CurveColumns *m_columns;
    SeriesChooser *m_chooser;
};

} // namespace ktr
