#include "look/mnemonics.h"

#include <QAction>
#include <QSet>

namespace ktr {

namespace {

bool beginsWord(const QString &caption, qsizetype at)
{
    return at == 0 || !caption[at - 1].isLetterOrNumber();
}

/// The place of the letter to underline, -1 where none is free.
qsizetype freeLetter(const QString &caption, const QSet<QChar> &taken)
{
    qsizetype inside = -1;
    for (qsizetype at = 0; at < caption.size(); ++at) {
        if (!caption[at].isLetterOrNumber() || taken.contains(caption[at].toCaseFolded())) {
            continue;
        }
        if (beginsWord(caption, at)) {
            return at;
        }
        if (inside < 0) {
            inside = at;
        }
    }
    return inside;
}

QString underlined(const QString &caption, qsizetype letter)
{
    QString result;
    for (qsizetype at = 0; at < caption.size(); ++at) {
        if (at == letter || caption[at] == u'&') {
            result += u'&';
        }
        result += caption[at];
    }
    return result;
}

} // namespace

QStringList withMnemonics(const QStringList &captions)
{
    QSet<QChar> taken;
    QStringList result;
    for (const QString &caption : captions) {
        const qsizetype letter = freeLetter(caption, taken);
        if (letter >= 0) {
            taken.insert(caption[letter].toCaseFolded());
        }
        result += underlined(caption, letter);
    }
    return result;
}

void giveMnemonics(const QList<QAction *> &actions)
{
    QList<QAction *> captioned;
    QStringList captions;
    for (QAction *action : actions) {
        if (!action->isSeparator()) {
            captioned += action;
            captions += action->text();
        }
    }
    captions = withMnemonics(captions);
    for (qsizetype i = 0; i < captioned.size(); ++i) {
        captioned[i]->setText(captions[i]);
    }
}

} // namespace ktr
