#include "opmode/request_sender.h"

#include "record/json_text.h"

namespace ktr {

RequestSender::RequestSender(const QString &recordPath, const Environment &environment, QObject *parent)
    : QObject(parent), m_environment(environment), m_writer(recordPath)
{}

void RequestSender::send(const Request &request, const QString &operatorName)
{
    const qint64 now = m_environment.now().toMSecsSinceEpoch();
    m_writer.write({0, now, operatorName, request.what, jsonText(request.about)},
                   [this, now](const Status &written, qint64 id) {
                       if (written) {
                           m_sent.push_back({id, now});
                       } else {
                           fail(written.message());
                       }
                   });
}

QList<qint64> RequestSender::awaited() const
{
    QList<qint64> numbers;
    for (const Sent &sent : m_sent) {
        numbers += sent.id;
    }
    return numbers;
}

void RequestSender::take(const QHash<qint64, QString> &answers)
{
    const qint64 now = m_environment.now().toMSecsSinceEpoch();
    std::erase_if(m_sent, [&](const Sent &sent) {
        if (const auto answer = answers.constFind(sent.id); answer != answers.cend()) {
            if (!answer->isEmpty()) {
                fail(*answer);
            }
            return true;
        }
        const bool isOver = now - sent.at > patienceMs;
        if (isOver) {
            fail(tr("the program that watches the stations did not answer"));
        }
        return isOver;
    });
}

void RequestSender::fail(const QString &why)
{
    Q_EMIT statusMessage(tr("Not done: %1").arg(why));
}

} // namespace ktr
