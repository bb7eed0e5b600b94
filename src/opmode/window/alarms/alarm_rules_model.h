#pragma once

#include "opmode/alarms/alarm_rules.h"

#include <QAbstractTableModel>

namespace ktr {

/// Alarm rules as they are being edited, one a row.
class AlarmRulesModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Pattern, Case, IsAlarm, Priority, Sounds, Ending, columns };

    explicit AlarmRulesModel(const AlarmRules &rules, QObject *parent = nullptr);

    AlarmRules rules() const { return AlarmRules(m_rules); }
    /// Puts a rule without a text in front of a row, or at the end.
    void insertAt(int row);
    void removeAt(int row);
    /// By one place up or down; both rows must be there.
    void move(int row, int by);
    /// What is wrong with a rule, or in doubt; empty for nothing.
    QString remark(int row) const;
    /// Whether all rules can be used as they are.
    bool isUsable() const;
    /// Marks the rule that fits a text; -1 for none.
    void mark(int row);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;

private:
    static bool AlarmRule::*boxOf(int column);
    static QString AlarmRule::*textOf(int column);
    void tellAll();
    QVariant shown(const AlarmRule &rule, int column) const;

    QList<AlarmRule> m_rules;
    int m_marked = -1;
};

} // namespace ktr
