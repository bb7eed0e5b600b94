#pragma once

#include "help/report.h"

#include <QDialog>

#include <functional>

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace ktr {

/// Shows a report of the program before it is saved. What is shown is what is saved, and it can be changed.
class ReportWindow : public QDialog
{
    Q_OBJECT

public:
    /// Asks for a file to write, proposed with its folder; empty for "cancel". A filter is made of pairs
    /// "description|patterns".
    using AskSave = std::function<QString(const QString &proposal, const QString &filter)>;

    ReportWindow(ReportSources sources, AskSave askSave, QWidget *parent);

private:
    void makeAnew();
    void save();
    void copy();

    ReportSources m_sources;
    AskSave m_askSave;
    QPlainTextEdit *m_happened;
    QPlainTextEdit *m_text;
    QLabel *m_told;
};

} // namespace ktr
