#include "editor/ethernet_page.h"

#include "config/address.h"
#include "look/select_on_focus.h"

#include <QCoreApplication>
#include <QFocusEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>

#include <algorithm>

namespace ktr {

namespace {

/// The focus went to another control; a menu or another window gives it back.
bool leavesForGood(Qt::FocusReason reason)
{
    return reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason &&
           reason != Qt::MenuBarFocusReason;
}

std::optional<Text> messageOf(AddressDefect defect)
{
    switch (defect) {
    case AddressDefect::None:
        break;
    case AddressDefect::NoDots:
        return Text::AddressWithoutDots;
    case AddressDefect::NotFourNumbers:
        return Text::AddressNotFourNumbers;
    case AddressDefect::NumberOutOfRange:
        return Text::AddressNumberOutOfRange;
    }
    return std::nullopt;
}

} // namespace

EthernetPage::EthernetPage(EditorContext &context, QWidget *parent) : Page(context, parent)
{
    auto *layout = new QHBoxLayout(this);
    auto *card = captioned(new QGroupBox(this), Text::Ethernet);
    card->setMaximumWidth(560);
    auto *grid = new QGridLayout(card);
    grid->setColumnStretch(1, 1);
    addAddress(grid, &EthernetSettings::ip);
    addAddress(grid, &EthernetSettings::subnet);
    addMac(grid);
    layout->addWidget(card, 1, Qt::AlignTop);
    layout->addStretch();
}

QLineEdit *EthernetPage::addAddress(QGridLayout *grid, QString EthernetSettings::*member)
{
    QLineEdit *edit = addLine(grid, fieldRef(&Configuration::ethernet, member));
    edit->setMaximumWidth(240);
    edit->installEventFilter(this);
    m_addresses.push_back(edit);
    return edit;
}

void EthernetPage::addMac(QGridLayout *grid)
{
    auto *bytes = new QHBoxLayout;
    const int count = static_cast<int>(macBytes(configuration().ethernet).size());
    for (int index = 0; index < count; ++index) {
        if (index > 0) {
            bytes->addWidget(new QLabel(QStringLiteral("-"), this));
        }
        m_macBytes.push_back(addMacByte(index));
        bytes->addWidget(m_macBytes.back());
    }
    bytes->addStretch();
    auto *label = captioned(new QLabel(this), fieldRef(&Configuration::ethernet, &EthernetSettings::mac3));
    label->setBuddy(m_macBytes[EthernetSettings::makerBytes.size()]);
    const int row = grid->rowCount();
    grid->addWidget(label, row, 0);
    grid->addLayout(bytes, row, 1);
}

QLineEdit *EthernetPage::addMacByte(int index)
{
    static constexpr std::array own = {&EthernetSettings::mac3, &EthernetSettings::mac4,
                                       &EthernetSettings::mac5};
    constexpr std::size_t fixed = EthernetSettings::makerBytes.size();
    const auto at = static_cast<std::size_t>(index);

    auto *edit = new QLineEdit(this);
    edit->setAlignment(Qt::AlignCenter);
    edit->setFixedWidth(44);
    onTexts([this, edit, index] {
        edit->setAccessibleName(text(Text::Mac) + u' ' + QString::number(index + 1));
    });
    if (at < fixed) {
        edit->setObjectName(QStringLiteral("Txt_Ethernet_MAC_%1").arg(index));
        edit->setText(QString::fromUtf16(EthernetSettings::makerBytes[at]));
        edit->setEnabled(false);
        tip(edit, [] { return tr("The maker's part of the address; it is the same in every module"); });
        return edit;
    }
    const FieldRef field = fieldRef(&Configuration::ethernet, own[at - fixed]);
    binder().line(edit, field);
    selectAllOnFocus(edit);
    tip(edit, field);
    onRecords([this, edit] { edit->setEnabled(context().expert); });
    // The binder shows records without signals, so that these are the user's changes.
    connect(edit, &QLineEdit::textChanged, this, [edit](const QString &byte) {
        if (byte.size() == 2 && edit->hasFocus()) {
            QKeyEvent tab(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
            QCoreApplication::sendEvent(edit, &tab);
        }
    });
    return edit;
}

bool EthernetPage::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusOut && std::ranges::find(m_addresses, watched) != m_addresses.end() &&
        leavesForGood(static_cast<QFocusEvent *>(event)->reason())) {
        // A faulty address stays as it is: it may be what a module needs, and the field is marked.
        if (const auto message = messageOf(addressDefect(static_cast<QLineEdit *>(watched)->text()))) {
            context().showMessage(text(*message));
        }
    }
    return Page::eventFilter(watched, event);
}

} // namespace ktr
