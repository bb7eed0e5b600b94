#pragma once

#include "link/problems.h"

#include <QWidget>

class QListWidget;
class QToolButton;

namespace ktr {

/// Lists the problems of the configuration, one in each row. Its height stays, so that nothing jumps while
/// the user types.
class ProblemPanel : public QWidget
{
    Q_OBJECT

public:
    /// Returns where a problem is, in words for the user; empty when that is not known.
    using Where = std::function<QString(const Problem &)>;

    explicit ProblemPanel(Where where, QWidget *parent = nullptr);

    void show(const QList<Problem> &problems);
    void applyTexts();

    bool isUnfolded() const;
    void unfold(bool unfolded);
    /// The list gets the focus, so that the keys choose a problem; nothing where there is none.
    void focusList();

    /// Lets the Tab key reach the panel after this control.
    void followInTabOrder(QWidget *control);

Q_SIGNALS:
    /// The user wants to go to the field.
    void chosen(const ktr::Problem &problem);
    void unfolded(bool unfolded);
    /// The list had the focus and was hidden.
    void focusLeft();

private:
    void showSummary();

    Where m_where;
    QList<Problem> m_problems;
    QToolButton *m_header;
    QListWidget *m_list;
};

} // namespace ktr
