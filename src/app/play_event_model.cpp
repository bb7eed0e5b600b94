#include "app/play_event_model.h"

#include "foretell/event_texts.h"
#include "look/palettes.h"
#include "platform/csv.h"

#include <QApplication>
#include <QFont>

namespace ktr {

QString assumptionLines(const Assumptions &assumptions, const Assumptions &otherwise)
{
    QStringList lines;
    for (const Assumption each : assumptions.list()) {
        lines += QStringLiteral("[%1] %2").arg(QString::number(assumptionNumber(each)),
                                               assumptionText(each, otherwise));
    }
    return lines.join(u'\n');
}

QByteArray PlayEventModel::csv() const
{
    QStringList titles;
    for (int column = 0; column < columns; ++column) {
        titles += headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    }
    QByteArray table = csvMark + csvLine(titles);
    for (const Line &line : m_lines) {
        table += csvLine(QStringList(line.cells.begin(), line.cells.end()));
    }
    return table;
}

void PlayEventModel::add(const QList<PlayEvent> &events, const Configuration &configuration,
                         const TextTable &texts)
{
    using Kind = PlayEvent::Kind;
    QList<Line> lines;
    for (const PlayEvent &event : events) {
        const bool isState = event.kind == Kind::Waiting || event.kind == Kind::Withdrawn ||
                             event.kind == Kind::Standing || event.kind == Kind::Over;
        if (isState && !m_statesShown) {
            continue;
        }
        lines += Line{{clockText(event.at), eventTitle(event, configuration, texts),
                       eventRecipients(event, configuration, texts), event.text,
                       eventCause(event, configuration, texts), assumptionNumbers(event.restsOn)},
                      event.kind,
                      event.restsOn};
    }
    if (lines.size() > most) {
        lines = lines.sliced(lines.size() - most);
    }
    if (lines.isEmpty()) {
        return;
    }
    const int present = rowCount();
    const int tooMany = present + static_cast<int>(lines.size()) - most;
    if (tooMany > 0) {
        beginRemoveRows({}, 0, tooMany - 1);
        m_lines.erase(m_lines.begin(), m_lines.begin() + tooMany);
        endRemoveRows();
    }
    const int first = rowCount();
    beginInsertRows({}, first, first + static_cast<int>(lines.size()) - 1);
    m_lines.insert(m_lines.end(), lines.begin(), lines.end());
    endInsertRows();
}

void PlayEventModel::clear()
{
    beginResetModel();
    m_lines.clear();
    endResetModel();
}

int PlayEventModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_lines.size());
}

int PlayEventModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : columns;
}

QVariant PlayEventModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid()) {
        return {};
    }
    const Line &line = m_lines[static_cast<std::size_t>(index.row())];
    const QString &cell = line.cells[static_cast<std::size_t>(index.column())];
    const bool isSent = line.kind == PlayEvent::Kind::Notified || line.kind == PlayEvent::Kind::Repeated;
    const bool isState = line.kind == PlayEvent::Kind::Waiting || line.kind == PlayEvent::Kind::Withdrawn ||
                         line.kind == PlayEvent::Kind::Standing || line.kind == PlayEvent::Kind::Over;
    switch (role) {
    case Qt::DisplayRole:
        return cell;
    case Qt::ToolTipRole:
        return index.column() == RestsOnColumn ? assumptionLines(line.restsOn, m_otherwise) : cell;
    case Qt::ForegroundRole: {
        const QPalette palette = QApplication::palette();
        const bool isAlarm = isSent || line.kind == PlayEvent::Kind::Endless;
        return isAlarm   ? QVariant(alarmText(palette))
               : isState ? QVariant(palette.color(QPalette::PlaceholderText))
                         : QVariant();
    }
    default:
        return {};
    }
}

QVariant PlayEventModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    switch (section) {
    case TimeColumn:
        return tr("Time");
    case WhatColumn:
        return tr("What");
    case ToColumn:
        return tr("To");
    case TextColumn:
        return tr("Text");
    case CauseColumn:
        return tr("Cause");
    default:
        return tr("Rests on");
    }
}

} // namespace ktr
