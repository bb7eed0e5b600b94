#pragma once

#include "editor/page.h"

class QComboBox;
class QGroupBox;
class QLabel;

namespace ktr {

class EntryChooser;
class HolidayCard;
class SwitchPointModel;

/// The twenty switch points, one at a time, and the holidays.
class SwitchPointPage : public Page
{
    Q_OBJECT

public:
    explicit SwitchPointPage(EditorContext &context, QWidget *parent = nullptr);

    void entered() override;
    bool hasEntries() const override { return true; }
    void showEntry(int entry) override;
    int shownEntry() const override { return entry(); }
    EntryChooser *entryChooser() const override { return m_chooser; }
    void setProblems(const QList<Problem> &problems) override;

private:
    QWidget *entryFrame();

    int entry() const;
    const SwitchPoint &shown() const;
    FieldRef field(Member<SwitchPoint> member) const;

    void load();
    void showItems();
    void showKind();
    void showMeanings();

    SwitchPointModel *m_model;
    EntryChooser *m_chooser;
    HolidayCard *m_holidays = nullptr;
    QGroupBox *m_frame = nullptr;
    QComboBox *m_target = nullptr;
    QComboBox *m_type = nullptr;
    QComboBox *m_limitValue = nullptr;
    QLabel *m_meaning = nullptr;             ///< of a type whose item reads like another one
    std::vector<QWidget *> m_forLimitValues; ///< shown for the types that react to a limit value
    std::vector<QWidget *> m_forTimes;       ///< shown for all other types
    std::vector<QWidget *> m_forPeriods;
};

} // namespace ktr
