#include "app/disk_watch.h"

#include "config/channel_names.h"
#include "look/program_name.h"

#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>

#include <chrono>

namespace ktr {

DiskWatch::DiskWatch(QWidget &window, const Document &document, std::function<bool()> isBusy)
    : m_window(window), m_document(document), m_isBusy(std::move(isBusy))
{
    constexpr std::chrono::milliseconds writing(200); // a file is told of several times while it is written
    m_soon.setObjectName(QStringLiteral("tmr_disk"));
    m_soon.setParent(&m_window);
    m_soon.setSingleShot(true);
    m_soon.setInterval(writing);
    connect(&m_soon, &QTimer::timeout, this, &DiskWatch::look);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &DiskWatch::lookSoon);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &DiskWatch::lookSoon);
    connect(&m_document, &Document::changed, this, [this] {
        if (m_document.source() != m_followed) { // not for every letter that is typed
            follow();
        }
    });
    connect(&m_document, &Document::saved, this, &DiskWatch::look);
    connect(&m_document, &Document::modifiedChanged, this, [this] {
        if (m_box != nullptr) {
            m_box->setText(text());
        }
    });
}

void DiskWatch::lookSoon()
{
    if (!m_soon.isActive()) {
        m_soon.start();
    }
}

/// The folder tells when a file is replaced by another one, the file when it is written to. The one that
/// takes a watched file's place is to be watched anew.
void DiskWatch::follow()
{
    m_followed = m_document.source();
    QStringList wanted;
    if (const QString &file = m_followed; !file.isEmpty()) {
        wanted = {QFileInfo(file).absolutePath(), file, namesFileOf(file)};
        wanted.removeIf([](const QString &path) { return !QFileInfo::exists(path); });
    }
    QStringList left = m_watcher.files() + m_watcher.directories();
    left.removeIf([&wanted](const QString &path) { return wanted.contains(path); });
    if (!left.isEmpty()) {
        m_watcher.removePaths(left);
    }
    const QStringList watched = m_watcher.files() + m_watcher.directories();
    wanted.removeIf([&watched](const QString &path) { return watched.contains(path); });
    if (!wanted.isEmpty()) {
        m_watcher.addPaths(wanted);
    }
    if (m_box != nullptr && m_followed != m_told.path) {
        m_box->close(); // it speaks of another file
    }
}

void DiskWatch::look()
{
    follow();
    if (!m_document.isChangedOnDisk()) {
        m_told = {};
        if (m_box != nullptr) {
            m_box->close();
        }
        return;
    }
    if (m_isBusy()) {
        m_soon.start();
    }
    if (m_isBusy() || !m_window.isVisible()) {
        return;
    }
    const QString &file = m_document.source();
    const Document::Source now{file, markOf(file), markOf(namesFileOf(file))};
    if (m_told == now) {
        return;
    }
    m_told = now;
    m_box != nullptr ? m_box->setText(text()) : show();
}

QString DiskWatch::text() const
{
    const QString &source = m_document.source();
    const QFileInfo configuration(source);
    const QFileInfo names(namesFileOf(source));
    const bool isItself = m_told.configuration != m_document.wholeSource().configuration;
    const QFileInfo &changed = isItself ? configuration : names;
    const QString when =
        m_document.environment().locale.toString(changed.lastModified(), QLocale::ShortFormat);
    return m_document.isModified()
               ? tr("%1 was changed by somebody else (%2). Your edits are not in it; when "
                    "they are saved, what stands there now is kept beside it.")
                     .arg(changed.filePath(), when)
               : tr("%1 was changed by somebody else (%2).").arg(changed.filePath(), when);
}

void DiskWatch::show()
{
    m_box = new QMessageBox(QMessageBox::Question, QString(programName), text(), QMessageBox::NoButton,
                            &m_window);
    QMessageBox *box = m_box;
    box->setObjectName(QStringLiteral("box_changedOnDisk"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setAttribute(Qt::WA_ShowWithoutActivating); // what is being typed is no answer to it
    box->setTextFormat(Qt::PlainText);
    box->setModal(false);
    auto *loadIt = box->addButton(tr("Load it"), QMessageBox::AcceptRole);
    auto *compare = box->addButton(tr("Compare"), QMessageBox::ActionRole);
    auto *leave = box->addButton(tr("Go on"), QMessageBox::RejectRole);
    box->setDefaultButton(m_document.isModified() ? compare : loadIt);
    box->setEscapeButton(leave);
    connect(box, &QDialog::finished, this, [this, box, loadIt, compare] {
        m_box.clear();
        if (box->clickedButton() == loadIt && m_document.source() == m_told.path) {
            Q_EMIT loadWanted();
        } else if (box->clickedButton() == compare) {
            Q_EMIT comparisonWanted();
        }
    });
    box->show();
}

} // namespace ktr
