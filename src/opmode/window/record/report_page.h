#pragma once

#include "opmode/window/record/find_page.h"
#include "opmode/window/record/record_report.h"

class QSpinBox;
class QTextEdit;

namespace ktr {

class OperationalMode;

/// A report about the record, which can be kept as PDF or CSV. It is read when the page is shown, and again
/// when it is asked for.
class ReportPage : public QWidget
{
    Q_OBJECT

public:
    ReportPage(ReportKind kind, OperationalMode &mode, RecordQueries &queries, FindPage::Services services,
               QWidget *parent = nullptr);
    ~ReportPage() override;

    void applyTexts();

Q_SIGNALS:
    void statusMessage(const QString &line);

protected:
    void showEvent(QShowEvent *event) override;

private:
    enum Period { LastHours, LastChange, LastDay, LastDays, FromTo };

    ReportQuestion question() const;
    void showPeriod();
    void read();
    void showReport();
    void save(bool asPdf);
    void saved(const QString &path, const Status &status);

    ReportKind m_kind;
    OperationalMode &m_mode;
    RecordQueries &m_queries;
    FindPage::Services m_services;
    ReportQuestion m_question;
    std::optional<ReportAnswer> m_answer;
    const char m_saver = 0; ///< its address is who asks for a file

    QComboBox *m_period;
    QDateTimeEdit *m_from;
    QDateTimeEdit *m_to;
    QLabel *m_operatorsLabel;
    QSpinBox *m_operators;
    QPushButton *m_again;
    QTextEdit *m_text;
    ProblemLabel *m_problem;
    QLabel *m_state;
    QPushButton *m_pdf;
    QPushButton *m_csv;
};

} // namespace ktr
