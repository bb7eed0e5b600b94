#pragma once

#include "opmode/lists/nodes_export.h"

#include <QDialog>

#include <array>

class QCheckBox;
class QComboBox;
class QDateTimeEdit;
class QGroupBox;
class QLabel;
class QPushButton;
class QRadioButton;
class QTimer;

namespace ktr {

class ProblemLabel;
class StationPicker;
class StationTree;
class TextTable;

/// Asks what of the tree is to be exported and exports it, while the stations go on. The first "cancel"
/// during an export ends that and leaves the file as it was.
class ExportDialog : public QDialog
{
    Q_OBJECT

public:
    struct Services
    {
        /// Asks for the name of a file; empty for "cancel". The filter is "description|patterns".
        std::function<QString(const QString &proposal, const QString &filter)> askSave;
        std::function<QDateTime()> now = [] { return QDateTime::currentDateTime(); };
    };

    /// The tree must outlive the dialog. `chosen` are the keys of the stations that are chosen; several are
    /// proposed.
    ExportDialog(const StationTree &tree, const TextTable &texts, const QStringList &chosen,
                 Services services, QWidget *parent = nullptr);
    ~ExportDialog() override;

    void reject() override;

Q_SIGNALS:
    /// A line for the status bar.
    void statusMessage(const QString &line);

private:
    enum Stations { AllStations, ChosenStation, TickedStations };
    enum Period { Everything, Today, LastDays, ThisMonth, FromTo };

    QWidget *entriesCard(const TextTable &texts);
    QWidget *periodCard();
    QWidget *stationsCard(const QStringList &chosen);
    QLayout *buttons(const TextTable &texts);
    QDateTimeEdit *timeField(const char *name, const QString &accessible);
    ExportChoice choice() const;
    void showPeriod();
    void choiceChanged();
    void count();
    void work();
    void countOn();
    void showCount();
    void askAndExport();
    void exportOn();
    void fail(const QString &message);
    void setExporting(bool exporting);

    const StationTree &m_tree;
    Services m_services;
    const QStringList m_chosen;
    std::array<QRadioButton *, 2> m_kinds{};
    QCheckBox *m_notAcknowledged = nullptr;
    QComboBox *m_period = nullptr;
    QDateTimeEdit *m_from = nullptr;
    QDateTimeEdit *m_to = nullptr;
    std::array<QRadioButton *, 3> m_stations{};
    StationPicker *m_list = nullptr;
    QWidget *m_cards;
    QLabel *m_count = nullptr;
    ProblemLabel *m_problem = nullptr;
    QPushButton *m_export = nullptr;
    QTimer *m_work;    ///< the next part of what runs
    QTimer *m_recount; ///< the tree changed
    std::unique_ptr<ExportEntries> m_counting;
    std::unique_ptr<NodesExport> m_exporting;
    QString m_path;
};

} // namespace ktr
