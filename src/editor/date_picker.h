#pragma once

#include <QDateTime>
#include <QList>
#include <QToolButton>

#include <functional>

namespace ktr {

struct EditorContext;

/// A button beside a text field that opens a calendar on which the configuration's holidays are marked, with
/// a time below it where one is wanted. It only proposes: who owns the field writes what was picked into it.
class DatePicker : public QToolButton
{
    Q_OBJECT

public:
    enum class Picks { Date, DateAndTime };

    /// `present` gives what the calendar begins with; an invalid time stands for now.
    DatePicker(const QString &name, Picks picks, EditorContext &context, std::function<QDateTime()> present,
               QWidget *parent);

    void applyTexts();

Q_SIGNALS:
    void picked(const QDateTime &when);

private:
    void open();

    Picks m_picks;
    EditorContext &m_context;
    std::function<QDateTime()> m_present;
};

} // namespace ktr
