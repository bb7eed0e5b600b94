#pragma once

#include "editor/editor_context.h"
#include "editor/field_ref.h"

#include <QObject>

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QLineEdit;
class QPlainTextEdit;
class QWidget;

namespace ktr {

struct Problem;

/// Ties controls to fields: a control takes its field's name, shows the field, and writes it at once when
/// the user changes it. It also marks the controls whose fields have problems.
class Binder : public QObject
{
    Q_OBJECT

public:
    enum class Counts { AsEdit, NotAsEdit }; ///< whether a change marks the configuration modified
    enum class Again { Counts, IsIgnored };  ///< whether choosing what is chosen already is an edit

    explicit Binder(EditorContext &context, QObject *parent = nullptr);

    void line(QLineEdit *edit, const FieldRef &field, Counts counts = Counts::AsEdit);
    void text(QPlainTextEdit *edit, const FieldRef &field);
    void check(QCheckBox *box, const FieldRef &field);
    /// The field holds the index of the chosen item.
    void index(QComboBox *box, const FieldRef &field, Again again = Again::Counts);
    /// The field holds the text of the chosen item.
    void item(QComboBox *box, const FieldRef &field);
    /// The field holds the id of the chosen button; the buttons are named by their ids.
    void choice(QButtonGroup *buttons, const FieldRef &field);
    /// The field holds a bit for each box, in a mask of `full`; the boxes are named by their bits.
    void bits(const std::vector<QCheckBox *> &boxes, int full, const FieldRef &field);

    /// Shows what the fields hold. Nothing is written by it.
    void show();

    /// Marks the controls of fields that have problems in the entries shown, and unmarks the others.
    void mark(const QList<Problem> &problems);

    bool isBound(const QString &control) const;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Bound
    {
        FieldRef field;
        QWidget *control; ///< the first of several
        std::function<void(const QString &text)> show;
    };

    void add(const FieldRef &field, QWidget *control, std::function<void(const QString &)> show);
    void name(QWidget *control, const QString &name);
    void write(const FieldRef &field, const QString &text, Counts counts = Counts::AsEdit);
    QString stored(const FieldRef &field) const { return field.text(m_context.document.configuration()); }

    EditorContext &m_context;
    std::vector<Bound> m_bound;
};

} // namespace ktr
