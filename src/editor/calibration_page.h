#pragma once

#include "editor/page.h"

class QGridLayout;
class QScrollBar;

namespace ktr {

/// Calibration of the two analog outputs at two reference points.
class CalibrationPage : public Page
{
    Q_OBJECT

public:
    explicit CalibrationPage(EditorContext &context, QWidget *parent = nullptr);

    /// What the module answered. The earlier ones can be scrolled back to.
    void confirm(const QString &text);

Q_SIGNALS:
    void commandPlaced(const QString &command);

private:
    QWidget *buttonsCard();
    QWidget *confirmationsCard();
    void addButton(QGridLayout *grid, int index);

    QScrollBar *m_scroll = nullptr;
    QLabel *m_done = nullptr;
    QStringList m_confirmations;
};

} // namespace ktr
