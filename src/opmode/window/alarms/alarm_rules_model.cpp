#include "opmode/window/alarms/alarm_rules_model.h"

#include "look/palettes.h"
#include "opmode/window/alarms/alarm_cells.h"

#include <QApplication>
#include <QFont>

namespace ktr {

AlarmRulesModel::AlarmRulesModel(const AlarmRules &rules, QObject *parent)
    : QAbstractTableModel(parent), m_rules(rules.list())
{}

void AlarmRulesModel::insertAt(int row)
{
    beginInsertRows({}, row, row);
    m_rules.insert(row, AlarmRule());
    endInsertRows();
}

void AlarmRulesModel::removeAt(int row)
{
    beginRemoveRows({}, row, row);
    m_rules.removeAt(row);
    endRemoveRows();
}

void AlarmRulesModel::move(int row, int by)
{
    beginMoveRows({}, row, row, {}, by < 0 ? row - 1 : row + 2);
    m_rules.swapItemsAt(row, row + by);
    endMoveRows();
}

QString AlarmRulesModel::remark(int row) const
{
    switch (rules().faultOf(row)) {
    case RuleFault::NoText:
        return tr("Rule %1 has no text to look for").arg(row + 1);
    case RuleFault::EndsItself:
        return tr("Rule %1: the text that ends the alarm is the one that begins it").arg(row + 1);
    case RuleFault::NeverFits:
        return tr("Rule %1 never holds: an earlier one fits all of its texts").arg(row + 1);
    case RuleFault::None:
        break;
    }
    return {};
}

bool AlarmRulesModel::isUsable() const
{
    const AlarmRules rules = this->rules();
    for (qsizetype place = 0; place < m_rules.size(); ++place) {
        const RuleFault fault = rules.faultOf(place);
        if (fault != RuleFault::None && fault != RuleFault::NeverFits) {
            return false;
        }
    }
    return true;
}

void AlarmRulesModel::mark(int row)
{
    if (m_marked != row) {
        m_marked = row;
        tellAll();
    }
}

int AlarmRulesModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rules.size());
}

int AlarmRulesModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : columns;
}

bool AlarmRule::*AlarmRulesModel::boxOf(int column)
{
    return column == Case      ? &AlarmRule::caseSensitive
           : column == IsAlarm ? &AlarmRule::isAlarm
           : column == Sounds  ? &AlarmRule::sounds
                               : nullptr;
}

QString AlarmRule::*AlarmRulesModel::textOf(int column)
{
    return column == Pattern ? &AlarmRule::pattern : column == Ending ? &AlarmRule::ending : nullptr;
}

Qt::ItemFlags AlarmRulesModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags how = boxOf(index.column()) != nullptr ? Qt::ItemIsUserCheckable : Qt::ItemIsEditable;
    const bool isOfAlarms = index.column() > IsAlarm;
    const bool counts = !isOfAlarms || m_rules[index.row()].isAlarm;
    return Qt::ItemIsSelectable | Qt::ItemNeverHasChildren | (counts ? how | Qt::ItemIsEnabled : how);
}

QVariant AlarmRulesModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Vertical) {
        const bool isMarked = section == m_marked;
        return role == Qt::DisplayRole
                   ? QVariant((isMarked ? QStringLiteral("▸ ") : QString()) + QString::number(section + 1))
                   : QAbstractTableModel::headerData(section, orientation, role);
    }
    const std::array captions = {tr("Text contains"), tr("Upper/lower case"),
                                 tr("Alarm"),         tr("Priority"),
                                 tr("Sound"),         tr("In its place when over")};
    const std::array tips = {
        tr("What stands somewhere in the text"),
        tr("Whether \"FAIL\" is another text than \"fail\""),
        tr("Not ticked: texts that fit are no alarm, whatever later rules say"),
        tr("How urgent it is: one low tone, two tones, or three high ones"),
        tr("Whether it is heard when it comes, and again each minute"),
        tr("What stands in place of the text when the alarm is over: with \"fail\" and \"ok\", "
           "\"Pump 1 fail\" is over when the station sends \"Pump 1 ok\". Empty: nothing ends it.")};
    const auto place = static_cast<std::size_t>(section);
    switch (role) {
    case Qt::DisplayRole:
        return captions.at(place);
    case Qt::ToolTipRole:
        return tips.at(place);
    default:
        return {};
    }
}

QVariant AlarmRulesModel::shown(const AlarmRule &rule, int column) const
{
    if (const auto text = textOf(column)) {
        return rule.*text;
    }
    return column == Priority ? QVariant(AlarmCells::priority(static_cast<int>(rule.priority))) : QVariant();
}

QVariant AlarmRulesModel::data(const QModelIndex &index, int role) const
{
    const AlarmRule &rule = m_rules[index.row()];
    const int column = index.column();
    switch (role) {
    case Qt::DisplayRole:
        return shown(rule, column);
    case Qt::EditRole:
        return column == Priority ? QVariant(static_cast<int>(rule.priority)) : shown(rule, column);
    case Qt::CheckStateRole:
        if (const auto box = boxOf(column)) {
            return rule.*box ? Qt::Checked : Qt::Unchecked;
        }
        return {};
    case Qt::AccessibleTextRole:
        if (const auto box = boxOf(column)) {
            return tr("%1: %2").arg(headerData(column, Qt::Horizontal, Qt::DisplayRole).toString(),
                                    rule.*box ? tr("yes") : tr("no"));
        }
        return shown(rule, column);
    case Qt::ToolTipRole:
        return column == Pattern ? remark(index.row()) : QString();
    case Qt::ForegroundRole:
        if (column == Pattern && !remark(index.row()).isEmpty()) {
            return doubtText(QApplication::palette());
        }
        return {};
    case Qt::FontRole:
        if (index.row() == m_marked) {
            QFont font = QApplication::font();
            font.setBold(true);
            return font;
        }
        return {};
    default:
        return {};
    }
}

bool AlarmRulesModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    AlarmRule &rule = m_rules[index.row()];
    const auto box = boxOf(index.column());
    const auto text = textOf(index.column());
    if (box != nullptr && role == Qt::CheckStateRole) {
        rule.*box = value.toInt() == Qt::Checked;
    } else if (text != nullptr && role == Qt::EditRole) {
        rule.*text = value.toString();
    } else if (index.column() == Priority && role == Qt::EditRole) {
        rule.priority = static_cast<AlarmPriority>(value.toInt());
    } else {
        return false;
    }
    tellAll(); // others may never hold now
    return true;
}

void AlarmRulesModel::tellAll()
{
    if (const int last = rowCount() - 1; last >= 0) {
        Q_EMIT headerDataChanged(Qt::Vertical, 0, last);
        Q_EMIT dataChanged(index(0, 0), index(last, columns - 1));
    }
}

} // namespace ktr
