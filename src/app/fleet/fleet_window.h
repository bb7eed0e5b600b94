#pragma once

#include "app/fleet/fleet_run.h"
#include "config/field_names.h"
#include "config/neighbours.h"

#include <QHash>
#include <QTimer>
#include <QWidget>

#include <functional>

class QCheckBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QSortFilterProxyModel;
class QSpinBox;
class QStandardItemModel;
class QTableView;

namespace ktr {

class EmptyNotice;
class ProblemLabel;

/// Transmits configurations to many of the stations that the operational mode watches: chooses them and
/// their files, sets a field in all of these, shows what would be sent to each, and what became of it.
class FleetWindow : public QWidget
{
    Q_OBJECT

public:
    struct Services
    {
        FleetRun::Means means;
        std::function<QString(const QString &proposal, const QString &filter)> askSave;
        std::function<QString(const QString &filter)> askOpen;
        /// An existing folder; empty for "cancel".
        std::function<QString(const QString &present)> askFolder;
    };

    /// Shows all stations that the operational mode has now; of these the ones with such keys are ticked.
    FleetWindow(Services services, const QStringList &ticked, QWidget *parent = nullptr);
    ~FleetWindow() override;

    void applyTexts();
    bool isRunning() const { return m_run.isRunning(); }

Q_SIGNALS:
    void runningChanged(bool isRunning);

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    static std::vector<FleetRow> stationsOf(const OperationalMode &mode, const QStringList &ticked);
    void layOut();
    QLayout *filesRow();
    QLayout *fieldRow();
    QLayout *stationsRow();
    QLayout *optionsRow();
    QLayout *buttonsRow();
    QPushButton *button(const char *name, void (FleetWindow::*clicked)());
    void connectParts();

    void chooseFolder();
    void chooseReceipts();
    void chooseFile();
    void takeFolder();
    void assign(const QList<FileOfStation> &files);
    void load(int row, const QString &file);
    void look(int row);
    QList<Neighbour> neighboursOf(const QString &file);
    void setField();
    void transmit();
    void retry();
    void begin(QList<int> rows);
    bool mayLend(const QList<int> &rows);
    void finish();
    void saveResults();

    int current() const;
    QList<int> shown() const;
    void toggleTicks();
    void tickShown(bool on);
    void showState();
    void showDetails();
    void tell(const QString &line, const QString &problem = {});
    QList<FleetStation> stations() const;

    Services m_services;
    FieldNames m_names;
    Neighbours m_neighbours;
    QHash<QString, QList<Neighbour>> m_inFolders; ///< as they were read last
    FleetModel m_model;
    FleetRun m_run;
    QSortFilterProxyModel *m_shown;
    QStandardItemModel *m_differences;
    QString m_trouble;   ///< of the run beside its modules
    QTimer m_stateTimer; ///< many rows change within a moment

    QLabel *m_folderLabel;
    QLineEdit *m_folder;
    QPushButton *m_chooseFolder;
    QPushButton *m_chooseFile;
    QLabel *m_fieldLabel;
    QLineEdit *m_field;
    QLineEdit *m_value;
    QPushButton *m_set;
    QLineEdit *m_filter;
    QCheckBox *m_all;
    QLabel *m_count;
    QTableView *m_list;
    EmptyNotice *m_notice;
    QLabel *m_detailsTitle;
    QTableView *m_details;
    QCheckBox *m_changesOnly;
    QLabel *m_atOnceLabel;
    QSpinBox *m_atOnce;
    QLabel *m_receiptsLabel;
    QLineEdit *m_receipts;
    QPushButton *m_chooseReceipts;
    ProblemLabel *m_problem;
    QLabel *m_told;
    QProgressBar *m_progress;
    QPushButton *m_transmit;
    QPushButton *m_cancel;
    QPushButton *m_retry;
    QPushButton *m_results;
    QPushButton *m_close;
};

} // namespace ktr
