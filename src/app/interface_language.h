#pragma once

#include "editor/binder.h"
#include "lang/languages.h"
#include "lang/translations.h"
#include "opmode/operational_mode.h"

#include <QObject>

class QWidget;

namespace ktr {

/// The language of all windows: fills the text table from `language.ini` and installs the program's own
/// translations.
class InterfaceLanguage : public QObject
{
    Q_OBJECT

public:
    /// `window` gets the box about missing texts. All of them must outlive this.
    InterfaceLanguage(QWidget &window, TextTable &texts, EditorContext &context, QString programFolder);

    /// Takes a language by its name in `language.ini`, or by the code of one whose texts stand in a file of
    /// their own; English, which is built in, where the file lacks it.
    void use(const QString &language);

    /// The name by which use() takes what a user calls a language: "de" and "deutsch", "en" and "english",
    /// the code of an added one. Empty for any other.
    QString nameOf(const QString &called) const;

    /// Says that texts are missing, if they are, in a box that the program does not wait for, and not before
    /// the window that it belongs to.
    void showMissingTexts();

    /// Beside English and German.
    QList<AddedLanguage> added() const { return addedLanguages(m_programFolder); }

    /// The captions of stations in all languages.
    QList<StationCaptions> captionsOfAll() const;

Q_SIGNALS:
    /// Everything that is shown needs its text anew.
    void changed();
    void statusMessage(const QString &line);

private:
    bool useAdded(const QString &code);
    void showLocale() const;
    QString file() const;

    QWidget &m_window;
    TextTable &m_texts;
    EditorContext &m_context;
    QString m_programFolder;
    Translations m_translations;
    QString m_unreadable;   ///< a file of a language, until it is told
    QString m_missingTexts; ///< what is to be said once the window is there
};

} // namespace ktr
