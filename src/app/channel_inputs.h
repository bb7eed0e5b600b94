#pragma once

#include "foretell/module_play.h"
#include "lang/text_table.h"

#include <QWidget>

class QCheckBox;
class QLabel;
class QLineEdit;
class QSlider;
class QVBoxLayout;

namespace ktr {

/// The values that a slider reaches: those around the limits, and of a scaled channel those of 0 to 10 steps
/// of its signal.
std::pair<double, double> sliderRange(const Configuration &configuration, int channel);

/// One channel: its value by a slider and a field, or by a box where it has two states, and how the limit
/// values that watch it stand.
class ChannelInput : public QWidget
{
    Q_OBJECT

public:
    ChannelInput(int channel, QWidget *parent);

    int channel() const { return m_channel; }
    /// What takes the focus, in order.
    QList<QWidget *> controls() const;
    /// What belongs to the configuration: name, unit, range.
    void describe(const Configuration &configuration, const TextTable &texts);
    /// The value that the channel has; nothing: none yet.
    void showValue(const std::optional<double> &value);
    void showStates(const ModulePlay &play, const Configuration &configuration);

Q_SIGNALS:
    void valueGiven(int channel, double value);

private:
    void takeSlider(int position);
    void takeText();
    void showSignal();
    double shareToValue(int position) const;

    int m_channel;
    std::optional<double> m_value;
    std::pair<double, double> m_range{0, 1};
    double m_offset = 0;
    double m_factor = 0; ///< 0: the channel is not scaled
    QLabel *m_name;
    QLabel *m_unit;
    QLabel *m_states;
    QCheckBox *m_box;
    QSlider *m_slider;
    QLineEdit *m_field;
};

/// Those of all channels that limit values watch, and below them how combinations stand.
class ChannelInputs : public QWidget
{
    Q_OBJECT

public:
    explicit ChannelInputs(QWidget *parent);

    /// Tab goes from there to the first of them.
    void setTabStart(QWidget *before) { m_before = before; }
    void describe(const Configuration &configuration, const TextTable &texts);
    void showPlay(const ModulePlay &play, const Configuration &configuration);

Q_SIGNALS:
    void valueGiven(int channel, double value);

private:
    QList<ChannelInput *> m_inputs;
    QVBoxLayout *m_layout;
    QWidget *m_before = nullptr;
    QLabel *m_none;
    QLabel *m_combinations;
};

} // namespace ktr
