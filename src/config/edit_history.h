#pragma once

#include "config/document.h"

#include <QObject>
#include <QString>

#include <deque>
#include <functional>

namespace ktr {

/// Where in the windows a change was made: the control, and the entry of its page that was shown.
struct EditPlace
{
    QString control;
    int entry = 0;

    bool operator==(const EditPlace &) const = default;
};

/// Undo and redo over everything that happens to a document: edits, "new", another file loaded. Changes of
/// one place that follow each other are one step until endGroup().
class EditHistory : public QObject
{
    Q_OBJECT

public:
    static constexpr std::size_t longest = 300; ///< steps

    explicit EditHistory(Document &document, QObject *parent = nullptr);

    /// A user's edit: marks the document modified, as Document::edit().
    void edit(const EditPlace &place, const std::function<void(Configuration &)> &change);

    /// A user's change that does not count as an edit, as Document::adjust().
    void adjust(const EditPlace &place, const std::function<void(Configuration &)> &change);

    void makeNew();

    /// As Document::makeAnother().
    void makeAnother();

    /// Loads another file, as Document::load(). What was not saved before can be brought back.
    ReadReport load(const QString &fileName);

    /// Puts a configuration in place that is not saved yet, of another file or of none, with what is known of
    /// that file.
    void replace(const Configuration &configuration, const QString &fileName, const Document::Source &source);

    /// The next change is a step of its own, wherever it is made.
    void endGroup() { m_open = false; }

    bool canUndo() const { return !m_undo.empty(); }
    bool canRedo() const { return !m_redo.empty(); }
    void undo();
    void redo();

    /// What the last change did, in words for the user, to be told again when it is undone or redone. Nothing
    /// where it changed nothing.
    void describe(const QString &words);
    void clear();

Q_SIGNALS:
    void availabilityChanged();
    /// A step was undone or redone; `place` is where it had been made, with an empty control for the whole.
    void moved(const ktr::EditPlace &place);
    /// The same, after it: what the step did, empty where nobody has said so.
    void undone(const QString &words);
    void redone(const QString &words);

private:
    struct State
    {
        Configuration configuration;
        bool modified = false;
        QString fileName;
        Document::Source source;
    };
    struct Step
    {
        State state; ///< on the other side of the step
        EditPlace place;
        QString words; ///< what it did
    };

    State present() const;
    void record(State before, const EditPlace &place);
    void move(std::deque<Step> &from, std::deque<Step> &to);
    void noteSaved();
    void markModified(const std::function<bool(const State &)> &differs);

    Document &m_document;
    std::deque<Step> m_undo;
    std::deque<Step> m_redo;
    bool m_open = false;       ///< the last step may still grow
    bool m_isRecorded = false; ///< the last change is in it
};

} // namespace ktr
