#include "app/page_tabs.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QGroupBox>
#include <QScrollArea>
#include <QShortcut>
#include <QTabBar>

namespace ktr {

namespace {

constexpr std::array tabTexts = {Text::Gsm,         Text::Ip,         Text::LimitValue,
                                 Text::Switchpoint, Text::Test,       Text::FileInformation,
                                 Text::Ethernet,    Text::Connection, Text::Calibration};
static_assert(tabTexts.size() == pageCount);

} // namespace

PageTabs::PageTabs(EditorContext &context, Builder build, QWidget *parent)
    : QTabWidget(parent), m_context(context), m_build(std::move(build))
{
    setObjectName(QStringLiteral("TabStrip1"));
    setDocumentMode(true);
    tabBar()->setUsesScrollButtons(true);
    for (int index = 0; index < pageCount; ++index) {
        auto *area = new QScrollArea(this);
        area->setFrameShape(QFrame::NoFrame);
        area->setWidgetResizable(true);
        area->setFocusPolicy(Qt::NoFocus);
        addTab(area, QString());
    }
    connect(this, &QTabWidget::currentChanged, this, &PageTabs::enterPage);
    const auto turn = [this](int by) {
        setCurrentIndex((currentIndex() + by + pageCount) % pageCount);
        focusFirst();
    };
    const auto addKey = [this, turn](const QKeySequence &key, int by) {
        auto *shortcut = new QShortcut(key, this);
        m_turns.emplace_back(shortcut, by);
        connect(shortcut, &QShortcut::activated, this, [turn, by] { turn(by); });
    };
    addKey(QKeySequence(Qt::CTRL | Qt::Key_PageDown), 1);
    addKey(QKeySequence(Qt::CTRL | Qt::Key_PageUp), -1);
    addKey(QKeySequence(Qt::CTRL | Qt::Key_Tab), 1);
    addKey(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab), -1);
    addKey(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Backtab), -1);
}

Page *PageTabs::page(PageIndex index)
{
    Page *&page = m_pages[static_cast<std::size_t>(index)];
    if (page == nullptr) {
        page = m_build(index);
        page->applyTexts();
        page->showRecords();
        page->setProblems(m_problems);
        static_cast<QScrollArea *>(widget(static_cast<int>(index)))->setWidget(page);
        Q_EMIT built(page);
    }
    return page;
}

bool PageTabs::buildNext()
{
    for (int index = 0; index < pageCount; ++index) {
        if (builtPage(static_cast<PageIndex>(index)) == nullptr) {
            page(static_cast<PageIndex>(index));
            return true;
        }
    }
    return false;
}

PageTabs::Found PageTabs::find(const QString &control)
{
    if (control.isEmpty()) {
        return {};
    }
    while (buildNext()) {
    }
    for (int index = 0; index < pageCount; ++index) {
        const Page *owner = builtPage(static_cast<PageIndex>(index));
        // Only the name of the array is known: its first element stands for it.
        for (const QString &name : QStringList{control, control + u"_0", control + u"_1"}) {
            if (auto *found = owner->findChild<QWidget *>(name)) {
                return {index, found, name != control};
            }
        }
    }
    return {};
}

void PageTabs::goTo(const EditPlace &place)
{
    const Found found = find(place.control);
    if (found.control == nullptr) {
        return;
    }
    setCurrentIndex(found.page);
    builtPage(static_cast<PageIndex>(found.page))->showPlace(place);
    const auto *button = qobject_cast<QAbstractButton *>(found.control);
    const QButtonGroup *group = button != nullptr ? button->group() : nullptr;
    QWidget *chosen = group != nullptr ? group->checkedButton() : nullptr;
    (chosen != nullptr ? chosen : found.control)->setFocus(Qt::OtherFocusReason);
    if (!hasFocusInPage()) { // hidden or disabled with the present values
        focusFirst();
    }
    static_cast<QScrollArea *>(widget(found.page))->ensureWidgetVisible(found.control);
}

void PageTabs::moveEntry(int by)
{
    Page *present = page(static_cast<PageIndex>(currentIndex()));
    if (present->hasEntries()) {
        m_context.history.endGroup();
        present->showEntry(std::clamp(present->shownEntry() + by, 0, LimitValue::count - 1));
        if (!hasFocusInPage()) { // in a field the user goes on with the same one
            focusFirst();
        }
    }
}

bool PageTabs::hasFocusInPage() const
{
    const QWidget *focused = window()->focusWidget();
    return focused != nullptr && focused->isVisibleTo(window()) && currentWidget()->isAncestorOf(focused);
}

void PageTabs::focusFirst()
{
    QWidget *present = page(static_cast<PageIndex>(currentIndex()));
    QWidget *field = present;
    do {
        field = field->nextInFocusChain();
    } while (field != present && !(present->isAncestorOf(field) && field->isVisibleTo(present) &&
                                   field->isEnabled() && (field->focusPolicy() & Qt::TabFocus) != 0));
    if (field != present) {
        field->setFocus(Qt::TabFocusReason);
        static_cast<QScrollArea *>(currentWidget())->ensureWidgetVisible(field);
    }
}

QString PageTabs::describe(const EditPlace &place)
{
    const Found found = find(place.control);
    if (found.control == nullptr) {
        return {};
    }
    QStringList parts{tabText(found.page)};
    if (builtPage(static_cast<PageIndex>(found.page))->hasEntries()) {
        parts += QString::number(place.entry + 1);
    }
    const auto *group =
        found.standsForArray ? qobject_cast<QGroupBox *>(found.control->parentWidget()) : nullptr;
    const QString name = group != nullptr ? group->title() : found.control->accessibleName();
    return parts.join(u' ') + (name.isEmpty() ? QString() : QStringLiteral(", ") + name);
}

void PageTabs::applyTexts()
{
    for (const auto &[shortcut, by] : m_turns) {
        shortcut->setWhatsThis(by > 0 ? tr("Next page") : tr("Previous page"));
    }
    for (int index = 0; index < pageCount; ++index) {
        QString caption = m_context.texts.text(tabTexts[static_cast<std::size_t>(index)]);
        setTabText(index, caption.replace(u'&', QLatin1String("&&")));
        if (Page *built = builtPage(static_cast<PageIndex>(index))) {
            built->applyTexts();
            built->showRecords();
        }
    }
}

void PageTabs::showRecords()
{
    for (Page *built : m_pages) {
        if (built != nullptr) {
            built->showRecords();
        }
    }
}

void PageTabs::setProblems(const QList<Problem> &problems)
{
    m_problems = problems;
    for (Page *built : m_pages) {
        if (built != nullptr) {
            built->setProblems(problems);
        }
    }
}

void PageTabs::enterPage()
{
    m_context.history.endGroup();
    page(static_cast<PageIndex>(currentIndex()))->entered();
}

} // namespace ktr
