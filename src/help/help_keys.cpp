#include "help/help_keys.h"

#include "help/help_places.h"
#include "help/manual_texts.h"
#include "help/manual_window.h"

#include <QAbstractButton>
#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QToolTip>
#include <QWhatsThis>
#include <QWhatsThisClickedEvent>

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
    const auto *button = qobject_cast<const QAbstractButton *>(&widget);
    return button == nullptr ? QString() : button->text();
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

void HelpKeys::showAbout(QWidget *widget)
{
    manual().showPlace(helpAnchor(widget, ManualTexts::in(ManualTexts::presentLanguage())),
                       QApplication::activeModalWidget());
}

void HelpKeys::showPlace(const QString &anchor)
{
    manual().showPlace(anchor, QApplication::activeModalWidget());
}

void HelpKeys::showChanges()
{
    manual().showChanges(QApplication::activeModalWidget());
}

QString HelpKeys::meaning(const QWidget *widget)
{
    for (; widget != nullptr && !widget->isWindow(); widget = widget->parentWidget()) {
        const QString text = widget->whatsThis().isEmpty() ? widget->toolTip() : widget->whatsThis();
        if (!text.isEmpty()) {
            const QString name = captionOf(*widget).remove(u'&').trimmed();
            const QString problem = widget->accessibleDescription();
            return (name.isEmpty() || name == text ? QString() : name + u'\n') + text +
                   (problem.isEmpty() || problem == text ? QString() : u'\n' + problem);
        }
    }
    return {};
}

void HelpKeys::showMeaning(QWidget &widget)
{
    const QString text = meaning(&widget);
    if (!text.isEmpty()) {
        m_asked = &widget;
        QWhatsThis::showText(widget.mapToGlobal(widget.rect().bottomLeft()), asRichText(text), &widget);
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
            showMeaning(*widget);
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
        showMeaning(*widget);
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
