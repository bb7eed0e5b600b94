#pragma once

#include <QList>
#include <QWidget>

class QLineEdit;
class QListWidget;
class QShortcut;
class QStackedWidget;
class QToolButton;
class QTreeWidget;

namespace ktr {

class ManualTexts;
class ManualView;
class TextTable;

/// The manual: its chapters, a search over all of them, back and forward. It is built into the program and
/// shown in the language of the program. There is one window, which F1 takes to another place.
class ManualWindow : public QWidget
{
    Q_OBJECT

public:
    /// The texts must outlive it: the tables of fields have the names of the pages.
    explicit ManualWindow(const TextTable &texts);

    /// Shows what has this anchor; the first chapter where there is no such anchor. `asker` is the window
    /// that asks: one that lets no other be used lets this one.
    void showPlace(const QString &anchor, QWidget *asker = nullptr);
    /// What is shown now.
    const QString &place() const { return m_places[m_at]; }

    /// Takes the language that the program has now, at the same place.
    void applyTexts();

protected:
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void layOut();
    void addKeys();
    void fillContents();
    void appear(QWidget *asker);
    void visit(const QString &place);
    void present(const QString &place);
    void step(int by);
    void search();
    void choosePresent();

    const TextTable &m_texts;
    const ManualTexts *m_manual;
    QToolButton *m_back;
    QToolButton *m_forward;
    QToolButton *m_start;
    QLineEdit *m_search;
    QStackedWidget *m_left; ///< the contents, or what was found
    QTreeWidget *m_contents;
    QListWidget *m_found;
    ManualView *m_view;
    QString m_chapter;
    QList<std::pair<QShortcut *, const char *>> m_keys; ///< what each does is to be translated
    QList<QString> m_places;                            ///< anchors, in the order in which they were visited
    qsizetype m_at = 0;
};

} // namespace ktr
