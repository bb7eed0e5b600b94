#pragma once

#include "editor/binder.h"
#include "link/problems.h"

#include <QWidget>

class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;

namespace ktr {

class EntryChooser;

/// A page of the main window. It is made without texts; applyTexts() and showRecords() fill it.
class Page : public QWidget
{
    Q_OBJECT

public:
    explicit Page(EditorContext &context, QWidget *parent = nullptr);

    /// Gives every caption its text in the language of the table.
    void applyTexts();

    /// Shows the present configuration.
    void showRecords();

    /// The page was chosen in the tab strip.
    virtual void entered() {}

    /// Whether the page shows one of several entries at a time, and shows the one with this index.
    virtual bool hasEntries() const { return false; }
    virtual void showEntry(int entry);
    virtual int shownEntry() const { return 0; }
    /// What chooses the entry; null on a page without entries.
    virtual EntryChooser *entryChooser() const { return nullptr; }

    /// Shows the entry that a bound control was changed in.
    void showPlace(const EditPlace &place);

    /// Marks the fields that have problems.
    virtual void setProblems(const QList<Problem> &problems);

protected:
    using TextPart = std::function<void()>;

    EditorContext &context() const { return m_context; }
    const Configuration &configuration() const { return m_context.document.configuration(); }
    Binder &binder() { return m_binder; }
    QString text(Text name) const { return m_context.texts.text(name); }

    /// Runs at each applyTexts(): for own texts, tool tips and everything composed.
    void onTexts(TextPart part) { m_textParts.push_back(std::move(part)); }
    /// Runs at each showRecords(), after the bound controls.
    void onRecords(std::function<void()> part) { m_recordParts.push_back(std::move(part)); }
    /// Marks again what setProblems() gave: another entry is shown.
    void refreshMarks() { m_binder.mark(m_problems); }

    /// A caption from the table, with what stands behind it.
    template <class Captioned>
    Captioned *captioned(Captioned *control, Text name, const QString &suffix = QString())
    {
        return captionedBy(control, [this, name, suffix]() -> QString { return text(name) + suffix; });
    }
    /// The field's label as a caption.
    template <class Captioned> Captioned *captioned(Captioned *control, const FieldRef &field)
    {
        return captionedBy(control, [this, label = field.label] { return label(m_context.texts); });
    }

    /// A label for a control: its buddy, and the name that screen readers tell.
    QLabel *labelFor(QWidget *control, Text name, const QString &suffix = QString());
    /// The same with a caption that is composed, or this program's own.
    QLabel *labelFor(QWidget *control, std::function<QString()> caption);

    /// A button with that object name, without a caption yet.
    QPushButton *newButton(const char *name, std::function<void()> clicked);

    /// The field's label for a control, which takes its tool tip.
    QLabel *labelFor(QWidget *control, const FieldRef &field);

    /// A tool tip that tr() gives at each change of the language.
    void tip(QWidget *control, std::function<QString()> text);
    void tip(QWidget *control, const FieldRef &field) { tip(control, field.tip); }

    /// A row of a form: label and control.
    QLabel *addRow(QGridLayout *grid, Text name, QWidget *control);
    QLabel *addRow(QGridLayout *grid, std::function<QString()> caption, QWidget *control);
    /// The same with the field's label and tool tip.
    QLabel *addRow(QGridLayout *grid, const FieldRef &field, QWidget *control);
    /// The same with a line edit that is bound to the field.
    QLineEdit *addLine(QGridLayout *grid, const FieldRef &field);

private:
    static QLabel *addRow(QGridLayout *grid, QLabel *label, QWidget *control);
    template <class Captioned> Captioned *captionedBy(Captioned *control, std::function<QString()> caption)
    {
        onTexts([control, caption = std::move(caption)] {
            if constexpr (requires { control->setTitle(QString()); }) {
                control->setTitle(caption());
            } else {
                control->setText(caption());
            }
        });
        return control;
    }

    EditorContext &m_context;
    Binder m_binder;
    std::vector<TextPart> m_textParts;
    std::vector<std::function<void()>> m_recordParts;
    QList<Problem> m_problems;
};

} // namespace ktr
