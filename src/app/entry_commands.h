#pragma once

#include "app/page_tabs.h"
#include "config/comparison.h"
#include "config/entry_clip.h"

#include <QObject>

namespace ktr {

class MainMenu;

/// What the edit menu does with limit values and switch points as wholes, each as one step that undo takes
/// back: over the system's clipboard into other files, other programs of this kind and spreadsheets. What is
/// cut is empty at once; pasted again here, what named it follows.
class EntryCommands : public QObject
{
    Q_OBJECT

public:
    struct Parts
    {
        QWidget &window;
        MainMenu &menu;
        PageTabs &tabs;
        EditorContext &context;
    };

    /// All of them must outlive this.
    explicit EntryCommands(const Parts &parts, QObject *parent = nullptr);

    /// Another configuration is shown: what was cut stood in the one before.
    void forgetCut() { m_cut.clear(); }

Q_SIGNALS:
    /// A line for the status bar.
    void statusMessage(const QString &line);

private:
    struct Chosen
    {
        EntryChooser *chooser = nullptr; ///< null: the page has no entries
        EntryList list = EntryList::LimitValues;
        QList<int> entries;

        int first() const { return entries.constFirst(); }
        int count() const { return static_cast<int>(entries.size()); }
    };
    using Change = std::function<Status(Configuration &)>;

    void addTo(Page *page);
    void showAvailable();
    Chosen chosen() const;
    const Configuration &configuration() const { return m_parts.context.document.configuration(); }
    ComparisonWords words() const;

    bool apply(const Chosen &chosen, const Change &change);
    void tellStep(const QString &words, EditorContext::Replaced replaced = EditorContext::Replaced::Nothing);
    void toClipboard(const EntryClip &clip);
    bool fromClipboard(EntryList list, EntryClip &clip);

    void cut();
    void copy();
    void paste();
    void duplicate();
    void clear();
    void move(int by);
    void moveTo();
    void moveFirstTo(const Chosen &chosen, int to);

    QString nameOf(const EntryPlace &place) const;
    QString namesOf(const Chosen &chosen) const;
    QString contentOf(const Configuration &configuration, const EntryPlace &place) const;
    QString contentsOf(const Configuration &configuration, EntryList list, const QList<int> &entries) const;
    QString namedBy(const Configuration &configuration, EntryList list, const QList<int> &entries) const;

    Parts m_parts;
    bool m_isChanged = false; ///< by what was applied last
    QString m_cut;            ///< the mark of what was cut here last
};

} // namespace ktr
