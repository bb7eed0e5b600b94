#pragma once

#include "lang/text_table.h"
#include "opmode/operational_mode.h"

namespace ktr {

/// Acknowledges alarms at the user's word: those that were shown when the word was given, and no others.
class Acknowledging : public QObject
{
    Q_OBJECT

public:
    Acknowledging(OperationalMode &mode, const TextTable &texts, QObject *parent = nullptr);

    /// Only the red ones of these notifications.
    void acknowledge(QWidget *asker, const QModelIndexList &entries);
    /// The same; when they are several, the user is asked.
    void acknowledgeAll(QWidget *asker, const QModelIndexList &entries);
    /// Alarms by their numbers, without a question.
    void acknowledgeChosen(QWidget *asker, const QList<qint64> &alarms);
    /// The same; when they are several, the user is asked.
    void acknowledgeAlarms(QWidget *asker, const QList<qint64> &alarms);

Q_SIGNALS:
    void acknowledged();
    /// A line for the status bar: it failed, or nobody's name is kept with it.
    void statusMessage(const QString &line);

private:
    bool isAgreed(QWidget *asker, std::size_t count) const;
    void tell(QWidget *asker, const Status &done);

    OperationalMode &m_mode;
    const TextTable &m_texts;
};

} // namespace ktr
