#pragma once

#include <QWidget>

namespace ktr {

/// The signal quality as five bars, as on a telephone.
class QualityBars : public QWidget
{
    Q_OBJECT

public:
    explicit QualityBars(QWidget *parent = nullptr);

    /// As the module reports it ("18,0": 0 to 31 in front of the comma, 99 is unknown).
    void show(const QString &csq);

    static constexpr int bars = 5;
    /// How many bars a report fills, nothing when it is unknown.
    static std::optional<int> filled(const QString &csq);
    /// "-77 dBm", empty when it is unknown.
    static QString decibels(const QString &csq);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    std::optional<int> m_filled;
};

} // namespace ktr
