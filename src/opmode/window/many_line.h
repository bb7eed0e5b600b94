#pragma once

#include <QWidget>

class QLabel;
class QProgressBar;
class QToolButton;

namespace ktr {

class ManyStations;

/// In the status bar: how many stations are chosen, how far what is done with many has come, what of it
/// failed, and a removal that can be undone. Nothing of it takes room while there is nothing to tell.
class ManyLine : public QWidget
{
    Q_OBJECT

public:
    explicit ManyLine(ManyStations &work, QWidget *parent = nullptr);

    void applyTexts();
    void showChosen(int stations);
    /// Stays until it is called again; 0 for none.
    void showRemoved(int stations);

Q_SIGNALS:
    void undoWanted();
    /// The user wants to read what could not be done.
    void failuresWanted();
    void stopWanted();

private:
    void showProgress(int done, int all);
    void showFailures();

    ManyStations &m_work;
    QLabel *m_chosen;
    QProgressBar *m_progress;
    QToolButton *m_stop;
    QToolButton *m_failures;
    QToolButton *m_undo;
    int m_chosenCount = 0;
    int m_removedCount = 0;
};

} // namespace ktr
