#pragma once

#include <QDialog>

class QLabel;
class QLineEdit;
class QPushButton;
class QTableView;

namespace ktr {

class AlarmRulesModel;
class OperationalMode;
class ProblemLabel;
class TextTable;

/// Shows which texts of stations are alarms, and lets the user change it. Nothing holds before OK.
class AlarmRulesDialog : public QDialog
{
    Q_OBJECT

public:
    AlarmRulesDialog(OperationalMode &mode, const TextTable &texts, QWidget *parent = nullptr);

    void accept() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    enum Action { Add, Remove, Up, Down, actions };

    void setUpTable();
    QLayout *table();
    void fitColumns();
    void act(Action action);
    void add();
    void remove();
    void move(int by);
    void refresh();
    QString verdict(const QString &text) const;

    OperationalMode &m_mode;
    AlarmRulesModel *m_model;
    QTableView *m_table;
    std::array<QPushButton *, actions> m_buttons{};
    QLineEdit *m_try;
    QLabel *m_verdict;
    ProblemLabel *m_problem;
    QPushButton *m_ok;
};

} // namespace ktr
