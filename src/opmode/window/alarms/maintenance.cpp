#include "opmode/window/alarms/maintenance.h"

#include "lang/text_table.h"
#include "look/outside_texts.h"
#include "opmode/operational_mode.h"
#include "opmode/window/alarm_look.h"
#include "opmode/window/alarms/shelve_dialog.h"
#include "platform/text_rules.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>

namespace ktr {

void askForMaintenance(OperationalMode &mode, const TextTable &texts, const QString &kennung, QWidget *window)
{
    const QPointer<QWidget> stillThere(window);
    ShelveDialog dialog(texts, mode.alarmActions().now(), 0, 1, window);
    const QString name = mode.tree().find(kennung).data().toString();
    dialog.setWindowTitle(dialog.windowTitle() + QLatin1String(": ") + shortenedLine(name));
    if (dialog.exec() == QDialog::Accepted && stillThere) {
        AlarmActions &actions = mode.alarmActions();
        actions.shelveStation(actions.numberOf(kennung), dialog.until(), dialog.why());
    }
}

MaintenanceCard::MaintenanceCard(OperationalMode &mode, const TextTable &texts, QWidget *parent)
    : QGroupBox(parent),
      m_mode(mode),
      m_texts(texts),
      m_state(new QLabel(this)),
      m_begin(new QPushButton(this)),
      m_end(new QPushButton(this))
{
    m_state->setObjectName(QStringLiteral("lbl_pic0_maintenance"));
    m_state->setWordWrap(true);
    m_state->setTextFormat(Qt::PlainText);
    m_begin->setObjectName(QStringLiteral("Cmd_pic0_maintenance"));
    m_end->setObjectName(QStringLiteral("Cmd_pic0_maintenance_end"));
    auto *row = new QHBoxLayout(this);
    row->addWidget(m_state, 1);
    for (QPushButton *button : {m_end, m_begin}) {
        button->setAutoDefault(false);
        row->addWidget(button);
    }
    connect(m_begin, &QPushButton::clicked, this,
            [this] { askForMaintenance(m_mode, m_texts, m_kennung, window()); });
    connect(m_end, &QPushButton::clicked, this, [this] {
        AlarmActions &actions = m_mode.alarmActions();
        actions.unshelve(actions.numberOf(m_kennung), {});
    });
    connect(&mode.alarms(), &AlarmBook::shelvesChanged, this, &MaintenanceCard::refresh);
    connect(&mode.alarms(), &AlarmBook::reset, this, &MaintenanceCard::refresh);
}

void MaintenanceCard::showStation(const QString &kennung)
{
    m_kennung = kennung;
    refresh();
}

void MaintenanceCard::refresh()
{
    const AlarmActions &actions = m_mode.alarmActions();
    const Shelf *shelf = m_kennung.isEmpty() ? nullptr : actions.maintenanceOf(actions.numberOf(m_kennung));
    if (shelf == nullptr) {
        m_state->setText(tr("Its alarms are told."));
    } else {
        const QString until =
            shelf->by.isEmpty()
                ? tr("In maintenance until %1").arg(shownMoment(shelf->until))
                : tr("In maintenance until %1 (%2)").arg(shownMoment(shelf->until), shelf->by);
        m_state->setText(onOneLine(until + QLatin1String(": ") + shelf->why));
    }
    m_end->setVisible(shelf != nullptr);
}

void MaintenanceCard::applyTexts()
{
    setTitle(tr("Maintenance"));
    m_begin->setText(tr("Maintenance..."));
    m_end->setText(tr("End the maintenance"));
    m_begin->setToolTip(tr("Puts all alarms of the station aside until a time, with a reason"));
    m_end->setToolTip(tr("Its alarms are told again at once"));
    refresh();
}

} // namespace ktr
