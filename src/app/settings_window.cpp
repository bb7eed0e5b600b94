#include "app/settings_window.h"

#include "app/language_setting.h"
#include "lang/text_table.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QShowEvent>
#include <QVBoxLayout>

namespace ktr {

namespace {

/// A group of radio buttons, named by the group's control array.
template <std::size_t N>
QGroupBox *choice(const char *name, const char *arrayName, std::array<QRadioButton *, N> &options)
{
    auto *const group = new QGroupBox;
    group->setObjectName(QLatin1String(name));
    auto *const lines = new QVBoxLayout(group);
    for (std::size_t index = 0; index < N; ++index) {
        options[index] = new QRadioButton(group);
        options[index]->setObjectName(QLatin1String(arrayName) + u'_' + QString::number(index));
        lines->addWidget(options[index]);
    }
    return group;
}

QPushButton *button(const char *name)
{
    auto *const made = new QPushButton;
    made->setObjectName(QLatin1String(name));
    return made;
}

} // namespace

frmSettings::frmSettings(const TextTable &texts, ChangeLanguage changeLanguage, Appearance appearance,
                         ChangeAppearance changeAppearance, QWidget *parent)
    : QDialog(parent),
      m_texts(texts),
      m_changeLanguage(std::move(changeLanguage)),
      m_appearance(appearance),
      m_changeAppearance(std::move(changeAppearance)),
      m_language(choice("frmLanguage", "optLanguage", m_languages)),
      m_looks(choice("frmAppearance", "optAppearance", m_appearances)),
      m_ok(button("btnOk")),
      m_abort(button("btnAbort")),
      m_apply(button("btnApply"))
{
    setObjectName(QLatin1String("frmSettings"));
    auto *const buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_ok);
    buttons->addWidget(m_abort);
    buttons->addWidget(m_apply);
    auto *const all = new QVBoxLayout(this);
    all->setSpacing(12);
    all->addWidget(m_language);
    all->addWidget(m_looks);
    all->addStretch();
    all->addLayout(buttons);
    m_ok->setDefault(true);

    const auto offerToApply = [this] { m_apply->setEnabled(true); };
    for (QRadioButton *option : m_languages) {
        connect(option, &QRadioButton::toggled, this, offerToApply);
    }
    for (QRadioButton *option : m_appearances) {
        connect(option, &QRadioButton::toggled, this, offerToApply);
    }
    connect(m_apply, &QPushButton::clicked, this, &frmSettings::apply);
    connect(m_abort, &QPushButton::clicked, this, &QWidget::close);
    connect(m_ok, &QPushButton::clicked, this, [this] {
        apply();
        close();
    });
    applyTexts();
    readSettings();
}

void frmSettings::offerLanguages(const QList<AddedLanguage> &languages)
{
    m_added = languages;
    for (const AddedLanguage &language : languages) {
        auto *option = new QRadioButton(language.name(), m_language);
        option->setObjectName(QStringLiteral("optLanguage_%1").arg(m_language->layout()->count()));
        connect(option, &QRadioButton::toggled, this, [this] { m_apply->setEnabled(true); });
        m_language->layout()->addWidget(option);
        m_addedLanguages += option;
    }
    readSettings();
}

void frmSettings::applyTexts()
{
    setWindowTitle(m_texts.text(Text::Settings));
    m_language->setTitle(m_texts.text(Text::Languages));
    m_languages[0]->setText(m_texts.text(Text::English));
    m_languages[1]->setText(m_texts.text(Text::German));
    m_ok->setText(m_texts.text(Text::Ok));
    m_abort->setText(m_texts.text(Text::Cancel));
    m_apply->setText(m_texts.text(Text::Apply));
    m_looks->setTitle(tr("Appearance"));
    m_appearances[0]->setText(tr("Follow the system"));
    m_appearances[1]->setText(tr("Light"));
    m_appearances[2]->setText(tr("Dark"));
}

void frmSettings::showEvent(QShowEvent *event)
{
    if (!event->spontaneous()) {
        readSettings();
    }
    QDialog::showEvent(event);
}

void frmSettings::setLanguageOfRun(const QString &language)
{
    m_ofRun = language;
    readSettings();
}

void frmSettings::readSettings()
{
    const QString present = m_ofRun.isEmpty() ? languageSetting() : m_ofRun;
    m_languages[present == germanLanguage ? 1 : 0]->setChecked(true);
    for (qsizetype at = 0; at < m_added.size(); ++at) {
        if (m_added[at].code == present) {
            m_addedLanguages[at]->setChecked(true);
        }
    }
    m_read = chosenLanguage();
    m_appearances[static_cast<std::size_t>(m_appearance)]->setChecked(true);
    m_apply->setEnabled(false);
}

QString frmSettings::chosenLanguage() const
{
    for (qsizetype at = 0; at < m_added.size(); ++at) {
        if (m_addedLanguages[at]->isChecked()) {
            return m_added[at].code;
        }
    }
    return m_languages[1]->isChecked() ? germanLanguage : englishLanguage;
}

/// What was not changed is not written: it may hold for this run alone, or be a language whose file is
/// missing just now.
void frmSettings::applyLanguage()
{
    const QString chosen = chosenLanguage();
    if (chosen != m_read) {
        setLanguageSetting(chosen);
        m_ofRun.clear();
        m_read = chosen;
    }
    const QString kept = languageSetting();
    if (m_ofRun.isEmpty()) {
        m_changeLanguage(kept.isEmpty() ? chosen : kept); // for this run even where nothing can be kept
    }
}

void frmSettings::apply()
{
    // Loading the texts may show a message, under which nothing here may be pressed.
    m_ok->setEnabled(false);
    m_abort->setEnabled(false);
    m_apply->setEnabled(false);
    applyLanguage();
    applyTexts();
    for (std::size_t index = 0; index < m_appearances.size(); ++index) {
        const auto appearance = static_cast<Appearance>(index);
        if (m_appearances[index]->isChecked() && appearance != m_appearance) {
            m_appearance = appearance;
            m_changeAppearance(appearance);
        }
    }
    m_ok->setEnabled(true);
    m_abort->setEnabled(true);
}

} // namespace ktr
