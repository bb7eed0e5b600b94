#pragma once

#include <QWidget>

namespace ktr {

/// A round lamp that is green while a module is heard. Dark, it is an empty ring, so that nobody needs to
/// tell colours apart. Its background colour tells the state, too.
class Lamp : public QWidget
{
    Q_OBJECT

public:
    explicit Lamp(QWidget *parent = nullptr);

    /// `meaning` is the tool tip, which screen readers read, too.
    void show(bool lit, const QString &meaning);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    bool m_lit = false;
};

} // namespace ktr
