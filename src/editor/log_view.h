#pragma once

#include <QWidget>

class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QTimer;

namespace ktr {

/// Lines of a conversation, the latest on top. It keeps up with any number of them, since it shows what came
/// together at once; it can be held while somebody reads, searched and saved.
class LogView : public QWidget
{
    Q_OBJECT

public:
    /// `name` is the display's; it ends with the line that holds the character `last`, counted from 1.
    LogView(const QString &name, int last, QWidget *parent = nullptr);

    void prepend(const QString &line);
    void clear();
    void applyTexts();
    void setAccessibleName(const QString &name);

    /// Shows what has come so far, held or not.
    void flush();

Q_SIGNALS:
    /// The user wants this text in a file.
    void saveWanted(const QString &text);

private:
    void showPending();
    void find();

    int m_last;
    QPlainTextEdit *m_display;
    QPushButton *m_pause;
    QLineEdit *m_search;
    QPushButton *m_save;
    QTimer *m_timer;
    QStringList m_pending; ///< the latest last
    qsizetype m_pendingSize = 0;
};

} // namespace ktr
