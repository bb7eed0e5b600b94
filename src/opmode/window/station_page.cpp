#include "opmode/window/station_page.h"

#include "link/udp_pair.h"
#include "look/problem_label.h"
#include "opmode/window/alarm_look.h"
#include "opmode/window/alarms/maintenance.h"
#include "opmode/window/configuration_card.h"
#include "opmode/window/exclusive_card.h"
#include "opmode/window/quality_bars.h"
#include "opmode/window/station_mark.h"
#include "opmode/window/station_tree_view.h"
#include "platform/text_rules.h"

#include <QCheckBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>
#include <QShortcut>

#include <utility>

namespace ktr {

/// The mark of the tree, large.
class StatusMark : public QWidget
{
public:
    explicit StatusMark(QWidget *parent) : QWidget(parent)
    {
        constexpr int side = 22;
        setFixedSize(side, side);
    }
    void show(const StationStatus &status)
    {
        m_status = status;
        setAccessibleName(statusText(status));
        update();
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        paintStationMark(painter, rect(), m_status, palette());
    }

private:
    StationStatus m_status;
};

namespace {

constexpr int widestCard = 760;
constexpr int refreshMs = 1000;

} // namespace

StationPage::StationPage(OperationalMode &mode, const TextTable &texts,
                         std::function<QString(const QString &filter)> askOpen, QWidget *parent)
    : OpmodePage(mode, texts, parent)
{
    m_none = new QLabel(this);
    m_none->setObjectName(QStringLiteral("lbl_no_station"));
    m_none->setAlignment(Qt::AlignCenter);
    m_none->setWordWrap(true);
    m_none->setForegroundRole(QPalette::PlaceholderText);
    auto *scroll = new QScrollArea(this);
    m_cards = scroll;
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    auto *body = new QWidget(scroll);
    auto *column = new QVBoxLayout(body);
    m_exclusiveCard = new ExclusiveCard(mode, texts, body);
    m_maintenanceCard = new MaintenanceCard(mode, texts, body);
    m_configurationCard = new ConfigurationCard(mode, std::move(askOpen), body);
    connect(m_configurationCard, &ConfigurationCard::statusMessage, this, &StationPage::statusMessage);
    for (QWidget *card : std::initializer_list<QWidget *>{connectionCard(), signalCard(), m_configurationCard,
                                                          m_exclusiveCard, m_maintenanceCard}) {
        card->setMaximumWidth(widestCard);
        column->addWidget(card);
    }
    column->addStretch();
    scroll->setWidget(body);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(scroll, 1);
    layout->addWidget(m_none, 1);

    connect(&mode, &OperationalMode::stationChanged, this, [this](const QString &kennung) {
        if (kennung == this->kennung() && isVisible()) {
            showNow();
        }
    });
    connect(&mode.tree(), &QAbstractItemModel::rowsRemoved, this, &StationPage::recheckName);
    connect(&mode.tree(), &QAbstractItemModel::dataChanged, this, &StationPage::recheckName);
    Timer_aktualisieren.setObjectName(QStringLiteral("Timer_aktualisieren"));
    connect(&Timer_aktualisieren, &QTimer::timeout, this, [this] {
        if (isVisible()) {
            showLastHeard();
        }
    });
    Timer_aktualisieren.start(refreshMs);
}

QLabel *StationPage::addRow(QGridLayout *grid, int row, QWidget *control)
{
    auto *caption = new QLabel(this);
    caption->setBuddy(control);
    grid->addWidget(caption, row, 0);
    grid->addWidget(control, row, 1);
    return caption;
}

ProblemLabel *StationPage::addProblem(QGridLayout *grid, int row, const char *name)
{
    auto *problem = new ProblemLabel(this);
    problem->setObjectName(QLatin1String(name));
    grid->addWidget(problem, row, 1, 1, -1);
    return problem;
}

QWidget *StationPage::connectionCard()
{
    m_connectionCard = new QGroupBox(this);
    auto *grid = new QGridLayout(m_connectionCard);
    grid->setColumnStretch(1, 1);
    auto *state = new QHBoxLayout;
    m_mark = new StatusMark(m_connectionCard);
    m_status = new QLabel(m_connectionCard);
    m_status->setObjectName(QStringLiteral("lbl_pic0_state"));
    QFont large = m_status->font();
    large.setPointSizeF(large.pointSizeF() * 1.25);
    large.setBold(true);
    m_status->setFont(large);
    Check_pic0_online = new QCheckBox(m_connectionCard);
    Check_pic0_online->setObjectName(QStringLiteral("Check_pic0_online"));
    state->addWidget(m_mark);
    state->addWidget(m_status, 1);
    state->addWidget(Check_pic0_online);
    grid->addLayout(state, 0, 0, 1, 2);

    m_name = new QLineEdit(m_connectionCard);
    m_name->setObjectName(QStringLiteral("Text_pic0_name"));
    m_nameCaption = addRow(grid, 1, m_name);
    m_nameProblem = addProblem(grid, 2, "lbl_pic0_name");
    m_address = new QLineEdit(m_connectionCard);
    m_address->setObjectName(QStringLiteral("Text_pic0_hostAddress"));
    m_addressCaption = addRow(grid, 3, m_address);
    m_addressProblem = addProblem(grid, 4, "lbl_pic0_address");
    m_heard = new QLabel(m_connectionCard);
    m_heard->setObjectName(QStringLiteral("lbl_pic0_heard"));
    m_heardCaption = addRow(grid, 5, m_heard);
    m_trouble = addProblem(grid, 6, "lbl_pic0_trouble");
    QSizePolicy troublesRoom =
        m_trouble->sizePolicy(); // it comes and goes by itself, and what is below stays
    troublesRoom.setRetainSizeWhenHidden(true);
    m_trouble->setSizePolicy(troublesRoom);

    connect(m_name, &QLineEdit::editingFinished, this, &StationPage::storeName);
    connect(m_address, &QLineEdit::editingFinished, this, &StationPage::storeAddress);
    for (const auto &field : {std::pair(m_name, m_nameProblem), {m_address, m_addressProblem}}) {
        QLineEdit *const edit = field.first;
        auto *const problem = field.second;
        connect(edit, &QLineEdit::textEdited, problem, [problem] { problem->tell({}); });
        connect(new QShortcut(QKeySequence(Qt::Key_Escape), edit, nullptr, nullptr, Qt::WidgetShortcut),
                &QShortcut::activated, this, [this, edit, problem] { discard(edit, problem); });
    }
    connect(Check_pic0_online, &QCheckBox::clicked, this, [this](bool checked) {
        storeAddress(); // one that was typed and not left yet counts
        mode().setOnline(kennung(), checked);
    });
    return m_connectionCard;
}

QWidget *StationPage::signalCard()
{
    m_signalCard = new QGroupBox(this);
    auto *row = new QHBoxLayout(m_signalCard);
    m_bars = new QualityBars(m_signalCard);
    m_quality = new QLabel(m_signalCard);
    m_quality->setObjectName(QStringLiteral("lbl_pic0_csq"));
    m_puk = new ProblemLabel(m_signalCard);
    m_puk->setObjectName(QStringLiteral("lbl_pic0_puk"));
    m_puk->setWordWrap(false);
    row->addWidget(m_bars);
    row->addWidget(m_quality, 1);
    row->addWidget(m_puk);
    return m_signalCard;
}

void StationPage::stationChosen()
{
    m_nameProblem->tell({});
    m_addressProblem->tell({});
    m_name->setModified(false);
    m_address->setModified(false);
    m_exclusiveCard->showStation(kennung());
    m_maintenanceCard->showStation(kennung());
    m_configurationCard->showStation(kennung());
    showNow();
}

void StationPage::stationRenamed()
{
    m_configurationCard->showStation(kennung());
    showNow();
}

void StationPage::showNow()
{
    const cStation *shown = station();
    setEnabled(shown != nullptr);
    m_cards->setVisible(shown != nullptr);
    m_none->setVisible(shown == nullptr);
    if (shown == nullptr) {
        return;
    }
    for (QWidget *input :
         std::initializer_list<QWidget *>{Check_pic0_online, m_exclusiveCard, m_maintenanceCard}) {
        input->setEnabled(!mode().isIdle());
    }
    for (QLineEdit *input : {m_name, m_address}) {
        input->setEnabled(mode().whyNot(OperationalMode::Deed::Administer).isEmpty());
    }
    const QModelIndex node = mode().tree().find(kennung());
    const auto status = node.data(StationTree::StatusRole).value<StationStatus>();
    const bool isLent = mode().isLent(kennung());
    m_mark->show(status);
    m_status->setText(isLent ? tr("being configured in the main window") : statusText(status));
    const auto fill = [](QLineEdit *edit, const QString &text) {
        if (!edit->isModified() && edit->text() != text) {
            edit->setText(text);
        }
    };
    fill(m_name, node.data(Qt::EditRole).toString());
    fill(m_address, shown->hostAddress());
    Check_pic0_online->setChecked(shown->online() || isLent);
    m_trouble->tell(shown->trouble());
    m_bars->show(shown->csq());
    const QString level = QualityBars::decibels(shown->csq());
    const QString reported = onOneLine(shown->csq());
    m_quality->setText(level.isEmpty() ? tr("unknown (%1)").arg(reported)
                                       : tr("%1 (reported: %2)").arg(level, reported));
    m_puk->tell(shown->pukNeeded() ? text(Text::PukNeeded) : QString());
    m_exclusiveCard->refresh();
    showLastHeard();
}

void StationPage::showLastHeard()
{
    const qint64 heard = station() == nullptr ? 0 : station()->lastHeard();
    if (heard == 0) {
        m_heard->setText(tr("not since the operational mode was opened"));
        return;
    }
    const QDateTime moment = QDateTime::fromMSecsSinceEpoch(heard);
    const qint64 seconds = std::max(qint64{0}, moment.secsTo(QDateTime::currentDateTime()));
    const QString time = QLocale().toString(moment.time(), QStringLiteral("HH:mm:ss"));
    constexpr qint64 aMinute = 60;
    constexpr qint64 aDay = 24 * (60 * aMinute);
    m_heard->setText(seconds < aMinute ? tr("%1, %2 s ago").arg(time).arg(seconds)
                     : seconds < aDay  ? tr("%1, %2 min ago").arg(time).arg(seconds / aMinute)
                                       : shownMoment(heard));
}

void StationPage::storeName()
{
    if (station() == nullptr || !m_name->isModified()) {
        return;
    }
    const QString wanted = m_name->text();
    StationTree &tree = mode().tree();
    const QModelIndex node = tree.find(kennung());
    if (wanted != node.data(Qt::EditRole).toString() && !tree.setData(node, wanted)) {
        showProblem(m_nameProblem, StationTreeView::refusalOf(wanted));
        return;
    }
    m_name->setModified(false);
    showNow();
}

/// The station that has the name may have gone or got another one.
void StationPage::recheckName()
{
    const QString wanted = m_name->text().trimmed();
    if (!m_nameProblem->text().isEmpty() && !wanted.isEmpty() && !wanted.contains(u'/') &&
        mode().tree().freeName(wanted) == wanted) {
        m_nameProblem->tell({});
    }
}

/// Gives up what was typed.
void StationPage::discard(QLineEdit *edit, ProblemLabel *problem)
{
    edit->setModified(false);
    problem->tell({});
    showNow();
}

void StationPage::storeAddress()
{
    if (station() == nullptr || !m_address->isModified()) {
        return;
    }
    const QString wanted = m_address->text().trimmed();
    if (!wanted.isEmpty() && !UdpPair::isAddress(wanted)) {
        showProblem(m_addressProblem,
                    tr("\"%1\" is no address of a module: four numbers from 0 to 255 with dots between "
                       "them, or a host name; \":port\" may follow")
                        .arg(wanted));
        return;
    }
    m_address->setModified(false);
    mode().setHostAddress(kennung(), wanted);
    showNow();
    if (const QString other = otherAt(wanted); !other.isEmpty()) {
        showProblem(
            m_addressProblem,
            tr("\"%1\" has this address, too: what the module sends reaches one of them alone").arg(other));
    }
}

/// The name of another station with this address; empty for none.
QString StationPage::otherAt(const QString &address) const
{
    QString name;
    mode().stations().forEach([&](const cStation &station) {
        if (!address.isEmpty() && station.kennung() != kennung() &&
            station.hostAddress().compare(address, Qt::CaseInsensitive) == 0) {
            name = mode().tree().find(station.kennung()).data().toString();
        }
    });
    return name;
}

void StationPage::showProblem(ProblemLabel *label, const QString &problem)
{
    if (label->text() != problem) { // leaving the field is no news
        label->tell(problem);
        Q_EMIT statusMessage(problem);
    }
}

void StationPage::changeEvent(QEvent *event)
{
    OpmodePage::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        showNow();
    }
}

void StationPage::applyTexts()
{
    m_cards->setAccessibleName(text(Text::Station));
    m_none->setText(tr("No station is chosen."));
    m_connectionCard->setTitle(text(Text::StationConnection));
    Check_pic0_online->setText(text(Text::Online));
    m_nameCaption->setText(tr("Name"));
    m_addressCaption->setText(tr("Address"));
    m_address->setToolTip(tr("Where the module is reached: four numbers from 0 to 255, or a name; port %1 "
                             "unless \":port\" follows")
                              .arg(UdpPair::modulePort));
    m_heardCaption->setText(tr("Last heard"));
    m_signalCard->setTitle(text(Text::SignalQuality));
    m_exclusiveCard->applyTexts();
    m_maintenanceCard->applyTexts();
    m_configurationCard->applyTexts();
    if (!m_nameProblem->text().isEmpty()) {
        storeName();
    }
    if (!m_addressProblem->text().isEmpty()) {
        storeAddress();
    }
    showNow();
}

} // namespace ktr
