#pragma once

#include <QStringList>
#include <QTimer>
#include <QWidget>

class QFrame;
class QPlainTextEdit;
class QToolButton;

namespace ktr {

class ShortenedLabel;

/// The line of a status bar: the latest message for a while, and a button that lists those before. What must
/// not go under among others stays until it is clicked away.
class MessageLine : public QWidget
{
    Q_OBJECT

public:
    static constexpr int kept = 500; ///< messages in the list

    explicit MessageLine(QWidget *parent = nullptr);

    /// Of many at once the last is shown; an empty one is none.
    void tell(const QString &line);
    /// Also shows it in front until the user clicks it.
    void pin(const QString &line);
    void applyTexts();

    /// As the list shows them, the oldest first.
    const QStringList &messages() const { return m_lines; }

protected:
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void showLatest();
    void showPinned();
    void showList();

    QToolButton *m_pinned;
    QString m_pinnedText;
    ShortenedLabel *m_latest;
    QToolButton *m_button;
    QFrame *m_popup;
    QPlainTextEdit *m_list;
    QStringList m_lines; ///< the oldest first
    QTimer m_soon;
    QTimer m_expiry;
};

} // namespace ktr
