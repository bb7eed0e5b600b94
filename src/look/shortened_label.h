#pragma once

#include <QLabel>

namespace ktr {

/// A line of text that takes the room it is given and is shortened to it, with "…" at its end, whenever that
/// room changes; the tool tip and the accessible name have all of it.
class ShortenedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ShortenedLabel(QWidget *parent = nullptr);

    void tell(const QString &line);

protected:
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void shorten();

    QString m_line;
};

} // namespace ktr
