#include "app/names_window.h"

#include "platform/tab_table.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace ktr {

namespace {

constexpr int nameColumn = 0;
constexpr int unitColumn = 1;

} // namespace

NamesWindow::NamesWindow(const ChannelNames &names, const TextTable &texts, QWidget *parent)
    : QDialog(parent), m_table(new QTableWidget(channelCount, 2, this))
{
    setObjectName(QStringLiteral("Dlg_names"));
    setWindowTitle(tr("Names of the inputs and outputs"));
    m_table->setObjectName(QStringLiteral("Tbl_names"));
    m_table->setAccessibleName(windowTitle());
    m_table->setHorizontalHeaderLabels({tr("Name"), texts.text(Text::Unit)});
    QStringList channels;
    for (int channel = 1; channel <= channelCount; ++channel) {
        channels += channelText(channel);
        const ChannelName &each = names.of(channel);
        m_table->setItem(channel - 1, nameColumn, new QTableWidgetItem(each.name));
        m_table->setItem(channel - 1, unitColumn, new QTableWidgetItem(each.unit));
    }
    m_table->setVerticalHeaderLabels(channels);
    m_table->horizontalHeader()->setSectionResizeMode(nameColumn, QHeaderView::Stretch);
    const int rowHeight = m_table->fontMetrics().height() + 8;
    m_table->verticalHeader()->setMinimumSectionSize(rowHeight);
    m_table->verticalHeader()->setDefaultSectionSize(rowHeight);
    m_table->verticalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_table->setTabKeyNavigation(true);
    m_table->setCurrentCell(0, nameColumn);
    m_table->installEventFilter(this);

    auto *hint = new QLabel(
        tr("Shown behind each input and output. They are kept beside the file; no module is sent them."),
        this);
    hint->setWordWrap(true);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setText(texts.text(Text::Ok));
    buttons->button(QDialogButtonBox::Cancel)->setText(texts.text(Text::Cancel));
    for (QAbstractButton *button : buttons->buttons()) {
        button->setIcon({});
    }
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] {
        Q_EMIT chosen(this->names());
        accept();
    });
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(hint);
    layout->addWidget(m_table, 1);
    layout->addWidget(buttons);
    constexpr int width = 520;
    resize(width, rowHeight * (channelCount + 1) + 130);
}

ChannelNames NamesWindow::names() const
{
    ChannelNames names;
    for (int row = 0; row < channelCount; ++row) {
        names.channels[static_cast<std::size_t>(row)] =
            storedChannelName(m_table->item(row, nameColumn)->text(), m_table->item(row, unitColumn)->text());
    }
    return names;
}

/// From the present cell on; what is behind the last row or column is left out.
void NamesWindow::pasteBlock()
{
    constexpr qsizetype longest = qsizetype{1} << 16;
    const QString text = QApplication::clipboard()->text().left(longest);
    int row = m_table->currentRow();
    for (const QStringList &cells : readTabTable(text)) {
        for (int column = 0; row < channelCount && column < cells.size(); ++column) {
            if (QTableWidgetItem *item = m_table->item(row, m_table->currentColumn() + column)) {
                item->setText(cellWithoutGuard(cells[column]));
            }
        }
        ++row;
    }
}

bool NamesWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        if (key->matches(QKeySequence::Paste)) {
            pasteBlock();
            return true;
        }
        if (key->key() == Qt::Key_Delete) {
            for (QTableWidgetItem *item : m_table->selectedItems()) {
                item->setText(QString());
            }
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace ktr
