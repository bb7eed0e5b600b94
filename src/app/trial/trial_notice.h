#pragma once

#include "app/trial/trial_run.h"

#include <QToolBar>

class QLabel;

namespace ktr {

/// Says below the menus, as long as a trial goes on, that its modules are virtual and nothing is kept, and in
/// the window's title that it is a trial.
class TrialNotice : public QToolBar
{
    Q_OBJECT

public:
    /// `trouble` is what keeps the modules from working; empty when they work.
    TrialNotice(TrialKind kind, QString trouble, QWidget *parent);

protected:
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void applyTexts();
    void applyColours();
    void markTitle();

    TrialKind m_kind;
    QString m_trouble;
    QLabel *m_text;
    QString m_mark; ///< behind the window's title
    bool m_isColouring = false;
};

} // namespace ktr
