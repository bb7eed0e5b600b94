#pragma once

#include "lang/text_table.h"
#include "opmode/operational_mode.h"

#include <QWidget>

namespace ktr {

/// A page of the operational mode's window. It shows one station at a time, or nothing.
class OpmodePage : public QWidget
{
    Q_OBJECT

public:
    OpmodePage(OperationalMode &mode, const TextTable &texts, QWidget *parent = nullptr);

    /// Shows a station; with an empty key, or one that no station has any more, nothing.
    void showStation(const QString &kennung);
    const QString &kennung() const { return m_kennung; }

    /// Puts the captions of the text table in place; called again when the language changes.
    virtual void applyTexts() = 0;

Q_SIGNALS:
    /// A line for the status bar.
    void told(const QString &line);

protected:
    /// The chosen station is another one, or none.
    virtual void stationChosen() = 0;

    OperationalMode &mode() { return m_mode; }
    const OperationalMode &mode() const { return m_mode; }
    /// The chosen station, null for none.
    const cStation *station() const { return m_mode.station(m_kennung); }
    QString text(Text name) const { return m_texts.text(name); }

private:
    OperationalMode &m_mode;
    const TextTable &m_texts;
    QString m_kennung;
};

} // namespace ktr
