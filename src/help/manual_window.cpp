#include "help/manual_window.h"

#include "help/manual_texts.h"
#include "help/manual_view.h"
#include "look/icons.h"
#include "look/list_views.h"
#include "look/window_place.h"

#include <QApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPolygonF>
#include <QScreen>
#include <QShortcut>
#include <QSplitter>
#include <QStackedWidget>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <QWindow>

#include <algorithm>

namespace ktr {

namespace {

constexpr int anchorRole = Qt::UserRole;
constexpr qsizetype mostPlaces = 200;

/// On a field of 24 by 24, in the colour that texts have when it is drawn.
QIcon lineIcon(const QList<QPolygonF> &lines)
{
    return drawnIcon([lines](QPainter &painter) {
        constexpr qreal width = 1.8;
        painter.setPen(QPen(QApplication::palette().color(QPalette::WindowText), width, Qt::SolidLine,
                            Qt::RoundCap, Qt::RoundJoin));
        for (const QPolygonF &line : lines) {
            painter.drawPolyline(line);
        }
    });
}
QIcon backIcon()
{
    return lineIcon({QPolygonF(QList<QPointF>{{5, 12}, {19, 12}}),
                     QPolygonF(QList<QPointF>{{11, 6}, {5, 12}, {11, 18}})});
}
QIcon forwardIcon()
{
    return lineIcon({QPolygonF(QList<QPointF>{{5, 12}, {19, 12}}),
                     QPolygonF(QList<QPointF>{{13, 6}, {19, 12}, {13, 18}})});
}
QIcon houseIcon()
{
    return lineIcon({QPolygonF(QList<QPointF>{{4, 12}, {12, 5}, {20, 12}}),
                     QPolygonF(QList<QPointF>{{6, 11}, {6, 19}, {18, 19}, {18, 11}})});
}

} // namespace

ManualWindow::ManualWindow(const TextTable &texts)
    : m_texts(texts), m_manual(&ManualTexts::in(ManualTexts::presentLanguage()))
{
    setObjectName(QStringLiteral("Form_manual"));
    setWindowIcon(icon(IconName::Application));
    layOut();
    addKeys();
    constexpr QSize comfortable(1060, 760);
    resize(comfortable.boundedTo(screen()->availableSize() * 9 / 10));
    keepWindowPlace(*this, QStringLiteral("manual"));
    m_places = {m_manual->chapters().value(0)};
    applyTexts();
}

void ManualWindow::layOut()
{
    const auto button = [this](const char *name, const QIcon &picture) {
        auto *made = named<QToolButton>(QLatin1String(name), this);
        made->setIcon(picture);
        made->setAutoRaise(true);
        made->setFocusPolicy(Qt::TabFocus);
        return made;
    };
    m_back = button("Cmd_manual_back", backIcon());
    m_forward = button("Cmd_manual_forward", forwardIcon());
    m_start = button("Cmd_manual_start", houseIcon());
    connect(m_back, &QToolButton::clicked, this, [this] { step(-1); });
    connect(m_forward, &QToolButton::clicked, this, [this] { step(1); });
    connect(m_start, &QToolButton::clicked, this, [this] { visit(m_manual->chapters().value(0)); });
    m_search = searchField(QStringLiteral("Txt_manual_search"), this);
    connect(m_search, &QLineEdit::textChanged, this, &ManualWindow::search);
    connect(m_search, &QLineEdit::returnPressed, this, [this] {
        if (m_left->currentWidget() == m_found && m_found->count() > 0) {
            m_found->setCurrentRow(std::max(0, m_found->currentRow()));
            m_found->setFocus(Qt::OtherFocusReason);
        }
    });

    m_contents = named<QTreeWidget>(QStringLiteral("Tree_manual"), this);
    m_contents->setHeaderHidden(true);
    connect(m_contents, &QTreeWidget::itemClicked, this,
            [this](const QTreeWidgetItem *item) { visit(item->data(0, anchorRole).toString()); });
    connect(m_contents, &QTreeWidget::itemActivated, this,
            [this](const QTreeWidgetItem *item) { visit(item->data(0, anchorRole).toString()); });
    m_found = named<QListWidget>(QStringLiteral("List_manual_found"), this);
    m_found->setWordWrap(true);
    constexpr int between = 3;
    m_found->setSpacing(between);
    connect(m_found, &QListWidget::currentItemChanged, this, [this](const QListWidgetItem *item) {
        if (item != nullptr && item->data(anchorRole).isValid()) {
            visit(item->data(anchorRole).toString());
        }
    });
    m_left = new QStackedWidget(this);
    m_left->addWidget(m_contents);
    m_left->addWidget(m_found);
    m_view = new ManualView(m_texts, this);
    connect(m_view, &ManualView::linkWanted, this, [this](const QString &chapter, const QString &anchor) {
        visit(!anchor.isEmpty() ? anchor : chapter.isEmpty() ? m_chapter : chapter);
    });

    auto *bar = new QHBoxLayout;
    for (QWidget *part : QList<QWidget *>{m_back, m_forward, m_start}) {
        bar->addWidget(part);
    }
    bar->addWidget(m_search, 1);
    auto *side = new QWidget(this);
    auto *sideLayout = new QVBoxLayout(side);
    sideLayout->setContentsMargins(0, 0, 0, 0);
    sideLayout->addLayout(bar);
    sideLayout->addWidget(m_left, 1);
    auto *splitter = new QSplitter(this);
    splitter->addWidget(side);
    splitter->addWidget(m_view);
    splitter->setStretchFactor(1, 1);
    splitter->setChildrenCollapsible(false);
    splitter->setSizes({300, 760});
    auto *all = new QVBoxLayout(this);
    all->addWidget(splitter);
}

void ManualWindow::addKeys()
{
    const auto key = [this](const QKeySequence &keys, const char *what, const std::function<void()> &act) {
        auto *shortcut = new QShortcut(keys, this);
        connect(shortcut, &QShortcut::activated, this, act);
        m_keys.emplaceBack(shortcut, what);
    };
    key(QKeySequence::Back, QT_TR_NOOP("Back"), [this] { step(-1); });
    key(QKeySequence::Forward, QT_TR_NOOP("Forward"), [this] { step(1); });
    key(QKeySequence(Qt::ALT | Qt::Key_Home), QT_TR_NOOP("First page"),
        [this] { visit(m_manual->chapters().value(0)); });
    key(QKeySequence::Find, QT_TR_NOOP("Search the manual"), [this] {
        m_search->setFocus(Qt::ShortcutFocusReason);
        m_search->selectAll();
    });
    key(QKeySequence::ZoomIn, QT_TR_NOOP("Larger letters"), [this] { m_view->zoomIn(); });
    key(QKeySequence::ZoomOut, QT_TR_NOOP("Smaller letters"), [this] { m_view->zoomOut(); });
}

void ManualWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Escape) {
        QWidget::keyPressEvent(event);
    } else if (!m_search->text().isEmpty()) {
        m_search->clear();
        m_view->setFocus(Qt::OtherFocusReason);
    } else {
        close();
    }
}

void ManualWindow::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        applyTexts();
    }
    QWidget::changeEvent(event);
}

void ManualWindow::applyTexts()
{
    m_manual = &ManualTexts::in(ManualTexts::presentLanguage());
    setWindowTitle(tr("Manual"));
    for (const auto &[shortcut, what] : m_keys) {
        shortcut->setWhatsThis(tr(what));
    }
    const auto describe = [](QToolButton *button, const QString &text) {
        button->setToolTip(text);
        button->setAccessibleName(text);
    };
    describe(m_back,
             tr("Back (%1)").arg(QKeySequence(QKeySequence::Back).toString(QKeySequence::NativeText)));
    describe(m_forward,
             tr("Forward (%1)").arg(QKeySequence(QKeySequence::Forward).toString(QKeySequence::NativeText)));
    describe(m_start, tr("First page"));
    m_search->setPlaceholderText(tr("Search the manual"));
    m_search->setAccessibleName(tr("Search the manual"));
    m_contents->setAccessibleName(tr("Chapters"));
    m_found->setAccessibleName(tr("Found in the manual"));
    m_view->setAccessibleName(tr("Page of the manual"));
    fillContents();
    m_chapter.clear();
    present(place());
    search();
}

/// The chapters and their parts, as far as these are pages or tasks of their own.
void ManualWindow::fillContents()
{
    m_contents->clear();
    QTreeWidgetItem *chapter = nullptr;
    const auto add = [](auto *parent, const QString &title, const QString &anchor) {
        auto *item = new QTreeWidgetItem(parent, {title});
        item->setData(0, anchorRole, anchor);
        return item;
    };
    for (const ManualPart &part : m_manual->parts()) {
        if (part.level == 1) {
            chapter = add(m_contents, part.title, part.anchor);
        } else if (part.level == 2 && chapter != nullptr) {
            add(chapter, part.title, part.anchor);
        }
    }
}

void ManualWindow::showPlace(const QString &anchor, QWidget *asker)
{
    appear(asker);
    visit(m_manual->has(anchor) ? anchor : m_manual->chapters().value(0));
    m_view->setFocus(Qt::OtherFocusReason); // whose keys turn the pages
}

/// A window that lets no other be used lets those through that belong to it.
void ManualWindow::appear(QWidget *asker)
{
    winId(); // so that there is a window to set up
    QWidget *modal = asker != nullptr && asker->window()->isModal() ? asker->window() : nullptr;
    windowHandle()->setTransientParent(modal != nullptr ? modal->windowHandle() : nullptr);
    if (isMinimized()) {
        showNormal();
    }
    QWidget::show();
    raise();
    activateWindow();
}

void ManualWindow::visit(const QString &place)
{
    if (place.isEmpty()) {
        return;
    }
    if (place != m_places[m_at]) {
        m_places.resize(m_at + 1);
        m_places += place;
        if (m_places.size() > mostPlaces) {
            m_places.removeFirst();
        }
        m_at = m_places.size() - 1;
    }
    present(place);
}

void ManualWindow::step(int by)
{
    const qsizetype wanted = m_at + by;
    if (wanted >= 0 && wanted < m_places.size()) {
        m_at = wanted;
        present(place());
    }
}

void ManualWindow::present(const QString &place)
{
    const ManualPart *part = m_manual->part(place);
    const QString chapter = part == nullptr ? place : part->chapter;
    if (chapter != m_chapter) {
        m_chapter = chapter;
        m_view->showMarkdown(m_manual->markdown(chapter));
    }
    m_view->goTo(part == nullptr ? QString() : place);
    choosePresent();
    m_back->setEnabled(m_at > 0);
    m_forward->setEnabled(m_at + 1 < m_places.size());
}

/// Chooses in the contents what is shown: the part that the place stands in, else its chapter.
void ManualWindow::choosePresent()
{
    QString wanted = m_chapter;
    for (const ManualPart &part : m_manual->parts()) {
        if (part.chapter == m_chapter && part.level == 2) {
            wanted = part.anchor;
        }
        if (part.anchor == place()) {
            wanted = part.level == 1 ? part.anchor : wanted;
            break;
        }
    }
    for (QTreeWidgetItemIterator each(m_contents); *each != nullptr; ++each) {
        if ((*each)->data(0, anchorRole) == wanted) {
            m_contents->setCurrentItem(*each);
            m_contents->scrollToItem(*each);
        }
    }
}

void ManualWindow::search()
{
    const QString words = m_search->text().simplified();
    m_found->clear();
    for (const ManualPart *part : m_manual->find(words)) {
        const ManualPart *chapter = m_manual->part(part->chapter);
        auto *item = new QListWidgetItem(
            part->level == 1 || chapter == nullptr ? part->title : part->title + u'\n' + chapter->title,
            m_found);
        item->setData(anchorRole, part->anchor);
    }
    if (!words.isEmpty() && m_found->count() == 0) {
        auto *none = new QListWidgetItem(tr("Nothing in the manual has these words"), m_found);
        none->setFlags(Qt::NoItemFlags);
    }
    m_left->setCurrentWidget(words.isEmpty() ? static_cast<QWidget *>(m_contents) : m_found);
    m_view->markWords(words);
}

} // namespace ktr
