#pragma once

#include "lang/text_table.h"
#include "opmode/operational_mode.h"

#include <QWidget>

class QLabel;
class QStackedWidget;

namespace ktr {

/// A page of the operational mode's window. It shows one station at a time, or nothing.
class OpmodePage : public QWidget
{
    Q_OBJECT

public:
    OpmodePage(OperationalMode &mode, const TextTable &texts, QWidget *parent = nullptr);
    /// What the page consists of goes later, one by one, and tells nobody of what changes with that.
    ~OpmodePage() override;

    /// Shows a station; with an empty key, or one that no station has any more, nothing.
    void showStation(const QString &kennung);
    const QString &kennung() const { return m_kennung; }

    /// Puts the captions of the text table in place; called again when the language changes.
    virtual void applyTexts() = 0;

    /// Brings an entry under the page's node of the station into view.
    virtual void showEntry(const QModelIndex &) {}

Q_SIGNALS:
    /// A line for the status bar.
    void statusMessage(const QString &line);

protected:
    /// The chosen station is another one, or none.
    virtual void stationChosen() = 0;
    /// The chosen station has another name.
    virtual void stationRenamed() {}
    /// What the user calls the chosen station.
    QString stationName() const;

    /// Removes entries from the tree if the user agrees to the question.
    void removeEntries(const QModelIndexList &entries, const QString &question);

    OperationalMode &mode() { return m_mode; }
    const OperationalMode &mode() const { return m_mode; }
    /// The chosen station, null for none.
    const cStation *station() const { return m_mode.station(m_kennung); }
    QString text(Text name) const { return m_texts.text(name); }
    const TextTable &texts() const { return m_texts; }

private:
    OperationalMode &m_mode;
    const TextTable &m_texts;
    QString m_kennung;
};

/// A page that has the station's name as its heading, and says in words when there is nothing to show.
class HeadedPage : public OpmodePage
{
    Q_OBJECT

public:
    HeadedPage(OperationalMode &mode, const TextTable &texts, QWidget *parent = nullptr);

protected:
    void stationRenamed() override;

    QLabel *heading() { return m_heading; }
    void setContent(QWidget *content);
    /// Shows the heading and the content, or, where there is a text, that in their place.
    void showContent(const QString &otherwise = {});

private:
    QStackedWidget *m_stack;
    QLabel *m_empty;
    QLabel *m_heading;
};

} // namespace ktr
