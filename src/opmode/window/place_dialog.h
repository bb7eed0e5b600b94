#pragma once

#include <QDialog>

class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace ktr {

class TextTable;

/// Asks where the stations are: in the list of this computer, which it watches itself, or in a record on a
/// database server, which keepers watch.
class PlaceDialog : public QDialog
{
    Q_OBJECT

public:
    /// `place` is where they are now, a list's path or an address.
    PlaceDialog(const QString &place, bool isFixed, const TextTable &texts, QWidget *parent = nullptr);

    /// Of the record that was chosen; empty for the list.
    QString address() const;
    QString addressBefore() const { return m_before; }

    void accept() override;

private:
    void showChoice();

    QString m_before;
    bool m_isFixed;
    QRadioButton *m_here;
    QRadioButton *m_server;
    QLineEdit *m_address;
    QLabel *m_remark;
    QPushButton *m_ok;
};

} // namespace ktr
