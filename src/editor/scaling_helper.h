#pragma once

#include "editor/editor_context.h"

#include <QDialog>

#include <array>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace ktr {

/// Finds offset and factor of an analog channel by two points that are known: the signal, and the value that
/// is to stand for it. Both fields are changed together, as one step of the history.
class ScalingHelper : public QDialog
{
    Q_OBJECT

public:
    /// `index` is the scaling to begin with, from 0.
    ScalingHelper(EditorContext &context, int index, QWidget *parent = nullptr);

private:
    void layOut();
    void showResult();
    void takeOver();

    EditorContext &m_context;
    QComboBox *m_channel;
    std::array<QLineEdit *, 2> m_signals{};
    std::array<QLineEdit *, 2> m_values{};
    QLabel *m_result;
    QPushButton *m_take;
    QString m_offset;
    QString m_factor;
};

} // namespace ktr
