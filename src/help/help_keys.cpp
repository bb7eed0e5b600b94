#include "help/help_keys.h"

#include "help/help_places.h"
#include "help/manual_texts.h"
#include "help/manual_window.h"

#include <QAbstractButton>
#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QRegularExpression>
#include <QTabBar>
#include <QToolTip>
#include <QWhatsThis>
#include <QWhatsThisClickedEvent>

#include <algorithm>

namespace ktr {

namespace {

/// The text is shown as it stands; the link below it leads into the manual.
QString asRichText(const QString &meaning)
{
    const qsizetype end = meaning.indexOf(u'\n');
    const QString rest = end < 0 ? QString() : meaning.mid(end + 1);
    return QStringLiteral("<p><b>%1</b></p><p>%2</p><p><a href=\"manual\" style=\"color:%4\">%3</a></p>")
        .arg(meaning.left(end).toHtmlEscaped(), rest.toHtmlEscaped().replace(u'\n', QLatin1String("<br>")),
             HelpKeys::tr("More in the manual (F1)").toHtmlEscaped(),
             QToolTip::palette().color(QPalette::ToolTipText).name());
}

/// As it stands beside a control or on it.
QString captionOf(const QWidget &widget)
{
    if (!widget.accessibleName().isEmpty()) {
        return widget.accessibleName();
    }
    for (const QLabel *label : widget.window()->findChildren<QLabel *>()) {
        if (label->buddy() == &widget) {
            return label->text();
        }
    }
    if (const auto *tabs = qobject_cast<const QTabBar *>(&widget)) {
        return tabs->tabText(tabs->currentIndex());
    }
    const auto *button = qobject_cast<const QAbstractButton *>(&widget);
    return button == nullptr ? QString() : button->text();
}

QString tipOf(const QWidget &widget)
{
    return widget.whatsThis().isEmpty() ? widget.toolTip() : widget.whatsThis();
}

/// Whether a tip is a sentence, beside the name and the keys in brackets.
bool saysMore(QString tip, const QString &name)
{
    static const QRegularExpression keys(QStringLiteral("\\([^()]*\\)$"));
    constexpr qsizetype fewest = 3;
    if (!name.isEmpty()) {
        tip.remove(name);
    }
    const QStringList words = tip.remove(keys).split(u' ', Qt::SkipEmptyParts);
    return std::ranges::count_if(words, [](const QString &word) {
               return word.size() > 1 && word[0].isLetter() && word[1].isLetter();
           }) >= fewest;
}

} // namespace

HelpKeys::HelpKeys(const TextTable &texts) : m_texts(texts)
{
    qApp->installEventFilter(this);
}

HelpKeys::~HelpKeys() = default;

ManualWindow &HelpKeys::manual()
{
    if (m_manual == nullptr) {
        m_manual = std::make_unique<ManualWindow>(m_texts);
    }
    return *m_manual;
}

const QWidget &HelpKeys::manualWindow()
{
    return manual();
}

void HelpKeys::showAbout(QWidget *widget)
{
    manual().showPlace(helpAnchor(widget, ManualTexts::in(ManualTexts::presentLanguage())),
                       QApplication::activeModalWidget());
}

void HelpKeys::showPlace(const QString &anchor)
{
    manual().showPlace(anchor, QApplication::activeModalWidget());
}

QString HelpKeys::meaning(const QWidget *widget)
{
    if (widget == nullptr) {
        return {};
    }
    const QWidget *told = widget;
    while (told != nullptr && !told->isWindow() && tipOf(*told).isEmpty()) {
        told = told->parentWidget();
    }
    const bool hasTip = told != nullptr && !tipOf(*told).isEmpty();
    const QWidget &named = hasTip ? *told : *widget;
    const QString name = captionOf(named).remove(u'&').trimmed();
    QStringList lines{name};
    const QString tip = hasTip ? tipOf(*told) : QString();
    if (tip != name) {
        lines += tip;
    }
    if (!saysMore(tip, name)) {
        const ManualTexts &manual = ManualTexts::in(ManualTexts::presentLanguage());
        const ManualPart *part = manual.part(helpAnchor(widget, manual));
        lines += part == nullptr ? QString() : part->summary;
    }
    const QString problem = named.accessibleDescription();
    if (problem != name && problem != tip) {
        lines += problem;
    }
    lines.removeAll(QString());
    return lines.join(u'\n');
}

void HelpKeys::explain(QWidget *widget)
{
    const QString text = meaning(widget);
    if (!text.isEmpty()) {
        m_asked = widget;
        QWhatsThis::showText(widget->mapToGlobal(widget->rect().bottomLeft()), asRichText(text), widget);
    }
}

bool HelpKeys::eventFilter(QObject *watched, QEvent *event)
{
    if (!watched->isWidgetType()) {
        return false;
    }
    auto *widget = static_cast<QWidget *>(watched);
    switch (event->type()) {
    case QEvent::KeyPress: {
        const auto *key = static_cast<QKeyEvent *>(event);
        const Qt::KeyboardModifiers held = key->modifiers() & ~Qt::KeypadModifier;
        if (key->key() != Qt::Key_F1) {
            return false;
        }
        if (held == Qt::NoModifier) {
            if (QWidget *popup = QApplication::activePopupWidget(); popup != nullptr) {
                popup->close(); // nothing else can be used while it is open
                widget = QApplication::focusWidget();
            }
            showAbout(widget);
            return true;
        }
        if (held == Qt::ShiftModifier) {
            explain(widget);
            return true;
        }
        return false;
    }
    case QEvent::QueryWhatsThis:
        event->setAccepted(!meaning(widget).isEmpty());
        return event->isAccepted();
    case QEvent::WhatsThis:
        if (meaning(widget).isEmpty()) {
            return false;
        }
        explain(widget);
        event->accept();
        return true;
    case QEvent::WhatsThisClicked:
        QWhatsThis::hideText();
        showAbout(m_asked != nullptr ? m_asked.data() : widget);
        return true;
    default:
        return false;
    }
}

} // namespace ktr
