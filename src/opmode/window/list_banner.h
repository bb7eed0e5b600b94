#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace ktr {

/// Stands under the menu bar as long as the list of stations is not watched, or until the user has noted what
/// of it was lost; says why and what can be done.
class ListBanner : public QWidget
{
    Q_OBJECT

public:
    explicit ListBanner(QWidget *parent = nullptr);

    /// `canBeginEmpty`: the list may be put aside for an empty one.
    void appear(const QString &reason, bool canBeginEmpty);
    /// The list is watched, but not all of it is as it was. It goes when the user has taken note.
    void tellDefects(const QString &defects);
    /// Puts the captions in place; called again when the language changes.
    void applyTexts();

Q_SIGNALS:
    /// The user wants the list to be opened again.
    void retryWanted();
    /// The user wants to begin with an empty list.
    void emptyWanted();

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void takeColours();
    void show(const QString &reason);

    bool m_isWatched = false; ///< what it says is about a list that is watched

    QLabel *m_icon;
    QLabel *m_headline;
    QLabel *m_reason;
    QPushButton *m_retry;
    QPushButton *m_empty;
    QPushButton *m_noted;
};

} // namespace ktr
