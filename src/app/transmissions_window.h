#pragma once

#include "config/configuration.h"
#include "platform/environment.h"
#include "transmissions/transmission_memory.h"

#include <QTimer>
#include <QWidget>

#include <functional>
#include <optional>

class QAbstractItemModel;
class QLabel;
class QLineEdit;
class QPushButton;
class QSortFilterProxyModel;
class QSpinBox;
class QSplitter;
class QStandardItemModel;
class QTableView;

namespace ktr {

class EmptyNotice;
class TextTable;

/// What was transmitted to which module: a list, the newest first, and of the chosen one what is known of it
/// and what became of each command. Its configuration can be opened, compared and exported, and a receipt of
/// it written.
class TransmissionsWindow : public QWidget
{
    Q_OBJECT

public:
    struct Services
    {
        TransmissionMemory &memory;
        const Environment &environment;
        const TextTable &texts;
        std::function<QString(const QString &proposal, const QString &filter)> askSave;
        /// Shows how a configuration, which goes by this name, differs from the present one; the button is
        /// only there where this is.
        std::function<void(const Configuration &configuration, const QString &name)> compare = {};
    };

    TransmissionsWindow(Services services, QWidget *parent);
    ~TransmissionsWindow() override;

    void applyTexts();
    /// Reads the list anew.
    void reload();

Q_SIGNALS:
    /// The configuration of a transmission is to become the document; it goes by this name.
    void openWanted(const ktr::Configuration &configuration, const QString &name);
    /// For so many years transmissions are kept; 0: for ever.
    void yearsChosen(int years);
    /// A line for the status bar.
    void statusMessage(const QString &line);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void chooseYears();
    struct Listed
    {
        Status status = Status::done();
        QList<TransmissionRow> rows;
    };
    struct Chosen
    {
        Status status = Status::done();
        std::optional<TransmissionRow> row;
        QList<TransmissionStepRow> steps;
    };

    void layOut();
    QTableView *table(const QString &name, QAbstractItemModel *model);
    void showList(const Listed &listed);
    void showChosen(const Chosen &chosen);
    void choose();
    void showDetails();
    void enableButtons();
    qint64 chosenId() const;
    QString nameOfChosen() const;
    /// The chosen one's configuration; tells why there is none.
    std::optional<Configuration> configuration();
    void open();
    void compare();
    void exportConfiguration();
    void writeReceiptFile();
    void tell(const QString &line);

    Services m_services;
    std::optional<RememberedTransmission> m_chosen;
    QStandardItemModel *m_rows;
    QSortFilterProxyModel *m_order;
    QStandardItemModel *m_steps;
    QLineEdit *m_filter;
    QTableView *m_list;
    QTableView *m_commands;
    QLabel *m_facts;
    QLabel *m_told;
    QLabel *m_keepLabel;
    QSpinBox *m_years;
    QPushButton *m_open;
    QPushButton *m_compare;
    QPushButton *m_export;
    QPushButton *m_receipt;
    EmptyNotice *m_notice;
    QTimer m_reload; ///< several were written within a moment
};

/// Asks for a file and writes a receipt; gives what came of it for the user, empty where none was wanted.
QString saveReceipt(const RememberedTransmission &transmission,
                    const std::function<QString(const QString &proposal, const QString &filter)> &askSave,
                    const TextTable &texts, const Environment &environment);

/// For how many years transmissions are kept; 0: for ever.
int transmissionYears();
bool setTransmissionYears(int years);

} // namespace ktr
