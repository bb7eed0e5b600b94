#pragma once

#include <QDialog>

class QLabel;
class QPlainTextEdit;

namespace ktr {

class OverviewModel;
class ProblemLabel;
class TextTable;

/// Edits the groups of stations as the text that their file has, and tells how many stations each has.
class GroupsDialog : public QDialog
{
    Q_OBJECT

public:
    GroupsDialog(const OverviewModel &stations, const QByteArray &text, const TextTable &texts,
                 QWidget *parent = nullptr);

    QByteArray text() const;
    void tellProblem(const QString &problem);

private:
    void refresh();

    const OverviewModel &m_stations;
    QPlainTextEdit *m_text;
    QLabel *m_found;
    ProblemLabel *m_problem;
};

} // namespace ktr
