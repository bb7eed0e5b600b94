#include "look/text_keys.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>

#include <optional>

namespace ktr {

namespace {

/// What can be done with a text now.
struct TextState
{
    bool isEditable = false;
    bool canUndo = false;
    bool canRedo = false;
};

/// What was taken out of a search is over: undone there, it would be searched for again.
TextState stateOf(const QLineEdit &edit)
{
    const bool isOver = edit.isClearButtonEnabled() && edit.text().isEmpty();
    return {!edit.isReadOnly(), edit.isUndoAvailable() && !isOver, edit.isRedoAvailable() && !isOver};
}

template <class Edit> TextState documentState(const Edit &edit)
{
    return {!edit.isReadOnly(), edit.document()->isUndoAvailable(), edit.document()->isRedoAvailable()};
}

/// Nothing of what is no field for text.
std::optional<TextState> stateOf(const QWidget &widget)
{
    if (const auto *line = qobject_cast<const QLineEdit *>(&widget)) {
        return stateOf(*line);
    }
    if (const auto *text = qobject_cast<const QPlainTextEdit *>(&widget)) {
        return documentState(*text);
    }
    if (const auto *text = qobject_cast<const QTextEdit *>(&widget)) {
        return documentState(*text);
    }
    if (qobject_cast<const QAbstractSpinBox *>(&widget) != nullptr ||
        qobject_cast<const QComboBox *>(&widget) != nullptr) {
        const auto *line = widget.findChild<const QLineEdit *>();
        return line == nullptr ? std::nullopt : std::optional(stateOf(*line));
    }
    return std::nullopt;
}

class TextKeys : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::ShortcutOverride || !watched->isWidgetType()) {
            return false;
        }
        const std::optional<TextState> text = stateOf(*static_cast<QWidget *>(watched));
        const auto &key = *static_cast<QKeyEvent *>(event);
        if (!text) {
            return false;
        }
        if (text->isEditable &&
            (key.matches(QKeySequence::DeleteEndOfWord) || key.matches(QKeySequence::DeleteStartOfWord))) {
            event->accept(); // no command of the window
            return true;
        }
        const bool isLeftToWindow =
            (key.matches(QKeySequence::Undo) && !(text->isEditable && text->canUndo)) ||
            (key.matches(QKeySequence::Redo) && !(text->isEditable && text->canRedo));
        if (isLeftToWindow) {
            event->ignore();
        }
        return isLeftToWindow;
    }
};

} // namespace

void sortTextKeys(QApplication &application)
{
    static const QString name = QStringLiteral("TextKeys");
    if (application.findChild<QObject *>(name, Qt::FindDirectChildrenOnly) == nullptr) {
        auto *keys = new TextKeys(&application);
        keys->setObjectName(name);
        application.installEventFilter(keys);
    }
}

} // namespace ktr
