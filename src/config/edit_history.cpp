#include "config/edit_history.h"

#include "config/fields.h"

namespace ktr {

EditHistory::EditHistory(Document &document, QObject *parent) : QObject(parent), m_document(document)
{
    connect(&m_document, &Document::saved, this, &EditHistory::noteSaved);
}

EditHistory::State EditHistory::present() const
{
    return {m_document.configuration(), m_document.isModified(), m_document.fileName(),
            m_document.wholeSource()};
}

void EditHistory::record(State before, const EditPlace &place)
{
    // Clicking what is chosen already marks the document modified and changes nothing else.
    Configuration unstamped = m_document.configuration();
    unstamped.versionText = before.configuration.versionText;
    if (place.control != fieldOf<FileInfo>(&FileInfo::version).control.forIndex(0)) {
        unstamped.info.version = before.configuration.info.version;
    }
    m_isRecorded = unstamped != before.configuration || m_document.fileName() != before.fileName;
    if (!m_isRecorded) {
        return;
    }
    m_redo.clear();
    if (!m_open || m_undo.empty() || m_undo.back().place != place) {
        m_undo.push_back({std::move(before), place, {}});
        if (m_undo.size() > longest) {
            m_undo.pop_front();
        }
    }
    m_open = !place.control.isEmpty();
    Q_EMIT availabilityChanged();
}

void EditHistory::edit(const EditPlace &place, const std::function<void(Configuration &)> &change)
{
    State before = present();
    m_document.edit(change);
    record(std::move(before), place);
}

void EditHistory::adjust(const EditPlace &place, const std::function<void(Configuration &)> &change)
{
    State before = present();
    m_document.adjust(change);
    record(std::move(before), place);
}

void EditHistory::makeNew()
{
    State before = present();
    m_document.makeNew();
    record(std::move(before), {});
}

void EditHistory::makeAnother()
{
    State before = present();
    m_document.makeAnother();
    record(std::move(before), {});
}

ReadReport EditHistory::load(const QString &fileName)
{
    State before = present();
    ReadReport report = m_document.load(fileName);
    if (report.opened) {
        record(std::move(before), {});
        markModified([this](const State &state) { return state.source.path == m_document.source(); });
    }
    return report;
}

void EditHistory::replace(const Configuration &configuration, const QString &fileName,
                          const Document::Source &source)
{
    State before = present();
    m_document.setFileName(fileName);
    m_document.restore(configuration, true, source);
    endGroup();
    record(std::move(before), {});
}

void EditHistory::move(std::deque<Step> &from, std::deque<Step> &to)
{
    if (from.empty()) {
        return;
    }
    Step step = std::move(from.back());
    from.pop_back();
    to.push_back({present(), step.place, step.words});
    m_open = false;
    m_document.setFileName(step.state.fileName);
    m_document.restore(step.state.configuration, step.state.modified, step.state.source);
    Q_EMIT availabilityChanged();
    m_isRecorded = false;
    Q_EMIT moved(step.place);
    &from == &m_undo ? Q_EMIT undone(step.words) : Q_EMIT redone(step.words);
}

void EditHistory::describe(const QString &words)
{
    if (m_isRecorded && !m_undo.empty()) {
        m_undo.back().words = words;
    }
}

void EditHistory::undo()
{
    move(m_undo, m_redo);
}

void EditHistory::redo()
{
    move(m_redo, m_undo);
}

void EditHistory::clear()
{
    m_undo.clear();
    m_redo.clear();
    m_open = false;
    Q_EMIT availabilityChanged();
}

/// Whatever differs from the file now is modified, once it is brought back.
void EditHistory::noteSaved()
{
    endGroup();
    for (std::deque<Step> *steps : {&m_undo, &m_redo}) { // the file is known to all that came from it
        for (Step &step : *steps) {
            if (step.state.source.path == m_document.source()) {
                step.state.source = m_document.wholeSource();
            }
        }
    }
    markModified([this](const State &state) {
        return state.fileName == m_document.fileName() || state.fileName.isEmpty();
    });
}

void EditHistory::markModified(const std::function<bool(const State &)> &differs)
{
    for (std::deque<Step> *steps : {&m_undo, &m_redo}) {
        for (Step &step : *steps) {
            step.state.modified = step.state.modified || differs(step.state);
        }
    }
}

} // namespace ktr
