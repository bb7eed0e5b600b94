#pragma once

#include "editor/page.h"

class QGridLayout;

namespace ktr {

class ChannelLabel;
class InputGrid;
class StripedCard;

/// The module's 18 channels, a row each: archiving, counting, start and output values, scaling.
class InputPage : public Page
{
    Q_OBJECT

public:
    explicit InputPage(EditorContext &context, QWidget *parent = nullptr);

    /// Gives the fields below the one that has the focus its value.
    void fillDown();

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    enum Column : int;

    void addHeader();
    void addRow(int channel);
    void addCounter(int channel);
    void addScaling(int channel);
    void addOutputValue(int channel);

    void place(QWidget *control, const FieldRef &field, int channel, Column column);
    QLineEdit *addLine(const FieldRef &field, int channel, Column column);
    QCheckBox *addCheck(const FieldRef &field, int channel, Column column);
    ChannelLabel *addUnit(const QString &name, int channel);

    QString caption(Column column) const;
    void filterInterval(QLineEdit *edit);
    void openScalingHelper();

    StripedCard *m_card;
    QGridLayout *m_grid;
    InputGrid *m_cells;
    int m_scaled = 0;         ///< the channel of the line edit that had the focus last; 0 for none
    bool m_filtering = false; ///< what the filter itself changes is not filtered again
};

} // namespace ktr
