#pragma once

#include "lang/text_table.h"
#include "opmode/tree/station_tree.h"
#include "platform/status.h"

#include <QPointer>

#include <functional>

namespace ktr {

/// Acknowledges alarms at the user's word: those that were shown when the word was given, and no others.
class Acknowledging : public QObject
{
    Q_OBJECT

public:
    /// What puts it on the disk and shows it then; after a failure nothing is acknowledged.
    using CarryOut = std::function<Status(const QModelIndexList &entries)>;

    Acknowledging(const StationTree &tree, const TextTable &texts, CarryOut carryOut,
                  QObject *parent = nullptr);

    /// Only the red ones of these notifications.
    void acknowledge(QWidget *asker, const QModelIndexList &entries);
    /// The same; when they are several, the user is asked.
    void acknowledgeAll(QWidget *asker, const QModelIndexList &entries);

Q_SIGNALS:
    void acknowledged();
    /// A line for the status bar: it failed.
    void statusMessage(const QString &line);

private:
    const StationTree &m_tree;
    const TextTable &m_texts;
    CarryOut m_carryOut;
};

} // namespace ktr
