#pragma once

#include <QLabel>

namespace ktr {

/// Says in a window, in red, what went wrong; hidden while there is nothing to say.
class ProblemLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ProblemLabel(QWidget *parent = nullptr);

    /// An empty text hides it.
    void tell(const QString &problem);

protected:
    void changeEvent(QEvent *event) override;

private:
    void takeColour();
};

} // namespace ktr
