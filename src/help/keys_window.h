#pragma once

#include "help/key_list.h"

#include <QDialog>

class QLabel;
class QLineEdit;
class QTreeWidget;

namespace ktr {

/// All keys of the program, which can be searched for a command or for a key.
class KeysWindow : public QDialog
{
    Q_OBJECT

public:
    explicit KeysWindow(const QList<KeyEntry> &keys, QWidget *parent);

private:
    void fill();

    QList<KeyEntry> m_keys;
    QLineEdit *m_search;
    QTreeWidget *m_list;
    QLabel *m_count;
};

} // namespace ktr
