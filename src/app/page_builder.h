#pragma once

#include "app/page_tabs.h"

#include <QObject>

namespace ktr {

class FileDialogs;
class InfoPage;
class LinkPresenter;
struct CommandLine;

/// Builds the pages of the main window and connects them: with the link, with the file dialogs, and with the
/// system's program for the files that a page names.
class PageBuilder : public QObject
{
    Q_OBJECT

public:
    /// All of them must outlive the pages.
    PageBuilder(EditorContext &context, LinkPresenter &link, FileDialogs &files, const CommandLine &options)
        : m_context(context), m_link(link), m_files(files), m_options(options)
    {}

    Page *build(PageIndex index);

protected:
    /// Of the fields: a file that is dropped on one is meant for the window.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void connectInfoPage(InfoPage &page);
    void saveText(const QString &text);
    void openFile(const QString &path);

    EditorContext &m_context;
    LinkPresenter &m_link;
    FileDialogs &m_files;
    const CommandLine &m_options;
};

} // namespace ktr
