#include "opmode/window/operator_bar.h"

#include "look/palettes.h"
#include "opmode/operational_mode.h"
#include "platform/environment.h"
#include "platform/text_rules.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QToolButton>

namespace ktr {

namespace {

constexpr int longestName = 60;
constexpr int lettersInField = 32;
constexpr int lettersInStatusBar = 24;

} // namespace

OperatorBar::OperatorBar(OperationalMode &mode, QWidget *parent)
    : QWidget(parent),
      m_mode(mode),
      m_question(new QLabel(this)),
      m_name(new QLineEdit(this)),
      m_take(new QPushButton(this)),
      m_nobody(new QPushButton(this)),
      m_button(new QToolButton(this))
{
    setObjectName(QStringLiteral("OperatorBar"));
    m_question->setObjectName(QStringLiteral("lbl_operator"));
    m_question->setBuddy(m_name);
    m_name->setObjectName(QStringLiteral("Text_operator"));
    m_name->setMaxLength(longestName);
    m_name->setMinimumWidth(lettersInField * fontMetrics().averageCharWidth());
    m_name->setMaximumWidth(2 * m_name->minimumWidth());
    m_take->setObjectName(QStringLiteral("Cmd_operator_take"));
    m_nobody->setObjectName(QStringLiteral("Cmd_operator_nobody"));
    m_button->setObjectName(QStringLiteral("Cmd_operator"));
    m_button->setAutoRaise(true);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(12, 6, 10, 6);
    row->setSpacing(8);
    row->addWidget(m_question);
    row->addWidget(m_name);
    for (QPushButton *button : {m_take, m_nobody}) {
        button->setAutoDefault(false);
        row->addWidget(button);
    }
    row->addStretch();
    connect(m_name, &QLineEdit::textChanged, this,
            [this](const QString &name) { m_take->setEnabled(!name.trimmed().isEmpty()); });
    connect(m_name, &QLineEdit::returnPressed, m_take, &QPushButton::click);
    connect(m_take, &QPushButton::clicked, this, [this] { useName(m_name->text()); });
    connect(m_nobody, &QPushButton::clicked, this, [this] { useName({}); });
    connect(m_button, &QToolButton::clicked, this, [this] { isVisible() ? close() : ask(); });
    applyTexts();
    hide();
}

void OperatorBar::askAtBeginning()
{
    if (m_mode.operatorName().isEmpty() && !m_isAsked) {
        ask();
    }
}

void OperatorBar::ask()
{
    m_isAsked = true;
    const QString present = m_mode.operatorName();
    const QString last = m_mode.lastOperator();
    m_name->setText(!present.isEmpty() ? present : !last.isEmpty() ? last : userName());
    m_take->setEnabled(!m_name->text().trimmed().isEmpty());
    show();
    m_name->setFocus();
    const int length = static_cast<int>(m_name->text().size());
    m_name->setSelection(length, -length); // of a long name its beginning is seen
}

void OperatorBar::useName(const QString &name)
{
    m_mode.setOperator(onOneLine(name).simplified());
    showName();
    close();
}

void OperatorBar::close()
{
    hide();
    Q_EMIT done();
}

void OperatorBar::showName()
{
    const QString name = m_mode.operatorName();
    const QFontMetrics metrics = m_button->fontMetrics();
    const QString shown =
        metrics.elidedText(name, Qt::ElideRight, lettersInStatusBar * metrics.averageCharWidth());
    m_button->setText(name.isEmpty() ? tr("No operator") : tr("Operator: %1").arg(shown));
    m_button->setToolTip(name.isEmpty() ? tr("Nobody's name is kept with what is acknowledged and changed. "
                                             "Click to give one.")
                                        : tr("%1: the name that is kept with what is acknowledged and "
                                             "changed. Click for the next shift.")
                                              .arg(name));
    QPalette colours;
    if (name.isEmpty()) {
        colours.setColor(QPalette::ButtonText, doubtText(palette()));
    }
    m_button->setPalette(colours);
}

void OperatorBar::applyTexts()
{
    m_question->setText(tr("Who is on duty?"));
    m_name->setToolTip(tr("The name is kept with what is acknowledged and changed from now on"));
    m_question->setToolTip(m_name->toolTip());
    m_name->setAccessibleName(tr("Operator"));
    m_take->setText(tr("Take this name"));
    m_nobody->setText(tr("Without a name"));
    m_nobody->setToolTip(tr("Alarms can be acknowledged all the same; nobody's name is kept with it"));
    showName();
}

void OperatorBar::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::ApplicationPaletteChange) {
        showName();
    }
    QWidget::changeEvent(event);
}

/// Escape leaves all as it is.
void OperatorBar::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape) {
        close();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void OperatorBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), tint(palette()));
}

} // namespace ktr
