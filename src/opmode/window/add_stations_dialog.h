#pragma once

#include <QDialog>
#include <QHash>

#include <functional>

class QCheckBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QTableView;
class QTimer;

namespace ktr {

class OperationalMode;
class ProblemLabel;
class ImportedStationsModel;
class TextTable;

/// Adds many stations at once, from lines that are pasted or read from a file. What becomes of each line is
/// shown before.
class AddStationsDialog : public QDialog
{
    Q_OBJECT

public:
    /// Asks for a file that exists; empty for "cancel". The filter is "description|patterns".
    using AskOpen = std::function<QString(const QString &filter)>;

    /// The operational mode must outlive the dialog.
    AddStationsDialog(OperationalMode &mode, const TextTable &texts, AskOpen askOpen,
                      QWidget *parent = nullptr);

Q_SIGNALS:
    /// A line for the status bar.
    void statusMessage(const QString &line);

private:
    QWidget *listSide();
    QWidget *previewSide();
    QLayout *buttons(const TextTable &texts);
    void readFile();
    void preview();
    void add();

    OperationalMode &m_mode;
    AskOpen m_askOpen;
    QPlainTextEdit *m_text = nullptr;
    ImportedStationsModel *m_model;
    QTableView *m_table = nullptr;
    QLabel *m_count = nullptr;
    ProblemLabel *m_problem = nullptr;
    QCheckBox *m_online = nullptr;
    QPushButton *m_add = nullptr;
    QHash<QString, QString> m_stationsAt; ///< when it was opened, by their addresses in small letters
    QTimer *m_preview;                    ///< the text changed
};

} // namespace ktr
