#pragma once

#include "opmode/window/opmode_page.h"

#include <functional>

class QAction;
class QBoxLayout;
class QLabel;
class QListWidget;
class QPushButton;
class QSplitter;
class QTableView;

namespace ktr {

class HistoryTableModel;
class HistoryPlot;

/// The history of the chosen station as a table and as curves over time.
class HistoryPage : public HeadedPage
{
    Q_OBJECT

public:
    /// Asks for the name of a file to write; empty for "cancel". The filter is "description|patterns".
    using AskFileName = std::function<QString(const QString &proposal, const QString &filter)>;

    HistoryPage(OperationalMode &mode, const TextTable &texts, AskFileName askFileName,
                QWidget *parent = nullptr);

    void applyTexts() override;

protected:
    void stationChosen() override;
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    QWidget *createContent();
    void load();
    void showAll();
    void showAdded(std::size_t first);
    void showRemaining();
    void drawFrom(std::size_t first);
    void listInputs();
    void drawSamples();
    void describe();
    void arrange();
    void setColumnWidths();
    void savePicture();
    void copySelected();
    void removeSelected();
    void enableActions();

    AskFileName m_askFileName;
    HistoryTableModel *m_model;
    QLabel *m_summary;
    QBoxLayout *m_top = nullptr;    ///< the heading and the buttons
    QBoxLayout *m_beside = nullptr; ///< the plot and its inputs
    QSplitter *m_parts;
    QTableView *m_table;
    HistoryPlot *m_plot;
    QListWidget *m_inputs;
    QPushButton *m_wholeTime;
    QPushButton *m_save;
    QAction *m_copy;
    QAction *m_remove;
    int m_tableWidth = 0;  ///< with all its columns
    int m_inputsWidth = 0; ///< beside the plot
    bool m_isAtEnd = true;
    bool m_isLoaded = false; ///< long lists are read when they are looked at
};

} // namespace ktr
