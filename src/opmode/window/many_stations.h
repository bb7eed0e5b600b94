#pragma once

#include <QObject>
#include <QStringList>
#include <QTimer>

#include <functional>

namespace ktr {

/// Does the same with many stations, one after the other, in slices of some milliseconds: the window answers
/// and modules are heard meanwhile. The first slice is done at once. What could not be done is collected.
class ManyStations : public QObject
{
    Q_OBJECT

public:
    struct Job
    {
        QString doing; ///< what goes on, in words
        /// Does it with a station; why not, or empty when it is done.
        std::function<QString(const QString &kennung)> act;
        std::function<void(int done)> finished = [](int) {};
    };

    explicit ManyStations(QObject *parent = nullptr);

    /// Only while isIdle().
    void start(const QStringList &stations, Job job);
    bool isIdle() const { return m_next == m_stations.size(); }
    /// Leaves out the stations whose turn has not come.
    void stop();
    const QString &doing() const { return m_job.doing; }
    /// Of the last job: each with the reason.
    const QStringList &failures() const { return m_failures; }

Q_SIGNALS:
    void progressed(int done, int all);
    /// Job::finished() was called.
    void finished();

private:
    void work();

    QStringList m_stations;
    Job m_job;
    qsizetype m_next = 0;
    int m_done = 0;
    QStringList m_failures;
    QTimer m_timer;
};

} // namespace ktr
