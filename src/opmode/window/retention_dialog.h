#pragma once

#include "lang/text_table.h"
#include "opmode/thinning.h"
#include "platform/worker_thread.h"
#include "record/record_queries.h"

#include <QDialog>

#include <optional>

class QLabel;
class QPushButton;
class QSpinBox;

namespace ktr {

class OperationalMode;

/// How large the record is and how fast it grows, how long what of it stays, and a copy of it. It must be
/// gone before the record is closed.
class RetentionDialog : public QDialog
{
    Q_OBJECT

public:
    /// Asks for a file to write; empty for "cancel". A filter is made of pairs "description|patterns".
    using AskSave = std::function<QString(const QString &proposal, const QString &filter)>;

    RetentionDialog(OperationalMode &mode, const TextTable &texts, AskSave askSave,
                    QWidget *parent = nullptr);
    ~RetentionDialog() override; ///< waits for a copy that is being written

    void accept() override;

Q_SIGNALS:
    void statusMessage(const QString &line);

private:
    /// Of the record at this moment.
    struct Figures
    {
        Status status = Status::done();
        qint64 bytes = 0;
        qint64 events = 0;
        qint64 history = 0;
        qint64 values = 0;
        qint64 first = 0; ///< when the oldest event was
    };

    static Figures read(RecordReader &reader);
    void show(const Figures &figures);
    void tell(QLabel &label, const QString &text);
    QString treeText() const;
    void backUp();
    void ended();
    bool mayRemove(const RetentionRules &rules);

    OperationalMode &m_mode;
    const TextTable &m_texts;
    AskSave m_askSave;
    QList<std::pair<QSpinBox *, int RetentionRules::*>> m_days;
    QLabel *m_figures;
    QLabel *m_backupState;
    QPushButton *m_backup;
    std::optional<RecordQueries> m_queries;
    QString m_target;                   ///< of the copy that is being written
    Status m_backedUp = Status::done(); ///< of the thread while there is one
    QObject m_receiver;
    WorkerThread m_thread;
};

} // namespace ktr
