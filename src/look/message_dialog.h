#pragma once

#include <QString>
#include <QWidget>

#include <functional>
#include <optional>

class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QTimer;

namespace ktr {

class TextTable;

/// The program's small window for messages, questions and one line of input. It sizes itself to its text,
/// stands centred over its parent and deletes itself after closing. Enter is OK unless the question says
/// otherwise, Escape is Cancel. A text that is too large for the screen scrolls; one that nobody would read
/// to its end is shortened (boundedText()).
///
/// question() and input() block the other windows and process events until a button is pressed, so any
/// handler can run meanwhile. They end as cancelled when the window is closed, the parent is destroyed or the
/// program ends.
class Dialog : public QWidget
{
    Q_OBJECT

public:
    /// Shows a text and returns at once; several can be open at a time, but one about each topic only: the
    /// new text takes the old one's place. Without a topic only the same text is not shown twice.
    static void message(QWidget *parent, const TextTable &texts, const QString &text,
                        const QString &topic = {});
    /// A button that leads to where the matter can be put right, and closes the message.
    struct Remedy
    {
        QString caption;
        std::function<void()> go;
    };
    /// The same with such a button beside OK.
    static void message(QWidget *parent, const TextTable &texts, const QString &text, const QString &topic,
                        const Remedy &remedy);
    /// Closes the message about a topic, if one is open, because it is no longer true.
    static void withdraw(const QString &topic);
    /// Shows a heading, which is the topic, with a line below it. While a message with that heading is still
    /// open, the line is added to it, so that many of a kind stand in one box; a line that stands there
    /// already is not.
    static void line(QWidget *parent, const TextTable &texts, const QString &heading, const QString &line);

    /// True for OK.
    static bool question(QWidget *parent, const TextTable &texts, const QString &text);
    /// The same where OK cannot be taken back: Enter is Cancel.
    static bool questionOfLoss(QWidget *parent, const TextTable &texts, const QString &text);
    /// The same with a text that is asked for again while the question stands there, since what it tells of
    /// goes on meanwhile.
    static bool questionOfLoss(QWidget *parent, const TextTable &texts, const std::function<QString()> &text);

    /// The text that stands in the field at OK, which may be empty; nothing for Cancel.
    static std::optional<QString> input(QWidget *parent, const TextTable &texts, const QString &prompt,
                                        const QString &proposal);

Q_SIGNALS:
    /// A button was pressed, or the window closed without one.
    void answered();

protected:
    bool event(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    enum class Kind { Message, Question, Input };

    Dialog(QWidget *parent, Kind kind, const TextTable &texts, const QString &text);

    static Dialog *openMessage(const QString &topic, const QString &text = {});
    void setText(const QString &text);
    void setRemedy(const Remedy &remedy);

    void makeDefault(QPushButton *button);
    void appear();
    bool wait();
    void answer(bool accepted);
    void arrange();
    QSize arrangeText(QSize room);
    void centre();
    void moveOnScreen(QPoint corner);
    void handOnMessages();

    const Kind m_kind;
    QString m_topic;
    QString m_text; ///< all of it, of which the label has what is shown
    QLabel *m_label;
    QPlainTextEdit *m_scrolled; ///< shown in place of the label when that is too large for the screen
    QLineEdit *m_input;
    QPushButton *m_ok;
    QPushButton *m_cancel;
    QPushButton *m_remedy;
    QPushButton *m_default = nullptr; ///< what Enter presses
    QTimer *m_unload;
    std::function<void()> m_go; ///< of the remedy
    bool m_answered = false;
    bool m_accepted = false;
};

} // namespace ktr
