#pragma once

#include "config/document.h"

#include <QFileSystemWatcher>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>

class QMessageBox;
class QWidget;

namespace ktr {

/// Tells at once, in a box that does not block, when somebody else changes the present file or the names
/// beside it. A change is told once; a newer one is told in the same box while that is open. The box goes
/// when the file is the program's own again, as after saving.
class DiskWatch : public QObject
{
    Q_OBJECT

public:
    /// While `isBusy` it waits.
    DiskWatch(QWidget &window, const Document &document, std::function<bool()> isBusy);

    /// Looks without waiting for the system to tell of a change: not every one is told, as on network drives.
    /// To be called when the window is shown, too: while it is hidden nothing is told.
    void look();

Q_SIGNALS:
    /// The user wants what stands in the file now, or to see what differs.
    void loadWanted();
    void comparisonWanted();

private:
    void follow();
    void lookSoon();
    void show();
    QString text() const;

    QWidget &m_window;
    const Document &m_document;
    std::function<bool()> m_isBusy;
    QFileSystemWatcher m_watcher;
    QString m_followed; ///< the file that is watched
    QTimer m_soon;
    QPointer<QMessageBox> m_box;
    Document::Source m_told; ///< what stood there when it was told last
};

} // namespace ktr
