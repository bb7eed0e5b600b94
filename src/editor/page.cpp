#include "editor/page.h"

#include "editor/entry_chooser.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace ktr {

Page::Page(EditorContext &context, QWidget *parent) : QWidget(parent), m_context(context), m_binder(context)
{}

void Page::applyTexts()
{
    for (const TextPart &part : m_textParts) {
        part();
    }
}

void Page::showRecords()
{
    m_binder.show();
    for (const auto &part : m_recordParts) {
        part();
    }
}

void Page::showEntry(int) {}

void Page::showPlace(const EditPlace &place)
{
    const EntryChooser *chooser = entryChooser();
    if (chooser != nullptr && (m_binder.isBound(place.control) || place.control == chooser->overviewName())) {
        showEntry(place.entry);
    }
}

void Page::setProblems(const QList<Problem> &problems)
{
    m_problems = problems;
    refreshMarks();
}

QLabel *Page::labelFor(QWidget *control, Text name, const QString &suffix)
{
    return labelFor(control, [this, name, suffix]() -> QString { return text(name) + suffix; });
}

QLabel *Page::labelFor(QWidget *control, std::function<QString()> caption)
{
    auto *label = new QLabel(this);
    label->setBuddy(control);
    onTexts([control, label, caption = std::move(caption)] {
        label->setText(caption());
        control->setAccessibleName(label->text());
    });
    return label;
}

QLabel *Page::labelFor(QWidget *control, const FieldRef &field)
{
    tip(control, field);
    return labelFor(control, [this, label = field.label] { return label(m_context.texts); });
}

QPushButton *Page::newButton(const char *name, std::function<void()> clicked)
{
    auto *button = new QPushButton(this);
    button->setObjectName(QLatin1String(name));
    connect(button, &QPushButton::clicked, this, std::move(clicked));
    return button;
}

void Page::tip(QWidget *control, std::function<QString()> text)
{
    onTexts([control, text = std::move(text)] { control->setToolTip(text()); });
}

QLabel *Page::addRow(QGridLayout *grid, Text name, QWidget *control)
{
    return addRow(
        grid, [this, name] { return text(name); }, control);
}

QLabel *Page::addRow(QGridLayout *grid, std::function<QString()> caption, QWidget *control)
{
    return addRow(grid, labelFor(control, std::move(caption)), control);
}

QLabel *Page::addRow(QGridLayout *grid, const FieldRef &field, QWidget *control)
{
    return addRow(grid, labelFor(control, field), control);
}

QLabel *Page::addRow(QGridLayout *grid, QLabel *label, QWidget *control)
{
    const int row = grid->rowCount();
    grid->addWidget(label, row, 0);
    grid->addWidget(control, row, 1);
    return label;
}

QLineEdit *Page::addLine(QGridLayout *grid, const FieldRef &field)
{
    auto *edit = new QLineEdit(grid->parentWidget());
    binder().line(edit, field);
    addRow(grid, field, edit);
    return edit;
}

} // namespace ktr
