#pragma once

#include <QProcess>
#include <QProcessEnvironment>

namespace ktr::test {

/// A virtual module, or what watches some, in a process of its own: ktrcli with these words.
class ModuleProcess
{
public:
    explicit ModuleProcess(const QStringList &words, const QString &firstEvent = QStringLiteral("listening"),
                           const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment())
    {
        m_process.setProcessChannelMode(QProcess::MergedChannels);
        m_process.setProcessEnvironment(environment);
        m_process.start(QStringLiteral(KTRCLI), words);
        await(firstEvent);
    }
    ~ModuleProcess() { terminate(); }
    bool await(const QString &event)
    {
        while (!m_output.contains(event)) {
            if (!m_process.waitForReadyRead(60000)) {
                return false;
            }
            m_output += QString::fromUtf8(m_process.readAll());
        }
        return true;
    }
    /// Of one that ends by itself.
    int exitCode()
    {
        m_process.waitForFinished(60000);
        return m_process.exitCode();
    }
    /// Where it listens, as it tells.
    QString address() const
    {
        return m_output.section(QStringLiteral("listening at "), 1).section(u'\n', 0, 0);
    }
    const QString &output() const { return m_output; }
    qint64 id() const { return m_process.processId(); }
    bool terminate()
    {
        m_process.terminate();
        m_process.waitForFinished();
        return m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0;
    }

private:
    QProcess m_process;
    QString m_output;
};

} // namespace ktr::test
