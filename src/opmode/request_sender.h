#pragma once

#include "opmode/request.h"
#include "platform/environment.h"
#include "record/record_reader.h"
#include "record/request_writer.h"

#include <QObject>

#include <deque>

namespace ktr {

/// Sends requests to the program that keeps a list, and reports those that are not carried out.
class RequestSender : public QObject
{
    Q_OBJECT

public:
    /// The keeper of the list does not carry out older requests, in ms.
    static constexpr qint64 patienceMs = 30'000;

    RequestSender(const QString &recordPath, const Environment &environment, QObject *parent = nullptr);

    void send(const Request &request, const QString &operatorName);
    /// Those that have no answer yet.
    QList<qint64> awaited() const;
    /// What became of some, or none: to be called now and then, since patience ends.
    void take(const QHash<qint64, QString> &answers);

Q_SIGNALS:
    /// What was asked for and was not done, and why.
    void statusMessage(const QString &line);

private:
    struct Sent
    {
        qint64 id;
        qint64 at;
    };
    void fail(const QString &why);

    const Environment &m_environment;
    std::deque<Sent> m_sent; ///< without an answer, by their numbers
    RequestWriter m_writer;
};

} // namespace ktr
