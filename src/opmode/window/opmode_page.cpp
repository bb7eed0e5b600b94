#include "opmode/window/opmode_page.h"

#include "look/message_dialog.h"

#include <QLabel>
#include <QPointer>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace ktr {

OpmodePage::OpmodePage(OperationalMode &mode, const TextTable &texts, QWidget *parent)
    : QWidget(parent), m_mode(mode), m_texts(texts)
{
    connect(&mode.tree(), &QAbstractItemModel::dataChanged, this,
            [this](const QModelIndex &index, const QModelIndex &, const QList<int> &roles) {
                if (!index.parent().isValid() && roles.contains(Qt::DisplayRole) &&
                    index.data(StationTree::KeyRole).toString() == m_kennung) {
                    stationRenamed();
                }
            });
}

OpmodePage::~OpmodePage()
{
    for (const QObject *part : findChildren<QObject *>()) {
        part->disconnect(this);
    }
}

QString OpmodePage::stationName() const
{
    return m_mode.tree().find(m_kennung).data().toString();
}

void OpmodePage::showStation(const QString &kennung)
{
    m_kennung = m_mode.station(kennung) == nullptr ? QString() : kennung;
    stationChosen();
}

void OpmodePage::removeEntries(const QModelIndexList &entries, const QString &question)
{
    QStringList keys; // while the question stands there, the tree changes
    for (const QModelIndex &entry : entries) {
        keys += entry.data(StationTree::KeyRole).toString();
    }
    const QPointer<OpmodePage> self(this);
    if (keys.isEmpty() || !Dialog::questionOfLoss(window(), m_texts, question) || !self) {
        return;
    }
    QModelIndexList present;
    for (const QString &key : std::as_const(keys)) {
        if (const QModelIndex entry = m_mode.tree().find(key); entry.isValid()) {
            present += entry;
        }
    }
    Q_EMIT statusMessage(tr("Entries removed: %L1").arg(m_mode.removeEntries(present)));
}

HeadedPage::HeadedPage(OperationalMode &mode, const TextTable &texts, QWidget *parent)
    : OpmodePage(mode, texts, parent),
      m_stack(new QStackedWidget(this)),
      m_empty(new QLabel(this)),
      m_heading(new QLabel(this))
{
    m_empty->setAlignment(Qt::AlignCenter);
    m_empty->setWordWrap(true);
    m_empty->setForegroundRole(QPalette::PlaceholderText);
    m_stack->addWidget(m_empty);
    QFont large = m_heading->font();
    large.setPointSizeF(large.pointSizeF() * 1.3);
    large.setBold(true);
    m_heading->setFont(large);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(m_stack);
}

void HeadedPage::setContent(QWidget *content)
{
    m_stack->addWidget(content);
}

void HeadedPage::stationRenamed()
{
    m_heading->setText(stationName());
}

void HeadedPage::showContent(const QString &otherwise)
{
    m_heading->setText(stationName());
    m_empty->setText(otherwise);
    m_stack->setCurrentIndex(otherwise.isEmpty() ? 1 : 0);
}

} // namespace ktr
