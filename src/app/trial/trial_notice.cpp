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
    addWidget(m_text);
    m_text->setSizePolicy(QSizePolicy::Expanding,
                          QSizePolicy::Fixed); // the window may be narrower than the text
    m_text->setMinimumWidth(1);
    applyTexts();
    applyColours();
}

void TrialNotice::applyTexts()
{
    setWindowTitle(tr("Trial"));
    const QString modules = m_kind == TrialKind::Fleet
                                ? tr("These stations are virtual modules inside this program.")
                                : tr("A virtual module inside this program is connected.");
    const QString kept =
        tr("Nothing of this window is kept: neither settings nor lists nor what is transmitted.");
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
