#pragma once

#include "lang/languages.h"
#include "look/appearance.h"

#include <QDialog>

#include <array>
#include <functional>

class QGroupBox;
class QPushButton;
class QRadioButton;

namespace ktr {

class TextTable;

/// Language and appearance of the program. This window keeps the language in the registry; everything else is
/// up to its owner.
class frmSettings : public QDialog
{
    Q_OBJECT

public:
    /// Loads the texts of a language and puts them in place everywhere but here.
    using ChangeLanguage = std::function<void(const QString &language)>;
    /// Shows the appearance and keeps it.
    using ChangeAppearance = std::function<void(Appearance)>;

    /// `texts` must outlive the window. `appearance` is the one that the program has now.
    frmSettings(const TextTable &texts, ChangeLanguage changeLanguage, Appearance appearance,
                ChangeAppearance changeAppearance, QWidget *parent = nullptr);

    /// Beside English and German, with the names that they have for themselves.
    void offerLanguages(const QList<AddedLanguage> &languages);

    /// The language that was chosen for this run alone, which is shown until the user chooses another one;
    /// empty for none.
    void setLanguageOfRun(const QString &language);

    /// Takes the captions from the table again.
    void applyTexts();

protected:
    void showEvent(QShowEvent *event) override;

private:
    void readSettings();
    void apply();
    void applyLanguage();
    QString chosenLanguage() const;

    const TextTable &m_texts;
    ChangeLanguage m_changeLanguage;
    QString m_ofRun;
    QString m_read; ///< the language that was shown as chosen
    Appearance m_appearance;
    ChangeAppearance m_changeAppearance;
    QGroupBox *m_language;
    std::array<QRadioButton *, 2> m_languages;
    QList<AddedLanguage> m_added;
    QList<QRadioButton *> m_addedLanguages; ///< one for each
    QGroupBox *m_looks;
    std::array<QRadioButton *, 3> m_appearances; ///< in the order of Appearance
    QPushButton *m_ok;
    QPushButton *m_abort;
    QPushButton *m_apply;
};

} // namespace ktr
