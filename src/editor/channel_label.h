#pragma once

#include <QLabel>

namespace ktr {

/// The caption of an input or output, with what the user calls it behind, as far as there is room: a long
/// name widens nothing. text() is the caption alone.
class ChannelLabel : public QLabel
{
    Q_OBJECT

public:
    using QLabel::QLabel;

    void setName(const QString &name);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString shown() const;

    QString m_name;
};

} // namespace ktr
