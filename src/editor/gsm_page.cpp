#include "editor/gsm_page.h"

#include "config/channels.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>

namespace ktr {

GsmPage::GsmPage(EditorContext &context, QWidget *parent) : Page(context, parent)
{
    auto *layout = new QHBoxLayout(this);
    layout->addWidget(stationCard(), 2, Qt::AlignTop);
    layout->addWidget(administratorsCard(), 3, Qt::AlignTop);
}

QWidget *GsmPage::stationCard()
{
    auto *card = captioned(new QGroupBox(this), Text::Station);
    auto *grid = new QGridLayout(card);

    auto *id = new QLineEdit(card);
    binder().line(id, fieldRef(&Configuration::gsm, &GsmSettings::stationId));
    tip(id, [] { return tr("Name under which the module reports; ä, ö, ü and ß become ae, oe, ue and ss"); });
    addRow(grid, Text::StationId, id);

    auto *type = new QComboBox(card);
    type->addItems(stationTypes());
    binder().item(type, fieldRef(&Configuration::gsm, &GsmSettings::stationType));
    addRow(grid, Text::Type, type);

    auto *pin = new QLineEdit(card);
    binder().line(pin, fieldRef(&Configuration::gsm, &GsmSettings::pin));
    tip(pin, [] { return tr("PIN of the SIM card, 4 to 8 digits"); });
    addRow(grid, Text::Pin, pin);

    auto *alive = new QLineEdit(card);
    binder().line(alive, fieldRef(&Configuration::gsm, &GsmSettings::aliveCycle));
    tip(alive, [] { return tr("Whole number from 0 to 32767"); });
    addRow(grid, Text::AliveCycle, alive);
    return card;
}

QWidget *GsmPage::administratorsCard()
{
    auto *card = captioned(new QGroupBox(this), Text::Admin);
    auto *grid = new QGridLayout(card);
    grid->addWidget(captioned(new QLabel(card), Text::Identifier), 0, 1);
    grid->addWidget(captioned(new QLabel(card), Text::PhoneNumber), 0, 2);
    const int count = static_cast<int>(configuration().administrators.size());
    for (int index = 0; index < count; ++index) {
        auto *number = new QLabel(QString::number(index + 1), card);
        auto *name = new QLineEdit(card);
        auto *phone = new QLineEdit(card);
        binder().line(name, fieldRef(&Configuration::administrators, index, &Administrator::name));
        binder().line(phone, fieldRef(&Configuration::administrators, index, &Administrator::number));
        phone->setInputMethodHints(Qt::ImhDialableCharactersOnly);
        number->setBuddy(name);
        tip(name, [] { return tr("Shown as recipient of notifications and as target of switch points"); });
        tip(phone, [] { return tr("International form: + and digits"); });
        onTexts([this, name, phone, index] {
            const QString admin = text(Text::Admin) + u' ' + QString::number(index + 1);
            name->setAccessibleName(admin + u' ' + text(Text::Identifier));
            phone->setAccessibleName(admin + u' ' + text(Text::PhoneNumber));
        });
        grid->addWidget(number, index + 1, 0);
        grid->addWidget(name, index + 1, 1);
        grid->addWidget(phone, index + 1, 2);
    }
    return card;
}

} // namespace ktr
