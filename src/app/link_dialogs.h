#pragma once

#include "editor/binder.h"

#include <QObject>
#include <QPointer>

class QMessageBox;

namespace ktr {

class FileDialogs;
class LinkPresenter;
class Transmitter;

/// What the link asks the user, or tells him in a box above the window: before firmware is sent, when the
/// module holds another configuration, when the fast export has no file.
class LinkDialogs : public QObject
{
    Q_OBJECT

public:
    LinkDialogs(QWidget &window, EditorContext &context, LinkPresenter &presenter, Transmitter &transmitter,
                FileDialogs &files);

Q_SIGNALS:
    /// The user wants to choose a connection.
    void connectionWanted();

private:
    void askForExportFile();
    void offerToStop(const QString &text);

    QWidget &m_window;
    EditorContext &m_context;
    LinkPresenter &m_presenter;
    Transmitter &m_transmitter;
    FileDialogs &m_files;
    QPointer<QMessageBox> m_overwriting; ///< offers to stop a transmission
};

} // namespace ktr
