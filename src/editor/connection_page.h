#pragma once

#include "editor/page.h"

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

    /// The serial ports to offer, beside the search over all of them. What was chosen or typed stays.
    void setPorts(const QStringList &ports);
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
    QString chosenPort() const;
    void showState();

    QComboBox *m_ports = nullptr;
    QLineEdit *m_address = nullptr;
    Lamp *m_lamp = nullptr;
    QLabel *m_state = nullptr;
    QPlainTextEdit *m_events = nullptr;
    bool m_connected = false;
    QString m_stateText;
};

} // namespace ktr
