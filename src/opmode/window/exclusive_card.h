#pragma once

#include "lang/text_table.h"
#include "opmode/operational_mode.h"

#include <QGroupBox>

class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;

namespace ktr {

class ProblemLabel;

/// A station's exclusive mode: a box to tick by hand, and two rules of a day and a time that switch it.
class ExclusiveCard : public QGroupBox
{
    Q_OBJECT

public:
    ExclusiveCard(OperationalMode &mode, const TextTable &texts, QWidget *parent = nullptr);

    /// Shows a station; with an empty key nothing changes.
    void showStation(const QString &kennung);
    /// Takes over what the station has now.
    void refresh();
    void applyTexts();

private:
    /// When exclusive mode is switched one way: a day and a time.
    struct Rule
    {
        QLabel *caption;
        QComboBox *day;
        QLineEdit *time;
        ProblemLabel *problem;
    };

    Rule addRule(QGridLayout *grid, int row, const QString &which);
    static void showRule(const Rule &rule, int day, const QString &time);
    void showTimeProblem(const Rule &rule);
    void store();

    OperationalMode &m_mode;
    const TextTable &m_texts;
    QString m_kennung;
    QCheckBox *Check_pic0_exclusive;
    Rule m_on;
    Rule m_off;
    QLabel *m_hint;
};

} // namespace ktr
