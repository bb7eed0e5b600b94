#pragma once

#include "app/trial/trial_run.h"

#include <QToolBar>

class QLabel;

namespace ktr {

/// Says below the menus, as long as a trial goes on, that its modules are virtual and nothing is kept.
class TrialNotice : public QToolBar
{
    Q_OBJECT

public:
    /// `trouble` is what keeps the modules from working; empty when they work.
    TrialNotice(TrialKind kind, QString trouble, QWidget *parent);

protected:
    void changeEvent(QEvent *event) override;

private:
    void applyTexts();
    void applyColours();

    TrialKind m_kind;
    QString m_trouble;
    QLabel *m_text;
    bool m_isColouring = false;
};

} // namespace ktr
