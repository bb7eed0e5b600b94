#include "editor/connection_page.h"

#include "config/address.h"
#include "look/lamp.h"
#include "look/outside_texts.h"
#include "look/wheel_guard.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStyledItemDelegate>

namespace ktr {

namespace {

constexpr int adapterRole = Qt::UserRole;

/// Shows the adapter behind the port's name, in the list alone: what is chosen and typed is the name.
class PortDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        if (const QString adapter = index.data(adapterRole).toString(); !adapter.isEmpty()) {
            option->text += QLatin1String("  –  ") + shortenedLine(adapter);
        }
    }
};

QLabel *note(const char *name, QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setObjectName(QLatin1String(name));
    label->setWordWrap(true);
    return label;
}

} // namespace

ConnectionPage::ConnectionPage(EditorContext &context, QWidget *parent) : Page(context, parent)
{
    auto *layout = new QGridLayout(this);
    layout->addWidget(serialCard(), 0, 0);
    layout->addWidget(ethernetCard(), 0, 1);
    layout->addWidget(stateCard(), 1, 0);
    m_tasks = new ServiceTasks(this);
    onTexts([this] { m_tasks->applyTexts(); });
    layout->addWidget(m_tasks, 1, 1);
    layout->setColumnStretch(0, 1);
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(1, 1);
}

QWidget *ConnectionPage::serialCard()
{
    auto *card = new QGroupBox(this);
    onTexts([card] { card->setTitle(tr("Serial port")); });
    auto *rows = new QVBoxLayout(card);
    auto *row = new QHBoxLayout;
    m_ports = new QComboBox(card);
    m_ports->setObjectName(QStringLiteral("Cmb_connection_port"));
    m_ports->setEditable(true);
    onTexts([this] { m_ports->lineEdit()->setAccessibleName(tr("Serial port")); });
    m_ports->setInsertPolicy(QComboBox::NoInsert);
    m_ports->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_ports->setMinimumContentsLength(16);
    m_ports->setMaximumWidth(320);
    ignoreWheelUnlessFocused(m_ports);
    m_ports->setItemDelegate(new PortDelegate(m_ports));
    connect(m_ports, &QComboBox::currentTextChanged, this, &ConnectionPage::showAdapter);
    connect(m_ports, &QComboBox::activated, this, [this] { m_isPortTyped = true; });
    connect(m_ports->lineEdit(), &QLineEdit::textEdited, this, [this] { m_isPortTyped = true; });
    m_ports->addItem(QString());
    onTexts([this] {
        const QString chosen = chosenPort();
        m_ports->setItemText(0, tr("Search all ports"));
        if (!chosen.isEmpty()) { // typed beside the item chosen last
            m_ports->setEditText(chosen);
        }
    });
    tip(m_ports, [] { return tr("A port of the list, or one typed; 9600 baud, 8 data bits"); });
    row->addWidget(labelFor(m_ports, [] { return tr("Port"); }));
    row->addWidget(m_ports, 10);
    QPushButton *open =
        addButton(row, "cmd_connection_serial", [this] { Q_EMIT serialWanted(chosenPort()); });
    onTexts([open] { open->setText(tr("Connect")); });
    row->addStretch();
    rows->addLayout(row);
    m_adapter = note("lbl_connection_adapter", card);
    rows->addWidget(m_adapter);
    rows->addStretch();
    return card;
}

QWidget *ConnectionPage::ethernetCard()
{
    auto *card = captioned(new QGroupBox(this), Text::Ethernet);
    auto *rows = new QVBoxLayout(card);
    auto *row = new QHBoxLayout;
    m_address = new QLineEdit(card);
    m_address->setObjectName(QStringLiteral("Txt_connection_address"));
    m_address->setMaximumWidth(240);
    tip(m_address, [] { return tr("Where the module is reached: four numbers from 0 to 255, or a name"); });
    // The configuration's address is proposed until the user types another.
    onRecords([this] {
        if (!m_address->isModified()) {
            const QString own = withoutLeadingZeros(configuration().ethernet.ip);
            m_address->setText(own.isEmpty() ? m_lastAddress : own);
        }
    });
    row->addWidget(labelFor(m_address, Text::Ip));
    row->addWidget(m_address, 10);
    const auto add = [&](const char *name, Text kind, bool exclusive) {
        QPushButton *button =
            addButton(row, name, [this, exclusive] { Q_EMIT ethernetWanted(address(), exclusive); });
        onTexts([this, button, kind] { button->setText(text(Text::Ethernet) + u' ' + text(kind)); });
        return button;
    };
    tip(add("cmd_connection_ethernet", Text::PlusGsm, false),
        [] { return tr("The module keeps its GSM connection beside this one"); });
    tip(add("cmd_connection_exclusive", Text::ExclusiveInBrackets, true),
        [] { return tr("The module uses this connection alone"); });
    row->addStretch();
    rows->addLayout(row);
    m_network = note("lbl_connection_network", card);
    connect(m_address, &QLineEdit::textChanged, this, &ConnectionPage::showNetwork);
    connect(m_address, &QLineEdit::textEdited, this, [this] { m_isAddressTyped = true; });
    onTexts([this] { showNetwork(); });
    rows->addWidget(m_network);
    rows->addStretch();
    return card;
}

QWidget *ConnectionPage::stateCard()
{
    auto *card = captioned(new QGroupBox(this), Text::Connection);
    auto *rows = new QVBoxLayout(card);
    auto *row = new QHBoxLayout;
    m_lamp = new Lamp(card);
    m_lamp->setObjectName(QStringLiteral("lbl_connection_lamp"));
    m_state = new QLabel(card);
    m_state->setObjectName(QStringLiteral("lbl_connection_state"));
    m_state->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    row->addWidget(m_lamp);
    row->addWidget(m_state, 1);
    captioned(addButton(row, "cmd_connection_offline", [this] { Q_EMIT offlineWanted(); }), Text::Offline);
    rows->addLayout(row);

    m_events = new QPlainTextEdit(card);
    m_events->setObjectName(QStringLiteral("txt_connection_events"));
    m_events->setReadOnly(true);
    m_events->setTabChangesFocus(true);
    m_events->setMaximumBlockCount(longestEvents);
    onTexts([this] {
        m_events->setAccessibleName(tr("Events of the connection"));
        showState();
    });
    rows->addWidget(m_events, 1);
    return card;
}

QPushButton *ConnectionPage::addButton(QBoxLayout *row, const char *name, std::function<void()> clicked)
{
    QPushButton *button = newButton(name, std::move(clicked));
    row->addWidget(button);
    return button;
}

QString ConnectionPage::chosenPort() const
{
    const QString text = m_ports->currentText().trimmed();
    return text == m_ports->itemText(0) ? QString() : text;
}

QString ConnectionPage::address() const
{
    return m_address->text().trimmed();
}

void ConnectionPage::forgetTyped()
{
    m_isPortTyped = false;
    m_isAddressTyped = false;
}

void ConnectionPage::showUsedPort(const QString &port)
{
    if (m_isPortTyped || port == chosenPort()) {
        return;
    }
    if (port.isEmpty()) {
        m_ports->setCurrentIndex(0);
    } else {
        showPort(port);
    }
}

void ConnectionPage::showUsedAddress(const QString &address)
{
    if (!m_isAddressTyped && !address.isEmpty() && address != this->address()) {
        m_address->setText(address);
        m_address->setModified(true); // the configuration's is proposed no more
    }
}

void ConnectionPage::showPort(const QString &port)
{
    m_ports->setCurrentIndex(m_ports->findText(port));
    m_ports->setEditText(port);
}

void ConnectionPage::setPorts(const QList<Port> &ports)
{
    const QString chosen = chosenPort();
    const QSignalBlocker blocker(m_ports);
    while (m_ports->count() > 1) {
        m_ports->removeItem(m_ports->count() - 1);
    }
    for (const Port &port : ports) {
        m_ports->addItem(port.name);
        m_ports->setItemData(m_ports->count() - 1, port.adapter, adapterRole);
    }
    const int index = chosen.isEmpty() ? 0 : m_ports->findText(chosen);
    m_ports->setCurrentIndex(index);
    if (index < 0) {
        m_ports->setEditText(chosen);
    }
    showAdapter();
}

void ConnectionPage::setLast(const QString &port, const QString &address)
{
    if (!port.isEmpty()) {
        showPort(port);
    }
    m_lastAddress = address;
    if (m_address->text().isEmpty()) {
        m_address->setText(address);
    }
}

/// What is plugged in at the port that is chosen.
void ConnectionPage::showAdapter()
{
    const int index = m_ports->findText(chosenPort());
    m_adapter->setText(index > 0 ? shortenedLine(m_ports->itemData(index, adapterRole).toString())
                                 : QString());
}

void ConnectionPage::setAdapters(const QList<NetworkAdapter> &adapters)
{
    m_adapters = adapters;
    showNetwork();
}

void ConnectionPage::showNetwork()
{
    m_network->setText(networkText(m_address->text().trimmed(), m_adapters));
}

void ConnectionPage::setState(const QString &text, bool connected)
{
    m_stateText = text;
    m_connected = connected;
    showState();
}

void ConnectionPage::showState()
{
    const QString word = m_connected ? tr("connected") : tr("not connected");
    m_lamp->show(m_connected, word);
    m_state->setText(m_stateText.isEmpty() ? word : m_stateText);
}

void ConnectionPage::addEvent(const QString &line)
{
    m_events->appendPlainText(shortenedLine(line));
}

} // namespace ktr
