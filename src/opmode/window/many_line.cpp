#include "opmode/window/many_line.h"

#include "look/list_views.h"
#include "opmode/window/many_stations.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QToolButton>

namespace ktr {

ManyLine::ManyLine(ManyStations &work, QWidget *parent) : QWidget(parent), m_work(work)
{
    m_chosen = named<QLabel>(QStringLiteral("lbl_chosen"), this);
    m_progress = named<QProgressBar>(QStringLiteral("Progress_many"), this);
    m_stop = named<QToolButton>(QStringLiteral("Cmd_many_stop"), this);
    m_failures = named<QToolButton>(QStringLiteral("Cmd_many_failures"), this);
    m_undo = named<QToolButton>(QStringLiteral("Cmd_many_undo"), this);
    constexpr int progressWidth = 220;
    m_progress->setFixedWidth(progressWidth);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(8, 0, 8, 0);
    for (QWidget *part : {static_cast<QWidget *>(m_progress), static_cast<QWidget *>(m_stop),
                          static_cast<QWidget *>(m_failures), static_cast<QWidget *>(m_undo),
                          static_cast<QWidget *>(m_chosen)}) {
        part->hide();
        row->addWidget(part);
    }
    for (QToolButton *button : {m_stop, m_failures, m_undo}) {
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::TabFocus); // a click leaves it where the user works
    }
    connect(m_undo, &QToolButton::clicked, this, &ManyLine::undoWanted);
    connect(m_failures, &QToolButton::clicked, this, &ManyLine::failuresWanted);
    connect(m_stop, &QToolButton::clicked, this, &ManyLine::stopWanted);
    connect(&work, &ManyStations::progressed, this, &ManyLine::showProgress);
    connect(&work, &ManyStations::finished, this, &ManyLine::showFailures);
    applyTexts();
}

void ManyLine::applyTexts()
{
    m_stop->setText(tr("Stop"));
    m_stop->setToolTip(tr("Leaves out the stations whose turn has not come"));
    m_undo->setToolTip(tr("Brings the stations back with their settings, entries and places (Ctrl+Z)"));
    m_failures->setToolTip(tr("Lists the stations and the reasons"));
    m_progress->setAccessibleName(tr("Progress"));
    showChosen(m_chosenCount);
    showRemoved(m_removedCount);
    showFailures();
}

void ManyLine::showChosen(int stations)
{
    m_chosenCount = stations;
    m_chosen->setText(tr("%L1 stations chosen").arg(stations));
    m_chosen->setVisible(stations > 1);
}

void ManyLine::showRemoved(int stations)
{
    m_removedCount = stations;
    m_undo->setText(stations == 1 ? tr("1 station removed – Undo")
                                  : tr("%L1 stations removed – Undo").arg(stations));
    m_undo->setVisible(stations > 0);
}

void ManyLine::showProgress(int done, int all)
{
    const bool goesOn = done < all;
    m_progress->setVisible(goesOn);
    m_stop->setVisible(goesOn);
    if (goesOn) {
        m_progress->setRange(0, all);
        m_progress->setValue(done);
        m_progress->setFormat(m_work.doing() + QLatin1String(" %v / %m"));
    }
}

void ManyLine::showFailures()
{
    const auto failed = static_cast<int>(m_work.failures().size());
    m_failures->setText(tr("Not done: %L1").arg(failed));
    m_failures->setVisible(failed > 0);
}

} // namespace ktr
