#pragma once

#include <QObject>
#include <QPointer>

#include <memory>

class QWidget;

namespace ktr {

class ManualWindow;
class TextTable;

/// F1 and Shift+F1 in every window of the program, also while one asks something: the manual at what has the
/// focus, and what this means in a few words. "What is this?" with the mouse asks the same of what is
/// clicked.
class HelpKeys : public QObject
{
    Q_OBJECT

public:
    /// The texts must outlive it.
    explicit HelpKeys(const TextTable &texts);
    ~HelpKeys() override;

    /// The manual at what explains this widget; at the first chapter without one.
    void showAbout(QWidget *widget);
    /// What this widget means, beside it.
    void explain(QWidget *widget);
    /// The manual at this anchor.
    void showPlace(const QString &anchor);

    /// The manual's window, shown or not.
    const QWidget &manualWindow();

    /// A widget's name in a line, and below it what it means: as in its tool tip, where that says more than
    /// the name, else as the manual begins to tell about it. Plain text.
    static QString meaning(const QWidget *widget);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    ManualWindow &manual();

    const TextTable &m_texts;
    std::unique_ptr<ManualWindow> m_manual; ///< made when it is first wanted
    QPointer<QWidget> m_asked;              ///< whose meaning is shown
};

} // namespace ktr
