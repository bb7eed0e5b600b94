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

    addLine(grid, fieldRef(&Configuration::gsm, &GsmSettings::stationId));
    auto *type = new QComboBox(card);
    type->addItems(stationTypes());
    const FieldRef stationType = fieldRef(&Configuration::gsm, &GsmSettings::stationType);
    binder().item(type, stationType);
    addRow(grid, stationType, type);
    addLine(grid, fieldRef(&Configuration::gsm, &GsmSettings::pin));
    addLine(grid, fieldRef(&Configuration::gsm, &GsmSettings::aliveCycle));
    return card;
}

QWidget *GsmPage::administratorsCard()
{
    auto *card = captioned(new QGroupBox(this), Text::Admin);
    auto *grid = new QGridLayout(card);
    const auto field = [](int index, auto member) {
        return fieldRef(&Configuration::administrators, index, member);
    };
    grid->addWidget(captioned(new QLabel(card), field(0, &Administrator::name)), 0, 1);
    grid->addWidget(captioned(new QLabel(card), field(0, &Administrator::number)), 0, 2);
    const int count = static_cast<int>(configuration().administrators.size());
    for (int index = 0; index < count; ++index) {
        auto *number = new QLabel(QString::number(index + 1), card);
        auto *name = new QLineEdit(card);
        auto *phone = new QLineEdit(card);
        const FieldRef nameField = field(index, &Administrator::name);
        const FieldRef phoneField = field(index, &Administrator::number);
        binder().line(name, nameField);
        binder().line(phone, phoneField);
        phone->setInputMethodHints(Qt::ImhDialableCharactersOnly);
        number->setBuddy(name);
        tip(name, nameField);
        tip(phone, phoneField);
        onTexts([this, name, phone, index, nameField, phoneField] {
            const QString admin = text(Text::Admin) + u' ' + QString::number(index + 1) + u' ';
            name->setAccessibleName(admin + nameField.label(context().texts));
            phone->setAccessibleName(admin + phoneField.label(context().texts));
        });
        grid->addWidget(number, index + 1, 0);
        grid->addWidget(name, index + 1, 1);
        grid->addWidget(phone, index + 1, 2);
    }
    return card;
}

} // namespace ktr
