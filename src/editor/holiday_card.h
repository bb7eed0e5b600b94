#pragma once

#include "editor/editor_context.h"

#include <QGroupBox>

class QLineEdit;
class QListWidget;
class QPushButton;

namespace ktr {

class DatePicker;

/// The dates on which switch points of the holiday types apply. Adding one is an edit; removing, clearing
/// and loading can be undone but do not mark the configuration modified.
class HolidayCard : public QGroupBox
{
    Q_OBJECT

public:
    /// `shownEntry` is the entry of the page around it, which undoing leaves shown.
    HolidayCard(EditorContext &context, std::function<int()> shownEntry, QWidget *parent = nullptr);

    void applyTexts();
    void showRecords();
    /// The page was chosen: proposes today.
    void entered();

private:
    QPushButton *button(const QString &name, void (HolidayCard::*action)());
    void add();
    void remove(int row);
    void clear();
    void load();
    void save();

    const HolidayList &holidays() const { return m_context.document.configuration().holidays; }
    EditPlace newStep();
    QDateTime typedDate() const;

    EditorContext &m_context;
    std::function<int()> m_shownEntry;
    QLineEdit *m_date;
    DatePicker *m_calendar;
    QListWidget *m_list;
    QPushButton *m_add;
    QPushButton *m_clear;
    QPushButton *m_load;
    QPushButton *m_save;
};

} // namespace ktr
