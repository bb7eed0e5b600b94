#pragma once

#include "config/channel_names.h"
#include "lang/text_table.h"

#include <QDialog>

class QTableWidget;

namespace ktr {

/// Edits what the user calls the inputs and outputs, and the units of their values.
class NamesWindow : public QDialog
{
    Q_OBJECT

public:
    NamesWindow(const ChannelNames &names, const TextTable &texts, QWidget *parent = nullptr);

Q_SIGNALS:
    /// OK was pressed.
    void chosen(const ktr::ChannelNames &names);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    ChannelNames names() const;
    void pasteBlock();

    QTableWidget *m_table;
};

} // namespace ktr
