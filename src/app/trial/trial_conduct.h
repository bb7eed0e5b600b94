#pragma once

#include "app/trial/trial_files.h"
#include "app/trial/trial_run.h"

#include <QObject>

class QWidget;

namespace ktr {

class Document;
class EditHistory;
class FileCommands;
class LinkPresenter;
class ModuleLink;

/// How the main window of a trial differs from any other: it begins with a copy that stands in no file,
/// confirms each command, and at its end asks for a place for what was edited.
class TrialConduct : public QObject
{
    Q_OBJECT

public:
    struct Parts
    {
        QWidget &window;
        TrialRun &run;
        Document &document;
        EditHistory &history;
        FileCommands &files;
        ModuleLink &link;
        LinkPresenter &presenter;
    };
    /// All of them must outlive this.
    explicit TrialConduct(const Parts &parts);

    /// Puts a configuration with the names beside it into the folder of a trial that is about to be started.
    static Status prepare(const QString &folder, const Configuration &configuration,
                          const Environment &environment);
    /// Opens that; false where there is none.
    bool openPrepared();
    void connectModule();

    /// False when the user does not want to end. What was edited is in a file of the user's then, or given
    /// up.
    bool mayEnd();

private:
    void leadOutputIntoFolder();

    Parts m_parts;
    TrialFiles m_files;
};

} // namespace ktr
