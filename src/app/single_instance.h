#pragma once

#include "platform/timers.h"

#include <QObject>
#include <QString>

class QLocalServer;
class QLocalSocket;

namespace ktr {

/// Lets the instances of the program that one user runs find each other, by a name that one of them listens
/// on: a new one asks the one that runs to close and takes the name over.
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    /// An empty name stands for this program and user.
    explicit SingleInstance(Timers &timers, QString name = QString(), QObject *parent = nullptr);
    ~SingleInstance() override;

    /// Another instance holds the name. Takes up to 200 ms.
    bool otherIsRunning() const;

    /// Does nothing when no other is running. Takes up to 400 ms and does not wait for the other to close.
    void askOtherToClose() const;

    /// Takes the name, now or once the other instance has given it up, which is looked for once a second.
    void claim();

    /// This instance holds the name.
    bool isClaimed() const;

Q_SIGNALS:
    /// Another instance asked this one to close; the name is free for it already.
    void closeRequested();

private:
    bool connectTo(QLocalSocket &other) const;
    void greet();
    void read(QLocalSocket *other);

    QString m_name;
    QLocalServer *m_server;
    std::unique_ptr<OneShotTimer> m_retry;
};

} // namespace ktr
