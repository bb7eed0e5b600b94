#include "editor/length_counter.h"

#include "link/command_sequence.h"

namespace ktr {

LengthCounter::LengthCounter(const QString &name, QWidget *parent) : QLabel(parent)
{
    setObjectName(name);
    setAlignment(Qt::AlignRight | Qt::AlignVCenter);
}

void LengthCounter::show(qsizetype length)
{
    m_length = length;
    applyTexts();
}

void LengthCounter::applyTexts()
{
    const bool fits = m_length <= longestCommand;
    setText(fits ? tr("%1 of %2").arg(m_length).arg(longestCommand)
                 : tr("%1 of %2: too long").arg(m_length).arg(longestCommand));
    setToolTip(
        tr("Characters of the command that is sent; a longer one does not fit an SMS and is not sent"));
}

} // namespace ktr
