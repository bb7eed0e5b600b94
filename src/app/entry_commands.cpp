#include "app/entry_commands.h"

#include "app/main_menu.h"
#include "config/entry_table.h"
#include "config/entry_texts.h"
#include "editor/entry_chooser.h"
#include "editor/input_page.h"
#include "look/message_dialog.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QUuid>

#include <memory>

namespace ktr {

namespace {

QList<int> following(int first, qsizetype count)
{
    QList<int> entries;
    for (qsizetype entry = 0; entry < count; ++entry) {
        entries += first + static_cast<int>(entry);
    }
    return entries;
}

} // namespace

EntryCommands::EntryCommands(const Parts &parts, QObject *parent) : QObject(parent), m_parts(parts)
{
    const MainMenu &menu = m_parts.menu;
    connect(menu.cutEntry, &QAction::triggered, this, &EntryCommands::cut);
    connect(menu.copyEntry, &QAction::triggered, this, &EntryCommands::copy);
    connect(menu.pasteEntry, &QAction::triggered, this, &EntryCommands::paste);
    connect(menu.duplicateEntry, &QAction::triggered, this, &EntryCommands::duplicate);
    connect(menu.clearEntry, &QAction::triggered, this, &EntryCommands::clear);
    connect(menu.moveEntryUp, &QAction::triggered, this, [this] { move(-1); });
    connect(menu.moveEntryDown, &QAction::triggered, this, [this] { move(1); });
    connect(menu.moveEntryTo, &QAction::triggered, this, &EntryCommands::moveTo);
    connect(&m_parts.tabs, &PageTabs::built, this, &EntryCommands::addTo);
    connect(&m_parts.tabs, &QTabWidget::currentChanged, this, &EntryCommands::showAvailable);
    showAvailable();
}

void EntryCommands::addTo(Page *page)
{
    if (EntryChooser *chooser = page->entryChooser()) {
        chooser->addEntryActions(m_parts.menu.entryActions());
    }
    if (auto *inputs = qobject_cast<InputPage *>(page)) {
        inputs->addAction(m_parts.menu.fillDown);
        connect(m_parts.menu.fillDown, &QAction::triggered, inputs, &InputPage::fillDown);
    }
    showAvailable();
}

void EntryCommands::showAvailable()
{
    m_parts.menu.fillDown->setEnabled(m_parts.tabs.currentIndex() == static_cast<int>(PageIndex::Ip));
    const bool available = chosen().chooser != nullptr;
    for (QAction *action : m_parts.menu.entryActions()) {
        action->setEnabled(available);
    }
}

EntryCommands::Chosen EntryCommands::chosen() const
{
    const auto index = static_cast<PageIndex>(m_parts.tabs.currentIndex());
    const Page *page = m_parts.tabs.builtPage(index);
    EntryChooser *chooser = page != nullptr ? page->entryChooser() : nullptr;
    if (chooser == nullptr) {
        return {};
    }
    return {chooser, index == PageIndex::SwitchPoints ? EntryList::SwitchPoints : EntryList::LimitValues,
            chooser->chosen()};
}

ComparisonWords EntryCommands::words() const
{
    return {m_parts.context.texts, m_parts.context.document.environment().locale};
}

/// One step of its own; none where the change fails, which is told, or changes nothing.
bool EntryCommands::apply(const Chosen &chosen, const Change &change)
{
    Configuration changed = configuration();
    if (const Status done = change(changed); !done) {
        Q_EMIT statusMessage(done.message());
        return false;
    }
    m_isChanged = changed != configuration();
    if (!m_isChanged) {
        return true;
    }
    EditHistory &history = m_parts.context.history;
    history.endGroup();
    history.edit({chosen.chooser->overviewName(), chosen.first()},
                 [&changed](Configuration &present) { present = std::move(changed); });
    history.endGroup();
    return true;
}

/// Undo tells it again, so that no line of the status bar outlives its step.
void EntryCommands::tellStep(const QString &words, EditorContext::Replaced replaced)
{
    if (m_isChanged) {
        m_parts.context.history.describe(words);
    }
    const bool isHinted = m_isChanged && replaced == EditorContext::Replaced::Something;
    Q_EMIT statusMessage(isHinted ? EditorContext::withUndoHint(words) : words);
}

// Clipboard

void EntryCommands::toClipboard(const EntryClip &clip)
{
    QList<int> entries;
    for (const EntryClip::Row &row : clip.rows) {
        entries += row.number;
    }
    auto data = std::make_unique<QMimeData>();
    data->setData(QLatin1String(entryMimeType), writeClip(clip));
    data->setText(entryTable(configuration(), clip.list, entries, words()));
    QApplication::clipboard()->setMimeData(data.release());
}

bool EntryCommands::fromClipboard(EntryList list, EntryClip &clip)
{
    const QMimeData *data = QApplication::clipboard()->mimeData();
    const QString mimeType = QLatin1String(entryMimeType);
    if (data == nullptr || !data->hasFormat(mimeType)) {
        const Status read = readEntryTable(data != nullptr ? data->text() : QString(), list, words(), clip);
        if (!read) {
            Q_EMIT statusMessage(read.message());
        }
        return bool(read);
    }
    const std::optional<EntryClip> found = readClip(data->data(mimeType));
    if (!found || found->list != list) {
        Q_EMIT statusMessage(!found ? tr("What is on the clipboard cannot be read")
                             : list == EntryList::LimitValues
                                 ? tr("On the clipboard are switch points, not limit values")
                                 : tr("On the clipboard are limit values, not switch points"));
        return false;
    }
    clip = *found;
    return true;
}

void EntryCommands::copy()
{
    const Chosen entries = chosen();
    if (entries.chooser != nullptr) {
        toClipboard(clipOf(configuration(), entries.list, entries.entries));
        Q_EMIT statusMessage(tr("Copied: %1").arg(namesOf(entries)));
    }
}

void EntryCommands::cut()
{
    const Chosen entries = chosen();
    if (entries.chooser == nullptr) {
        return;
    }
    EntryClip clip = clipOf(configuration(), entries.list, entries.entries);
    clip.cutBy = QUuid::createUuid().toString(QUuid::WithoutBraces);
    toClipboard(clip);
    const QString names = namedBy(configuration(), entries.list, entries.entries);
    apply(entries, [&](Configuration &changed) {
        for (const int entry : entries.entries) {
            ktr::clearEntry(changed, {entries.list, entry}, m_parts.context.document.environment());
        }
        return Status::done();
    });
    m_cut = clip.cutBy;
    const QString cut = tr("Cut: %1").arg(namesOf(entries));
    tellStep(
        names.isEmpty()
            ? cut
            : cut + tr(". It is still named by %1, which follow it to where it is pasted here").arg(names));
}

void EntryCommands::paste()
{
    Chosen target = chosen();
    EntryClip clip;
    if (target.chooser == nullptr || !fromClipboard(target.list, clip)) {
        return;
    }
    target.entries = following(target.first(), clip.rows.size());
    NewNumbers numbers = unchangedNumbers();
    const bool wasCutHere = !clip.cutBy.isEmpty() && clip.cutBy == m_cut;
    QString overwritten;
    QString gone;
    const bool pasted = apply(target, [&](Configuration &changed) {
        const Configuration before = changed;
        if (Status done = pasteEntries(changed, clip, target.first(), m_parts.context.document.environment());
            !done) {
            return done;
        }
        QList<int> replaced;
        for (int at = 0; const int entry : target.entries) {
            const int from = clip.rows[at++].number;
            if (wasCutHere && from >= 0 && isFree(before, {target.list, from})) {
                numbers[static_cast<std::size_t>(from)] = entry;
            }
            if (!isFree(before, {target.list, entry})) {
                replaced += entry;
            }
        }
        overwritten = namedBy(before, target.list, replaced);
        gone = contentsOf(before, target.list, replaced);
        if (target.list == EntryList::LimitValues) {
            renumber(changed, numbers);
        }
        return Status::done();
    });
    if (!pasted) {
        return;
    }
    if (wasCutHere) {
        m_cut.clear();
    }
    target.chooser->choose(target.first(), target.count());
    QString told = gone.isEmpty() ? tr("Pasted: %1").arg(namesOf(target))
                                  : tr("Pasted: %1, in place of %2").arg(namesOf(target), gone);
    if (!overwritten.isEmpty()) {
        told += tr(". What stood there was named by %1").arg(overwritten);
    }
    tellStep(told, gone.isEmpty() ? EditorContext::Replaced::Nothing : EditorContext::Replaced::Something);
}

// Places

void EntryCommands::duplicate()
{
    const Chosen entries = chosen();
    int copy = -1;
    const bool done = entries.chooser != nullptr && apply(entries, [&](Configuration &changed) {
                          return duplicateEntries(changed, entries.list, entries.entries, copy);
                      });
    if (done) {
        const QString from = namesOf(entries);
        entries.chooser->choose(copy, 1);
        tellStep(tr("%1 duplicated: %2").arg(from, nameOf({entries.list, copy})));
    }
}

void EntryCommands::clear()
{
    const Chosen entries = chosen();
    if (entries.chooser == nullptr) {
        return;
    }
    const QString names = namedBy(configuration(), entries.list, entries.entries);
    const QString gone = contentsOf(configuration(), entries.list, entries.entries);
    apply(entries, [&](Configuration &changed) {
        for (const int entry : entries.entries) {
            ktr::clearEntry(changed, {entries.list, entry}, m_parts.context.document.environment());
        }
        return Status::done();
    });
    QString told = tr("Cleared: %1").arg(namesOf(entries));
    if (!gone.isEmpty()) {
        told += QStringLiteral(" (%1)").arg(gone);
    }
    if (!names.isEmpty()) {
        told += tr(". It is still named by %1").arg(names);
    }
    tellStep(told, gone.isEmpty() ? EditorContext::Replaced::Nothing : EditorContext::Replaced::Something);
}

void EntryCommands::move(int by)
{
    const Chosen entries = chosen();
    if (entries.chooser != nullptr) {
        moveFirstTo(entries, entries.first() + by);
    }
}

void EntryCommands::moveTo()
{
    const Chosen entries = chosen();
    if (entries.chooser == nullptr) {
        return;
    }
    const auto answer = Dialog::input(&m_parts.window, m_parts.context.texts,
                                      tr("Move %1 to which number?").arg(namesOf(entries)),
                                      QString::number(entries.first() + 1));
    if (!answer) {
        return;
    }
    bool isNumber = false;
    const int number = answer->trimmed().toInt(&isNumber);
    if (isNumber && number >= 1 && number <= entriesOfList) {
        moveFirstTo(entries, number - 1);
    } else {
        Q_EMIT statusMessage(tr("The places are numbered 1 to %1").arg(entriesOfList));
    }
}

void EntryCommands::moveFirstTo(const Chosen &chosen, int to)
{
    if (chosen.entries.constLast() - chosen.first() + 1 != chosen.count()) {
        Q_EMIT statusMessage(tr("Only entries that follow each other can be moved together"));
        return;
    }
    const bool moved = apply(chosen, [&](Configuration &changed) {
        return moveEntries(changed, {chosen.list, chosen.first()}, chosen.count(), to);
    });
    if (moved) {
        const QString names = namesOf(chosen);
        chosen.chooser->choose(to, chosen.count());
        tellStep(tr("%1 moved to %2").arg(names).arg(to + 1));
    }
}

// Words

QString EntryCommands::nameOf(const EntryPlace &place) const
{
    const Text name = place.list == EntryList::LimitValues ? Text::LimitValueShort : Text::Switchpoint;
    return m_parts.context.texts.text(name).trimmed() + u' ' + QString::number(place.entry + 1);
}

QString EntryCommands::namesOf(const Chosen &chosen) const
{
    QString first = nameOf({chosen.list, chosen.first()});
    if (chosen.count() == 1) {
        return first;
    }
    const int last = chosen.entries.constLast();
    if (last - chosen.first() + 1 == chosen.count()) {
        return first + QStringLiteral("–%1").arg(last + 1);
    }
    QStringList others;
    for (qsizetype at = 1; at < chosen.entries.size(); ++at) {
        others += QString::number(chosen.entries[at] + 1);
    }
    return first + QStringLiteral(", ") + others.join(QLatin1String(", "));
}

/// Enough of an entry to know it again: "9 AnalogIn 1 > 80 m, \"Well high\"".
QString EntryCommands::contentOf(const Configuration &configuration, const EntryPlace &place) const
{
    const auto at = static_cast<std::size_t>(place.entry);
    const TextTable &texts = m_parts.context.texts;
    if (place.list == EntryList::SwitchPoints) {
        const SwitchPoint &point = configuration.switchPoints[at];
        return targetName(configuration, point.target, texts) + QLatin1String(": ") +
               switchTypeName(point.type, texts);
    }
    const LimitValue &value = configuration.limitValues[at];
    QStringList parts;
    if (LimitValue::isReference(place.entry)) {
        parts += combinedLimitValues(value.reference).join(u'+');
    } else if (value.channel != 0) {
        const QString unit = shownUnits(configuration, value.channel, texts).limit;
        const QString condition = channelName(configuration, value.channel, texts) + u' ' +
                                  comparisonSign(value.comparison) + u' ' + value.limit + u' ' + unit;
        parts += condition.trimmed();
    }
    if (!value.alarm.trimmed().isEmpty()) {
        parts += u'"' + value.alarm + u'"';
    }
    parts.removeAll(QString());
    return parts.join(QLatin1String(", "));
}

/// Of those in use, the first few.
QString EntryCommands::contentsOf(const Configuration &configuration, EntryList list,
                                  const QList<int> &entries) const
{
    constexpr qsizetype most = 3;
    constexpr qsizetype longest = 80;
    QStringList contents;
    qsizetype count = 0;
    for (const int entry : entries) {
        if (!isFree(configuration, {list, entry}) && ++count <= most) {
            const QString content = contentOf(configuration, {list, entry}).simplified();
            contents += content.size() > longest ? content.left(longest) + u'…' : content;
        }
    }
    const QString told = contents.join(QLatin1String("; "));
    return count > most ? tr("%1 and %2 more").arg(told).arg(count - most) : told;
}

/// The others that name one of these entries.
QString EntryCommands::namedBy(const Configuration &configuration, EntryList list,
                               const QList<int> &entries) const
{
    QStringList names;
    for (const int entry : entries) {
        const QList<EntryPlace> places = referencesTo(configuration, {list, entry});
        for (const EntryPlace &place : places) {
            if (const QString name = nameOf(place);
                !names.contains(name) && !(place.list == list && entries.contains(place.entry))) {
                names += name;
            }
        }
    }
    return names.join(QLatin1String(", "));
}

} // namespace ktr
