#include "editor/input_grid.h"

#include "platform/tab_table.h"
#include "platform/text_rules.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QKeyEvent>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace ktr {

namespace {

constexpr qsizetype longestBlock = qsizetype{1} << 18;

std::optional<QString> boxValue(const QString &text)
{
    static const QStringList yes{QStringLiteral("1"),  QStringLiteral("x"),    QStringLiteral("yes"),
                                 QStringLiteral("ja"), QStringLiteral("true"), QStringLiteral("wahr"),
                                 QStringLiteral("-1"), QStringLiteral("on"),   QStringLiteral("ein")};
    static const QStringList no{QStringLiteral("0"),    QStringLiteral("-"),     QStringLiteral("no"),
                                QStringLiteral("nein"), QStringLiteral("false"), QStringLiteral("falsch"),
                                QStringLiteral("off"),  QStringLiteral("aus")};
    const QString word = text.toLower();
    return yes.contains(word)  ? std::optional(QStringLiteral("1"))
           : no.contains(word) ? std::optional(QStringLiteral("0"))
                               : std::nullopt;
}

/// A table's text has tabs and line breaks; anything else is for the field.
bool isBlock(const QString &text)
{
    return text.contains(u'\t') || text.contains(u'\n');
}

} // namespace

InputGrid::InputGrid(EditorContext &context, QObject *parent) : QObject(parent), m_context(context) {}

void InputGrid::add(QWidget *control, const FieldRef &field, const Place &place)
{
    m_cells.push_back({control, field, place});
    m_lastRow = std::max(m_lastRow, place.row);
    m_lastColumn = std::max(m_lastColumn, place.column);
    control->installEventFilter(this);
}

bool InputGrid::Cell::isBox() const
{
    return qobject_cast<const QCheckBox *>(control) != nullptr;
}

std::optional<QString> InputGrid::Cell::understood(const QString &text) const
{
    const QString value = cellWithoutGuard(text.trimmed());
    if (isBox()) {
        return boxValue(value);
    }
    if (!field.number) {
        return value;
    }
    const std::optional<double> number = toNumber(value);
    if (!number) {
        return std::nullopt;
    }
    if (field.range->kind != Range::Kind::WholeNumber) {
        return value;
    }
    const bool whole = *number == std::floor(*number) && *number >= std::min(field.range->lowest, 0.0);
    return whole ? std::optional(QString::number(*number, 'f', 0)) : std::nullopt;
}

const InputGrid::Cell *InputGrid::cellOf(const QObject *control) const
{
    const auto found = std::ranges::find(m_cells, control, &Cell::control);
    return found != m_cells.end() ? &*found : nullptr;
}

const InputGrid::Cell *InputGrid::cellAt(const Place &place) const
{
    const auto found = std::ranges::find(m_cells, place, &Cell::place);
    return found != m_cells.end() ? &*found : nullptr;
}

// Keys

/// The next one in that direction that can have the focus; null where there is none.
const InputGrid::Cell *InputGrid::neighbour(const Cell &cell, int rows, int columns) const
{
    Place place = cell.place;
    do {
        place = {place.row + rows, place.column + columns};
        const Cell *found = cellAt(place);
        if (found != nullptr && found->control->isEnabled()) {
            return found;
        }
    } while (place.row >= 0 && place.row <= m_lastRow && place.column >= 0 && place.column <= m_lastColumn);
    return nullptr;
}

bool InputGrid::moveOn(const Cell &cell, int key) const
{
    const bool along = key == Qt::Key_Left || key == Qt::Key_Right;
    if (!along && key != Qt::Key_Up && key != Qt::Key_Down) {
        return false;
    }
    if (along && !cell.isBox()) {
        return false; // the caret's
    }
    const int step = key == Qt::Key_Up || key == Qt::Key_Left ? -1 : 1;
    if (const Cell *next = neighbour(cell, along ? 0 : step, along ? step : 0)) {
        next->control->setFocus(Qt::TabFocusReason);
    }
    return true; // at an end it stays
}

bool InputGrid::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress) {
        return QObject::eventFilter(watched, event);
    }
    const auto *key = static_cast<QKeyEvent *>(event);
    const Cell *cell = cellOf(watched);
    const bool plain = (key->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (cell != nullptr &&
        ((plain && moveOn(*cell, key->key())) || (key->matches(QKeySequence::Paste) && pasteBlock(*cell)))) {
        return true;
    }
    return QObject::eventFilter(watched, event);
}

// Values

void InputGrid::store(const Cell &first, const std::vector<Value> &values)
{
    m_context.history.endGroup();
    m_context.history.edit({first.field.control, first.field.entry()}, [&values](Configuration &changed) {
        for (const Value &value : values) {
            value.cell->field.store(changed, value.text);
        }
    });
    m_context.history.endGroup();
}

/// How many fields had another value than one that stands for nothing.
int InputGrid::replacedBy(const std::vector<Value> &values) const
{
    const Configuration &present = m_context.document.configuration();
    return static_cast<int>(std::ranges::count_if(values, [&present](const Value &value) {
        const QString before = value.cell->field.text(present);
        return !before.isEmpty() && before != u'0' && before != value.text;
    }));
}

void InputGrid::tellStored(const QString &words, int replaced) const
{
    if (replaced == 0) {
        m_context.tellStep(words);
    } else {
        m_context.tellStep(tr("%1, in place of other values: %2").arg(words).arg(replaced),
                           EditorContext::Replaced::Something);
    }
}

void InputGrid::fillDown(const QWidget *control)
{
    const Cell *from = cellOf(control);
    if (from == nullptr) {
        m_context.showStatus(tr("Choose the field first whose value those below are to have"));
        return;
    }
    const QString text = from->field.text(m_context.document.configuration());
    std::vector<Value> values;
    for (const Cell *below = neighbour(*from, 1, 0); below != nullptr; below = neighbour(*below, 1, 0)) {
        if (below->isBox() == from->isBox()) {
            values.push_back({below, text});
        }
    }
    if (values.empty()) {
        m_context.showStatus(tr("There is no field below this one"));
        return;
    }
    const int replaced = replacedBy(values);
    store(*from, values);
    tellStored(tr("Fields filled down: %1").arg(values.size()), replaced);
}

/// False where the clipboard has no block.
bool InputGrid::pasteBlock(const Cell &first)
{
    const QString text = QApplication::clipboard()->text();
    if (!isBlock(text)) {
        return false;
    }
    std::vector<Value> values;
    const QString wrong = text.size() > longestBlock
                              ? tr("What is on the clipboard is too long for the inputs")
                              : collect(readTabTable(text), first, values);
    if (!wrong.isEmpty()) {
        m_context.showStatus(wrong + tr(". Nothing was pasted"));
    } else if (values.empty()) {
        m_context.showStatus(tr("There are only empty cells on the clipboard"));
    } else {
        const int replaced = replacedBy(values);
        store(first, values);
        tellStored(tr("Fields pasted: %1").arg(values.size()), replaced);
    }
    return true;
}

/// What is wrong; an empty cell leaves its field as it is.
QString InputGrid::collect(const QList<QStringList> &rows, const Cell &first,
                           std::vector<Value> &values) const
{
    for (int row = 0; row < rows.size(); ++row) {
        for (int column = 0; column < rows[row].size(); ++column) {
            const QString &text = rows[row][column];
            if (text.trimmed().isEmpty()) {
                continue;
            }
            const Cell *cell = cellAt({first.place.row + row, first.place.column + column});
            if (cell == nullptr) {
                return tr("Row %1, column %2 on the clipboard: there is no field for %3")
                    .arg(row + 1)
                    .arg(column + 1)
                    .arg(quotedInRemark(text).trimmed());
            }
            const std::optional<QString> value = cell->understood(text);
            if (!value) {
                return tr("Row %1, column %2 on the clipboard: %3 is no value for %4")
                    .arg(row + 1)
                    .arg(column + 1)
                    .arg(quotedInRemark(text).trimmed(), cell->control->accessibleName());
            }
            values.push_back({cell, *value});
        }
    }
    return {};
}

} // namespace ktr
