#pragma once

#include "editor/network_adapter.h"
#include "editor/page.h"
#include "editor/service_tasks.h"

class QBoxLayout;

namespace ktr {

class Lamp;

/// The ways to reach a module, and what became of the way chosen. It shows and asks; others connect.
class ConnectionPage : public Page
{
    Q_OBJECT

public:
    explicit ConnectionPage(EditorContext &context, QWidget *parent = nullptr);

    static constexpr int longestEvents = 50; ///< lines

    /// A serial port, and the adapter behind it, in words; empty where that is not known.
    struct Port
    {
        QString name;
        QString adapter;
    };
    /// The serial ports to offer, beside the search over all of them. What was chosen or typed stays.
    void setPorts(const QList<Port> &ports);
    /// The network adapters of this computer that are up.
    void setAdapters(const QList<NetworkAdapter> &adapters);
    /// What was used last: a port, empty for the search; an address for configurations without one.
    void setLast(const QString &port, const QString &address);
    ServiceTasks &tasks() { return *m_tasks; }

    /// The serial port that is shown; empty: all are searched.
    QString chosenPort() const;
    QString address() const;
    /// Whether the user has typed or chosen them since a line was opened last.
    bool isPortTyped() const { return m_isPortTyped; }
    bool isAddressTyped() const { return m_isAddressTyped; }
    /// A line was opened or closed: what is shown counts as used, unless it is typed anew.
    void forgetTyped();
    /// Shows the port in use, empty for a search, or the address, unless another one is being typed.
    void showUsedPort(const QString &port);
    void showUsedAddress(const QString &address);
    void setState(const QString &text, bool connected);
    /// A line below the earlier ones, of which the last ones are kept.
    void addEvent(const QString &line);

Q_SIGNALS:
    /// An empty port: search all.
    void serialWanted(const QString &port);
    void ethernetWanted(const QString &address, bool exclusive);
    void offlineWanted();

private:
    QWidget *serialCard();
    QWidget *ethernetCard();
    QWidget *stateCard();
    QPushButton *addButton(QBoxLayout *row, const char *name, std::function<void()> clicked);
    void showPort(const QString &port);
    void showAdapter();
    void showNetwork();
    void showState();

    QComboBox *m_ports = nullptr;
    QLabel *m_adapter = nullptr;
    QLineEdit *m_address = nullptr;
    QLabel *m_network = nullptr;
    ServiceTasks *m_tasks = nullptr;
    QList<NetworkAdapter> m_adapters;
    QString m_lastAddress;
    Lamp *m_lamp = nullptr;
    QLabel *m_state = nullptr;
    QPlainTextEdit *m_events = nullptr;
    bool m_isPortTyped = false;
    bool m_isAddressTyped = false;
    bool m_connected = false;
    QString m_stateText;
};

} // namespace ktr
