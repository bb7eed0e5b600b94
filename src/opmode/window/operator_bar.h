#pragma once

#include <QWidget>

class QLabel;
class QLineEdit;
class QPushButton;
class QToolButton;

namespace ktr {

class OperationalMode;

/// Asks who is on duty, and proposes a name that one click or Enter takes. It stands in the window and hides
/// nothing; nobody has to answer it.
class OperatorBar : public QWidget
{
    Q_OBJECT

public:
    explicit OperatorBar(OperationalMode &mode, QWidget *parent = nullptr);

    /// Appears with the operator's name, or a proposal, chosen in the field.
    void ask();
    /// The same, when nobody's name is known; but only once.
    void askAtBeginning();
    /// Shows the name that is kept with what is done, and asks for another one. For a status bar.
    QToolButton *button() const { return m_button; }
    /// Puts the captions in place; called again when the language changes.
    void applyTexts();

Q_SIGNALS:
    /// It was answered, or not wanted; the keys are wanted elsewhere.
    void done();

protected:
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void useName(const QString &name);
    void close();
    void showName();

    OperationalMode &m_mode;
    QLabel *m_question;
    QLineEdit *m_name;
    QPushButton *m_take;
    QPushButton *m_nobody;
    QToolButton *m_button;
    bool m_isAsked = false;
};

} // namespace ktr
