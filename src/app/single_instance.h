#pragma once

#include "platform/status.h"
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

/// Work of an instance that must not be ended without a question.
enum class Work {
    Watching = 1, ///< stations
    Transmitting = 2,
    Uploading = 4, ///< firmware
};
Q_DECLARE_FLAGS(Works, Work)
Q_DECLARE_OPERATORS_FOR_FLAGS(Works)

/// Lets the instances of the program that one user runs find each other: until it ends, each listens on a
/// socket of its own in a common place. A new instance asks the running one what it is doing, asks it to
/// close, and notices its end. If several run, because one did not answer in time, it goes through them one
/// by one.
///
/// Signals always come from the event loop, never from inside a signal of a socket: receivers may ask the
/// user.
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    /// An instance that does not answer for this long is given up.
    static constexpr Milliseconds longestSilence = std::chrono::seconds(10);
    /// Something that ended so often and is still there is no instance.
    static constexpr int mostEnds = 5;

    /// An empty name stands for this program and user. `works` returns what this instance is doing.
    explicit SingleInstance(
        Timers &timers, QString name = QString(), std::function<Works()> works = [] { return Works(); },
        QObject *parent = nullptr);
    ~SingleInstance() override;

    /// Asks whoever listens under a name to show its windows.
    static void bringToFront(const QString &name);

    /// Starts to listen. False when another instance is there; this one is then connected to it. True as well
    /// when listening is impossible: the program runs without it. Takes up to a second when others start at
    /// the same time, otherwise up to 200 ms.
    bool claim();
    /// The other instance does not answer: nothing more is heard of it, and claim() will not look for it
    /// again.
    void passOver();
    /// Whether something was skipped because it ended each time it was asked.
    bool metStranger() const { return m_metStranger; }
    bool isClaimed() const;
    /// What keeps instances from finding each other; known after claim().
    const Status &trouble() const { return m_trouble; }

    /// Questions to the other instance, after claim() was false. Its answers come as otherAnswered(), a new
    /// one whenever its work changes. From then on it has to give signs of life; otherSilent() or
    /// otherEnded() is the last that is heard of it.
    void askWhatOtherDoes();
    void askOtherToClose();
    void askOtherToFront();

Q_SIGNALS:
    void otherAnswered(ktr::Works works);
    void otherSilent();
    void otherEnded();

    /// A new instance asks this one to close, and to bring its question to the front.
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
    Status m_trouble = Status::done();
    std::unique_ptr<OneShotTimer> m_ping;
    std::unique_ptr<OneShotTimer> m_silence;
};

} // namespace ktr
