#include "opmode/window/retention_dialog.h"

#include "look/message_dialog.h"
#include "opmode/operational_mode.h"
#include "record/record_address.h"
#include "record/record_care.h"

#include <QFileInfo>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

namespace ktr {

namespace {

constexpr int mostDays = 36'500;
constexpr qint64 msPerDay = 86'400'000;
/// With so many entries in the tree it is worth thinking about how long they stay.
constexpr std::size_t manyEntries = 1'000'000;
constexpr int aYear = 365;

} // namespace

RetentionDialog::RetentionDialog(OperationalMode &mode, const TextTable &texts, AskSave askSave,
                                 QWidget *parent)
    : QDialog(parent),
      m_mode(mode),
      m_texts(texts),
      m_askSave(std::move(askSave)),
      m_figures(new QLabel(this)),
      m_backupState(new QLabel(this)),
      m_backup(new QPushButton(tr("Back up..."), this))
{
    setObjectName(QStringLiteral("Form_retention"));
    setWindowTitle(tr("What is kept"));
    if (parent != nullptr) { // a window has the locale of no other
        setLocale(parent->locale());
    }
    auto *form = new QFormLayout;
    const RetentionRules rules = mode.retention();
    const auto addDays = [&](const QString &name, const QString &caption, int RetentionRules::*days) {
        auto *box = new QSpinBox(this);
        box->setObjectName(name);
        box->setAccessibleName(caption);
        box->setRange(0, mostDays);
        box->setSpecialValueText(tr("for ever"));
        box->setSuffix(tr(" days"));
        box->setValue(rules.*days);
        const QString why = mode.whyNotForAll();
        box->setEnabled(!mode.recordPath().isEmpty() && why.isEmpty());
        box->setToolTip(why);
        form->addRow(caption, box);
        m_days.append({box, days});
    };
    addDays(QStringLiteral("Spin_tree"), tr("Entries in the tree and its file (the record keeps them):"),
            &RetentionRules::tree);
    addDays(QStringLiteral("Spin_events"), tr("Events in the record:"), &RetentionRules::events);
    addDays(QStringLiteral("Spin_alarms"), tr("Alarms that are acknowledged and over:"),
            &RetentionRules::alarms);
    addDays(QStringLiteral("Spin_history"), tr("Archives of the modules:"), &RetentionRules::history);
    addDays(QStringLiteral("Spin_values"), tr("Input values:"), &RetentionRules::values);

    m_figures->setObjectName(QStringLiteral("lbl_record"));
    m_figures->setWordWrap(true);
    m_figures->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_backupState->setObjectName(QStringLiteral("lbl_backup"));
    m_backupState->setWordWrap(true);
    m_backup->setObjectName(QStringLiteral("Cmd_record_backup"));
    m_backup->setAutoDefault(false);
    const bool isServer = isServerAddress(mode.recordPath());
    m_backup->setEnabled(!mode.recordPath().isEmpty() && !isServer);
    m_backup->setToolTip(isServer ? tr("A record on a server is copied by the server's own means (pg_dump)")
                                  : tr("Copies the record while it is in use; the copy may take its place"));
    auto *ok = new QPushButton(texts.text(Text::Ok), this);
    ok->setObjectName(QStringLiteral("Cmd_record_ok"));
    ok->setDefault(true);
    auto *cancel = new QPushButton(texts.text(Text::Cancel), this);
    cancel->setObjectName(QStringLiteral("Cmd_record_cancel"));
    cancel->setAutoDefault(false);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(m_backup);
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    auto *all = new QVBoxLayout(this);
    all->setSpacing(12);
    all->addWidget(m_figures);
    all->addLayout(form);
    all->addStretch();
    all->addWidget(m_backupState);
    all->addLayout(buttons);
    constexpr QSize comfortable(620, 360);
    resize(comfortable);
    m_days.constFirst().first->setFocus();
    connect(m_backup, &QPushButton::clicked, this, &RetentionDialog::backUp);
    connect(ok, &QPushButton::clicked, this, &RetentionDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &RetentionDialog::reject);

    if (mode.recordPath().isEmpty()) {
        m_figures->setText(tr("Nothing is recorded."));
        return;
    }
    m_figures->setText(tr("The record is looked at..."));
    m_queries.emplace(mode.recordPath());
    m_queries->ask(this, &RetentionDialog::read, [this](const Figures &figures) { show(figures); });
}

RetentionDialog::~RetentionDialog() = default;

/// Long texts fold, and the dialog grows with them.
void RetentionDialog::tell(QLabel &label, const QString &text)
{
    label.setText(text);
    resize(width(), std::max(height(), layout()->minimumHeightForWidth(width())));
}

RetentionDialog::Figures RetentionDialog::read(RecordReader &reader)
{
    Figures figures;
    const auto go = [&](const Status &step) { figures.status = figures.status ? step : figures.status; };
    go(reader.size(figures.bytes));
    go(reader.count(QStringLiteral("event"), figures.events));
    go(reader.count(QStringLiteral("history"), figures.history));
    go(reader.count(QStringLiteral("value"), figures.values));
    go(reader.eventsAfter(0, [&](const EventRow &event) {
        figures.first = event.at;
        return false;
    }));
    return figures;
}

void RetentionDialog::show(const Figures &figures)
{
    if (!figures.status) {
        tell(*m_figures, figures.status.message());
        return;
    }
    const qint64 rows = figures.events + figures.history + figures.values;
    const qint64 age = m_mode.now().toMSecsSinceEpoch() - figures.first;
    const auto aDay = [age](qint64 all) {
        return qRound64(static_cast<double>(all) * msPerDay / static_cast<double>(age));
    };
    const QString counts = tr("Events: %1, records of archives: %2, input values: %3.")
                               .arg(locale().toString(figures.events), locale().toString(figures.history),
                                    locale().toString(figures.values));
    const QString since =
        locale().toString(QDateTime::fromMSecsSinceEpoch(figures.first), QLocale::ShortFormat);
    const QString rate =
        figures.first == 0 || age <= 0 ? QString()
        : age < msPerDay // which says little of a day
            ? tr("That is since %1, for less than a day.").arg(since)
            : tr("About %1 rows and %2 a day.")
                  .arg(locale().toString(aDay(rows)), locale().formattedDataSize(aDay(figures.bytes)));
    QStringList lines{tr("%1: %2").arg(m_mode.recordPath(), locale().formattedDataSize(figures.bytes)),
                      QString(counts + u' ' + rate).trimmed()};
    if (const std::optional<DiskRoom> room = m_mode.diskRoom()) {
        lines += tr("Free on this disk: %1 of %2")
                     .arg(locale().formattedDataSize(room->free), locale().formattedDataSize(room->all));
    }
    tell(*m_figures, (lines + QStringList(treeText())).join(u'\n').trimmed());
}

QString RetentionDialog::treeText() const
{
    const std::size_t entries = m_mode.tree().nodes().count();
    if (entries < manyEntries || m_mode.retention().tree != 0) {
        return {};
    }
    const qint64 old = m_mode.entriesOlderThan(aYear);
    return tr("The tree has %1 entries. Kept for %2 days, it would have %3 less.")
        .arg(locale().toString(static_cast<qulonglong>(entries)), QString::number(aYear),
             locale().toString(old));
}

void RetentionDialog::backUp()
{
    const QString day = m_mode.now().toString(QStringLiteral("yyyy-MM-dd"));
    const QString proposal =
        QFileInfo(m_mode.recordPath()).completeBaseName() + u' ' + day + QStringLiteral(".sqlite");
    m_target = m_askSave(proposal, tr("Records|*.sqlite"));
    if (m_target.isEmpty()) {
        return;
    }
    m_backup->setEnabled(false);
    tell(*m_backupState, tr("The copy is being written..."));
    m_thread.start([this, from = m_mode.recordPath(), to = m_target] {
        m_backedUp = backUpRecord(from, to);
        QMetaObject::invokeMethod(
            &m_receiver, [this] { ended(); }, Qt::QueuedConnection);
    });
}

void RetentionDialog::ended()
{
    m_thread.wait();
    m_backup->setEnabled(true);
    tell(*m_backupState, m_backedUp ? tr("The copy is written: %1").arg(m_target) : m_backedUp.message());
    Q_EMIT statusMessage(m_backupState->text());
}

/// What goes from the tree stays in the record; what goes from there is gone.
bool RetentionDialog::mayRemove(const RetentionRules &rules)
{
    const RetentionRules before = m_mode.retention();
    QStringList shorter;
    for (const auto &[box, days] : std::as_const(m_days)) {
        const bool isShorter = rules.*days != 0 && (before.*days == 0 || rules.*days < before.*days);
        if (isShorter && days != &RetentionRules::tree) {
            shorter += box->accessibleName() + u' ' + box->text();
        }
    }
    return shorter.isEmpty() ||
           Dialog::questionOfLoss(this, m_texts,
                                  tr("What is older is removed from the record for good:") + u'\n' +
                                      shorter.join(u'\n') + QLatin1String("\n\n") +
                                      tr("It cannot be undone. \"Back up...\" makes a copy before."));
}

void RetentionDialog::accept()
{
    RetentionRules rules;
    for (const auto &[box, days] : std::as_const(m_days)) {
        rules.*days = box->value();
    }
    if (!mayRemove(rules)) {
        return;
    }
    if (rules != m_mode.retention()) {
        m_mode.setRetention(rules);
    }
    QDialog::accept();
}

} // namespace ktr
