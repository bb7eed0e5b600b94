#pragma once

#include "opmode/entry_removal.h"

namespace ktr {

/// How many days entries and rows are kept; 0: for ever.
struct RetentionRules
{
    int tree = 0;   ///< entries in the tree and in the list's file; they stay in the record
    int events = 0; ///< in the record, as the following
    int alarms = 0;
    int history = 0;
    int values = 0;
    bool operator==(const RetentionRules &) const = default;
};

/// Under this name the record has them.
inline QString retentionSetting()
{
    return QStringLiteral("retention");
}
QString toJson(const RetentionRules &rules);
/// What cannot be read stays for ever.
RetentionRules retentionRules(const QString &json);

/// Removes what is older than the rules say: from the record by its writer, from the tree in slices that
/// nobody notices. What waits to be acknowledged stays, and what has no time.
class Thinning
{
public:
    static constexpr Milliseconds pause{100};
    /// The most entries that a slice looks at, and removes.
    static constexpr std::size_t mostLookedAt = 5000;
    static constexpr int mostRemoved = 200;
    /// Only every so many checks the record is thinned out, too.
    static constexpr int checksBetweenRecords = 60;

    /// All must outlive it.
    Thinning(StationTree &tree, Timers &timers, EntryRemoval &removal);

    const RetentionRules &rules() const { return m_rules; }
    /// Takes effect with the next check.
    void setRules(const RetentionRules &rules);
    enum class Of { All, Tree };
    /// To be called once a minute. The record may be for another program to thin out.
    void check(const QDateTime &now, ListRecord &record, Of what = Of::All);
    void stop();
    /// How many entries of the tree are older than so many days. Looks at all of them.
    qint64 countOlder(const QDateTime &now, int days) const;

private:
    struct Limit
    {
        qint64 moment;
        qint64 minute; ///< the same as minutes of module time
    };
    static Limit limitOf(const QDateTime &now, int days);
    void slice();
    bool isOld(NodeStore::Id entry, const Limit &limit) const;
    const std::vector<NodeStore::Id> *branch(std::size_t which) const;

    StationTree &m_tree;
    EntryRemoval &m_removal;
    std::unique_ptr<OneShotTimer> m_timer;
    RetentionRules m_rules;
    int m_checks = 0; ///< until the record's turn
    Limit m_limit{};
    std::size_t m_branch = 0; ///< two for each station
    std::size_t m_entry = 0;  ///< in the branch
};

} // namespace ktr
