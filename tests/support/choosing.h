#pragma once

#include <QAbstractItemView>
#include <QComboBox>
#include <QTest>

namespace ktr::test {

/// Chooses an item of a list as with the mouse, the one chosen already included.
inline void choose(QComboBox *box, int index)
{
    box->setFocus();
    box->showPopup();
    QAbstractItemView *items = box->view();
    QVERIFY(QTest::qWaitForWindowExposed(items->window()));
    items->setCurrentIndex(items->model()->index(index, 0));
    QTest::keyClick(items, Qt::Key_Return);
    QCOMPARE(box->currentIndex(), index);
}

/// What a table shows in a row.
inline QStringList rowTexts(const QAbstractItemView *table, int row)
{
    QStringList texts;
    for (int column = 0; column < table->model()->columnCount(); ++column) {
        texts += table->model()->index(row, column).data().toString();
    }
    return texts;
}

} // namespace ktr::test
