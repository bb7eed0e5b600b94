#pragma once

#include "platform/timers.h"

#include <QHash>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

class QLocalServer;
class QLocalSocket;

namespace ktr {

/// What an instance does that must not be ended without a word.
enum class Work {
    Watching = 1, ///< stations
    Transmitting = 2,
    Uploading = 4, ///< firmware
};
Q_DECLARE_FLAGS(Works, Work)
Q_DECLARE_OPERATORS_FOR_FLAGS(Works)

/// Lets the instances of the program that one user runs find each other by a name that they listen under
/// until they end. A new one asks the one that runs what it does, asks it to close, and sees it end; where
/// several run, because one of them did not answer in time, one after the other.
///
/// All signals come from the event loop, never from inside a socket's own: what they lead to may ask the
/// user.
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    /// An instance that answers nothing for this long is not waited for any longer.
    static constexpr Milliseconds longestSilence = std::chrono::seconds(10);
    /// What ends so often and is still there is no instance.
    static constexpr int mostEnds = 5;

    /// An empty name stands for this program and user. `works` tells what this instance does.
    explicit SingleInstance(
        Timers &timers, QString name = QString(), std::function<Works()> works = [] { return Works(); },
        QObject *parent = nullptr);
    ~SingleInstance() override;

    /// Begins to listen. False when another instance is there; this one is then connected to it. Where nobody
    /// can listen that counts as done: the program runs without it. Takes up to a second when others start at
    /// the same time, else up to 200 ms.
    bool claim();
    /// The other instance does not answer: claim() is not to look for it again.
    void passOver();
    /// Something was passed over because it ended whenever it was asked.
    bool metStranger() const { return m_metStranger; }
    bool isClaimed() const;

    /// To the other instance, after claim() was false. Its first answer is otherAnswered(), again when it
    /// does something else, and after that it has to give a sign of life now and then; otherSilent() or
    /// otherEnded() is the last that is heard of it.
    void askWhatOtherDoes();
    void askOtherToClose();
    void askOtherToFront();

Q_SIGNALS:
    void otherAnswered(ktr::Works works);
    void otherSilent();
    void otherEnded();

    /// A new instance asks this one to close, and to bring forward what it asks the user.
    void closeRequested();
    void frontRequested();

private:
    bool findOther();
    bool connectTo(const QString &name);
    void ping();
    void waitForSign();
    void heard();
    void lost();
    void forgetOther();
    void greet();
    void answer(QLocalSocket *asker);

    QString m_name;
    std::function<Works()> m_works;
    QLocalServer *m_server;
    std::unique_ptr<QLocalSocket> m_other;
    QString m_otherName;
    std::optional<Works> m_otherWorks; ///< its last answer
    QStringList m_passedOver;
    QHash<QString, int> m_ends;
    bool m_metStranger = false;
    std::unique_ptr<OneShotTimer> m_ping;
    std::unique_ptr<OneShotTimer> m_silence;
};

} // namespace ktr
