#include "editor/binder.h"

#include "link/problems.h"
#include "look/outside_texts.h"
#include "look/select_on_focus.h"
#include "look/wheel_guard.h"
#include "platform/text_rules.h"

#include <QAction>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <QStyle>
#include <QToolTip>

#include <algorithm>

namespace ktr {

namespace {

constexpr const char *problemProperty = "problem";

int maskOf(const QString &text, int full)
{
    const auto mask = toWholeNumber(text, std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
    return mask.value_or(0) & full;
}

/// A tint of the window's amber; with the icon it does not rest on colour alone.
void tint(QWidget *control, bool marked)
{
    if (!marked) {
        control->setPalette(QPalette());
        return;
    }
    QPalette palette = control->palette();
    for (const auto role : {QPalette::Base, QPalette::Button}) {
        const bool dark = palette.color(role).lightness() < 128;
        palette.setColor(role, dark ? QColor(0x4d, 0x3a, 0x12) : QColor(0xff, 0xf1, 0xd6));
    }
    control->setPalette(palette);
}

void showProblem(QWidget *control, const QString &message)
{
    if (control->property(problemProperty).toString() == message) {
        return;
    }
    control->setProperty(problemProperty, message);
    control->setAccessibleDescription(message);
    tint(control, !message.isEmpty());
    if (auto *edit = qobject_cast<QLineEdit *>(control)) {
        const QString name = QStringLiteral("problemIcon");
        auto *icon = edit->findChild<QAction *>(name, Qt::FindDirectChildrenOnly);
        if (icon == nullptr && !message.isEmpty()) {
            icon = new QAction(edit);
            icon->setObjectName(name);
            icon->setIcon(edit->style()->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, edit));
            edit->addAction(icon, QLineEdit::TrailingPosition);
        }
        if (icon != nullptr) {
            icon->setVisible(!message.isEmpty());
            icon->setToolTip(message);
        }
    }
}

} // namespace

Binder::Binder(EditorContext &context, QObject *parent) : QObject(parent), m_context(context) {}

void Binder::name(QWidget *control, const QString &name)
{
    control->setObjectName(name);
    control->installEventFilter(this);
}

void Binder::add(const FieldRef &field, QWidget *control, std::function<void(const QString &)> show)
{
    m_bound.push_back({field, control, std::move(show)});
}

void Binder::write(const FieldRef &field, const QString &text, Counts counts)
{
    const EditPlace place{field.control, field.entry()};
    const auto change = [&](Configuration &configuration) { field.store(configuration, text); };
    if (counts == Counts::AsEdit) {
        m_context.history.edit(place, change);
    } else {
        m_context.history.adjust(place, change);
    }
}

void Binder::line(QLineEdit *edit, const FieldRef &field, Counts counts)
{
    name(edit, field.control);
    connect(edit, &QLineEdit::textChanged, this,
            [this, field, counts](const QString &text) { write(field, text, counts); });
    if (field.number) {
        edit->setInputMethodHints(Qt::ImhPreferNumbers);
        selectAllOnFocus(edit);
    }
    add(field, edit, [edit, field](const QString &text) {
        if (edit->text() == text) {
            return;
        }
        // What stands before the caret goes through the same rule, so that the caret stays where it was.
        const QString before = edit->text().left(edit->cursorPosition());
        const qsizetype caret = field.asTyped(before).size();
        const QSignalBlocker blocker(edit);
        edit->setText(text);
        edit->setCursorPosition(edit->hasFocus() ? static_cast<int>(caret) : 0);
    });
}

void Binder::text(QPlainTextEdit *edit, const FieldRef &field)
{
    name(edit, field.control);
    edit->setUndoRedoEnabled(false); // the window's own goes over all fields
    connect(edit, &QPlainTextEdit::textChanged, this,
            [this, edit, field] { write(field, edit->toPlainText()); });
    add(field, edit, [edit](const QString &text) {
        if (edit->toPlainText() != text) {
            const QSignalBlocker blocker(edit);
            edit->setPlainText(text);
        }
    });
}

void Binder::check(QCheckBox *box, const FieldRef &field)
{
    name(box, field.control);
    connect(box, &QCheckBox::clicked, this, [this, field](bool checked) {
        m_context.history.endGroup();
        write(field, QString::number(checked ? 1 : 0));
    });
    add(field, box, [box](const QString &text) { box->setChecked(text != u'0'); });
}

void Binder::index(QComboBox *box, const FieldRef &field, Again again)
{
    name(box, field.control);
    ignoreWheelUnlessFocused(box);
    const auto store = [this, field](int index) {
        if (index >= 0) {
            write(field, QString::number(index));
        }
    };
    connect(box, &QComboBox::currentIndexChanged, this, store);
    if (again == Again::Counts) {
        connect(box, &QComboBox::activated, this, store);
    }
    add(field, box, [box](const QString &text) {
        const QSignalBlocker blocker(box);
        box->setCurrentIndex(text.toInt());
    });
}

void Binder::item(QComboBox *box, const FieldRef &field)
{
    name(box, field.control);
    ignoreWheelUnlessFocused(box);
    const auto store = [this, box, field](int index) { write(field, box->itemText(index)); };
    connect(box, &QComboBox::currentIndexChanged, this, store);
    connect(box, &QComboBox::activated, this, store);
    add(field, box, [box](const QString &text) {
        const QSignalBlocker blocker(box);
        box->setCurrentIndex(box->findText(text));
    });
}

void Binder::choice(QButtonGroup *buttons, const FieldRef &field)
{
    const QList<QAbstractButton *> all = buttons->buttons();
    for (QAbstractButton *button : all) {
        name(button, field.control + u'_' + QString::number(buttons->id(button)));
    }
    connect(buttons, &QButtonGroup::idClicked, this,
            [this, field](int id) { write(field, QString::number(id)); });
    add(field, all.front(), [buttons](const QString &text) {
        if (QAbstractButton *button = buttons->button(text.toInt())) {
            button->setChecked(true);
        } else if (QAbstractButton *other = buttons->checkedButton()) {
            // No button stands for the value, and another entry's must not.
            buttons->setExclusive(false);
            other->setChecked(false);
            buttons->setExclusive(true);
        }
    });
}

void Binder::bits(const std::vector<QCheckBox *> &boxes, int full, const FieldRef &field)
{
    for (std::size_t bit = 0; bit < boxes.size(); ++bit) {
        name(boxes[bit], field.control + u'_' + QString::number(bit));
        const int weight = 1 << bit;
        connect(boxes[bit], &QCheckBox::clicked, this, [this, field, full, weight](bool checked) {
            m_context.history.endGroup();
            const int mask = maskOf(stored(field), full);
            write(field, QString::number(checked ? mask | weight : mask & (full - weight)));
        });
    }
    add(field, boxes.front(), [boxes, full](const QString &text) {
        const int mask = maskOf(text, full);
        for (std::size_t bit = 0; bit < boxes.size(); ++bit) {
            boxes[bit]->setChecked((mask >> bit & 1) != 0);
        }
    });
}

void Binder::show()
{
    for (const Bound &bound : m_bound) {
        bound.show(stored(bound.field));
    }
}

void Binder::mark(const QList<Problem> &problems)
{
    QHash<std::pair<QString, int>, QString> messages;
    for (const Problem &problem : problems) {
        QString &message = messages[{problem.control, problem.entry}];
        message += (message.isEmpty() ? QString() : QStringLiteral("\n")) + problem.message;
    }
    for (const Bound &bound : m_bound) {
        showProblem(bound.control, messages.value({bound.field.control, bound.field.entry()}));
    }
}

bool Binder::isBound(const QString &control) const
{
    return std::ranges::any_of(m_bound,
                               [&control](const Bound &bound) { return bound.field.control == control; });
}

bool Binder::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::ShortcutOverride: {
        // The window's undo goes over all fields; the control's own would know only its text.
        const auto *key = static_cast<QKeyEvent *>(event);
        if (key->matches(QKeySequence::Undo) || key->matches(QKeySequence::Redo)) {
            event->ignore();
            return true;
        }
        break;
    }
    case QEvent::FocusOut:
        m_context.history.endGroup();
        break;
    case QEvent::ToolTip: {
        auto *control = static_cast<QWidget *>(watched);
        const QString problem = control->property(problemProperty).toString();
        if (!problem.isEmpty()) {
            const QString tip = control->toolTip();
            QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(),
                               foldedTip(tip.isEmpty() ? problem : problem + u'\n' + tip), control);
            return true;
        }
        break;
    }
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace ktr
