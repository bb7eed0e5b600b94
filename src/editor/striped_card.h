#pragma once

#include <QGroupBox>

class QGridLayout;

namespace ktr {

/// A card with a grid in which every second row has a tint, so that the eye stays in a long row.
class StripedCard : public QGroupBox
{
    Q_OBJECT

public:
    /// The rows above `firstStriped` are the header's.
    explicit StripedCard(int firstStriped, QWidget *parent = nullptr);

    QGridLayout *grid() const { return m_grid; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QGridLayout *m_grid;
    int m_firstStriped;
};

} // namespace ktr
