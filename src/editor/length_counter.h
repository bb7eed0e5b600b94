#pragma once

#include <QLabel>

namespace ktr {

/// Tells how long a command has become, of the length that an SMS has room for.
class LengthCounter : public QLabel
{
    Q_OBJECT

public:
    LengthCounter(const QString &name, QWidget *parent);

    void show(qsizetype length);
    void applyTexts();

private:
    qsizetype m_length = 0;
};

} // namespace ktr
