#include "app/trial/trial_notice.h"

#include "look/palettes.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>

#include <utility>

namespace ktr {

TrialNotice::TrialNotice(TrialKind kind, QString trouble, QWidget *parent)
    : QToolBar(parent), m_kind(kind), m_trouble(std::move(trouble)), m_text(new QLabel(this))
{
    setObjectName(QStringLiteral("TrialNotice"));
    setMovable(false);
    setFloatable(false);
    setContextMenuPolicy(Qt::PreventContextMenu);
    m_text->setObjectName(QStringLiteral("lbl_trial"));
    constexpr int margin = 6;
    m_text->setMargin(margin);
    m_text->setAutoFillBackground(true);
    m_text->setBackgroundRole(QPalette::Window); // not that of the tool bar
    m_text->setForegroundRole(QPalette::WindowText);
    addWidget(m_text);
    m_text->setSizePolicy(QSizePolicy::Expanding,
                          QSizePolicy::Fixed); // the window may be narrower than the text
    m_text->setMinimumWidth(1);
    parent->installEventFilter(this);
    applyTexts();
    applyColours();
}

/// Whoever else sets the title sets all of it.
void TrialNotice::markTitle()
{
    const QString title = window()->windowTitle();
    if (!title.endsWith(m_mark)) {
        window()->setWindowTitle(title.trimmed() + m_mark);
    }
}

bool TrialNotice::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::WindowTitleChange && watched == window()) {
        markTitle();
    }
    return QToolBar::eventFilter(watched, event);
}

void TrialNotice::applyTexts()
{
    setWindowTitle(tr("Trial"));
    const QString modules = m_kind == TrialKind::Fleet
                                ? tr("These stations are virtual modules inside this program.")
                                : tr("A virtual module inside this program is connected.");
    const QString kept =
        m_kind == TrialKind::Fleet
            ? tr("Nothing of this window is kept: neither settings nor lists nor what is transmitted.")
            : tr("Nothing of this window is kept, unless you save the configuration to a file of your own.");
    const QString before = std::exchange(m_mark, QString(QStringLiteral(" – ") + tr("Trial")));
    if (!before.isEmpty() && window()->windowTitle().endsWith(before)) {
        window()->setWindowTitle(window()->windowTitle().chopped(before.size()));
    }
    markTitle();
    const QString text = m_trouble.isEmpty()
                             ? modules + u'\n' + kept
                             : tr("The virtual modules do not work: %1").arg(m_trouble) + u'\n' + kept;
    m_text->setText(text);
    m_text->setToolTip(text);
}

void TrialNotice::applyColours()
{
    QPalette colours = QApplication::palette();
    colours.setColor(QPalette::Window, accent(colours));
    colours.setColor(QPalette::WindowText, accentText(colours));
    m_text->setPalette(colours);
}

void TrialNotice::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        applyTexts();
    } else if (event->type() == QEvent::PaletteChange && !m_isColouring) {
        m_isColouring = true;
        applyColours();
        m_isColouring = false;
    }
    QToolBar::changeEvent(event);
}

} // namespace ktr
