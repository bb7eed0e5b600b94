#pragma once

#include <QList>
#include <QStringList>

class QAction;

namespace ktr {

/// The captions of one menu, each with a "&" before a letter or digit that no other of them has: the first
/// character where it is free, then the first of a word, then any. A caption for which nothing is free gets
/// none. "&" in a caption stands for itself and comes out as "&&".
QStringList withMnemonics(const QStringList &captions);
/// The same for the captions of a menu's actions; separators are passed over.
void giveMnemonics(const QList<QAction *> &actions);

} // namespace ktr
