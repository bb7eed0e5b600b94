#include "help/keys_window.h"

#include "look/list_views.h"

#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace ktr {

KeysWindow::KeysWindow(const QList<KeyEntry> &keys, QWidget *parent) : QDialog(parent), m_keys(keys)
{
    setObjectName(QStringLiteral("Form_keys"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Keyboard shortcuts"));
    m_search = searchField(QStringLiteral("Txt_keys_search"), this);
    m_search->setPlaceholderText(tr("Search for a command or a key"));
    m_search->setAccessibleName(tr("Search for a command or a key"));
    m_list = named<QTreeWidget>(QStringLiteral("Tree_keys"), this);
    m_list->setAccessibleName(windowTitle());
    m_list->setHeaderLabels({tr("Keys"), tr("Command"), tr("Menu"), tr("Window")});
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    setUpLines(*m_list);
    m_count = new QLabel(this);
    connect(m_search, &QLineEdit::textChanged, this, &KeysWindow::fill);
    auto *all = new QVBoxLayout(this);
    all->addWidget(m_search);
    all->addWidget(m_list, 1);
    all->addWidget(m_count);
    fill();
    for (int column = 0; column < m_list->columnCount(); ++column) {
        m_list->resizeColumnToContents(column);
    }
    constexpr QSize comfortable(860, 620);
    resize(comfortable);
    m_search->setFocus();
}

void KeysWindow::fill()
{
    const QStringList words = m_search->text().simplified().split(u' ', Qt::SkipEmptyParts);
    m_list->clear();
    for (const KeyEntry &key : m_keys) {
        const QStringList cells{key.keys, key.what, key.where, key.window};
        const QString line = cells.join(u' ');
        const bool isWanted = std::ranges::all_of(
            words, [&line](const QString &word) { return line.contains(word, Qt::CaseInsensitive); });
        if (isWanted) {
            new QTreeWidgetItem(m_list, cells);
        }
    }
    m_count->setText(tr("%1 of %2 commands with a key").arg(m_list->topLevelItemCount()).arg(m_keys.size()));
}

} // namespace ktr
