#pragma once

#include "lang/text_table.h"
#include "opmode/alarm_centre.h"
#include "opmode/window/acknowledging.h"

#include <QLocale>
#include <QWidget>

class QCheckBox;
class QLabel;
class QPushButton;

namespace ktr {

/// Stands under the menu bar as long as an alarm is not acknowledged, and tells how many, the first and the
/// latest. It takes no focus when it comes and is as high with one alarm as with thousands.
class AlarmBar : public QWidget
{
    Q_OBJECT

public:
    AlarmBar(const AlarmCentre &centre, const AlarmBook &alarms, Acknowledging &acknowledging,
             const TextTable &texts, QWidget *parent = nullptr);

    /// Puts the captions in place; called again when the language changes.
    void applyTexts();
    /// What the check box shows.
    void setMuted(bool muted);
    /// Whether alarms can be acknowledged, or why not.
    void setAcceptable(const QString &why);

Q_SIGNALS:
    /// All alarms were, by a key: the focus is to go on elsewhere.
    void accepted();
    /// The user wants to see all alarms.
    void allWanted();
    /// The user wants to see an alarm of a station.
    void entryWanted(const QString &kennung, const QModelIndex &entry);
    /// The user does not want the alarms' sound for a while, or wants it again.
    void muteWanted(bool muted);

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    using Lines = QStringList; ///< always two

    QWidget *createLines();
    void takeColours();
    void refresh();
    void elide();
    void fit();
    void announce();
    void goToLatest();
    void acknowledgeAll();
    QString line(const Alarm &alarm, bool withTime) const;

    const AlarmCentre &m_centre;
    const AlarmBook &m_alarms;
    Acknowledging &m_acknowledging;
    const TextTable &m_texts;
    QLabel *m_icon;
    QLabel *m_headline;
    QLabel *m_lines[2];
    Lines m_full{QString(), QString()};
    Lines m_short{QString(), QString()}; ///< without the time
    QPushButton *m_all;
    QPushButton *m_latest;
    QPushButton *m_accept;
    QCheckBox *m_mute;
};

} // namespace ktr
