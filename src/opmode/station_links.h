#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

namespace ktr {

/// Which configuration file is which station's, as the user chose: the text of "nodes.links". What cannot be
/// understood, and remarks, stay in it as they are.
class StationLinks
{
public:
    StationLinks() = default;
    /// Of text in UTF-8. Files are named from `folder` on; empty: they have to be absolute. What cannot be
    /// understood is told in a remark.
    static StationLinks parse(const QByteArray &text, const QString &folder, QStringList &remarks);
    QByteArray text() const;

    /// The absolute path; an empty one where the user wants none; nothing where he chose nothing.
    std::optional<QString> fileOf(const QString &station) const;
    /// Nothing takes the choice back.
    void set(const QString &station, const std::optional<QString> &file);
    /// A station is called otherwise now. Gives whether it had a choice.
    bool rename(const QString &before, const QString &now);
    QStringList files() const; ///< absolute, without the empty ones

    bool operator==(const StationLinks &) const = default;

private:
    struct Line
    {
        QString station; ///< empty: the text says nothing of a station
        QString text;    ///< as it stands in the file
        bool operator==(const Line &) const = default;
    };
    qsizetype lineOf(const QString &station) const;
    QString lineText(const QString &station, const QString &file) const;

    QString m_folder;
    QList<Line> m_lines;
    QHash<QString, QString> m_files; ///< by station
};

/// A line break in a name has no place there.
bool canBeLinked(const QString &file);

} // namespace ktr
