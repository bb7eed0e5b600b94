#pragma once

#include "editor/page.h"

namespace ktr {

/// Address, subnet mask and MAC address of the module.
class EthernetPage : public Page
{
    Q_OBJECT

public:
    explicit EthernetPage(EditorContext &context, QWidget *parent = nullptr);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QLineEdit *addAddress(QGridLayout *grid, QString EthernetSettings::*member);
    void addMac(QGridLayout *grid);
    QLineEdit *addMacByte(int index);

    std::vector<QLineEdit *> m_addresses;
    std::vector<QLineEdit *> m_macBytes;
};

} // namespace ktr
