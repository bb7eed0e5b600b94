#pragma once

#include "platform/timers.h"

#include <QObject>
#include <QString>

class QLocalServer;
class QLocalSocket;

namespace ktr {

/// Lets the instances of the program that one user runs find each other by a name that one of them listens on
/// until it ends. A new one asks the one that runs what it does, asks it to close, and sees it end.
///
/// All signals come from the event loop, never from inside a socket's own: what they lead to may ask the
/// user.
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    /// An instance that answers nothing for this long is not waited for any longer.
    static constexpr Milliseconds longestSilence = std::chrono::seconds(10);

    /// An empty name stands for this program and user. `watches` tells whether this instance watches
    /// stations.
    explicit SingleInstance(
        Timers &timers, QString name = QString(), std::function<bool()> watches = [] { return false; },
        QObject *parent = nullptr);
    ~SingleInstance() override;

    /// Takes the name. False when another instance holds it; this one is then connected to it. A name that
    /// cannot be had for another reason counts as taken: the program runs without it. Takes up to a second
    /// when others start at the same time, else up to 200 ms.
    bool claim();
    /// Takes the name from an instance that does not answer.
    void claimFromSilent();
    bool isClaimed() const;

    /// To the other instance, after claim() was false. Its first answer is otherAnswered(), and after that it
    /// has to give a sign of life now and then; otherSilent() or otherEnded() is the last that is heard of
    /// it.
    void askWhatOtherDoes();
    void askOtherToClose();
    void askOtherToFront();

Q_SIGNALS:
    void otherAnswered(bool watches);
    void otherSilent();
    void otherEnded();

    /// A new instance asks this one to close, and to bring forward what it asks the user.
    void closeRequested();
    void frontRequested();

private:
    bool findOther();
    void listen();
    void ping();
    void waitForSign();
    void heard();
    void lost();
    void forgetOther();
    void greet();
    void answer(QLocalSocket *asker);

    QString m_name;
    std::function<bool()> m_watches;
    QLocalServer *m_server;
    std::unique_ptr<QLocalSocket> m_other;
    bool m_hasAnswered = false;
    std::unique_ptr<OneShotTimer> m_ping;
    std::unique_ptr<OneShotTimer> m_silence;
};

} // namespace ktr
