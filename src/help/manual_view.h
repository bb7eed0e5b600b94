#pragma once

#include <QTextBrowser>
#include <QTimer>

namespace ktr {

class ManualTexts;
class TextTable;

/// Shows a chapter of the manual. Links are not followed here: linkWanted() tells of them.
class ManualView : public QTextBrowser
{
    Q_OBJECT

public:
    explicit ManualView(const TextTable &texts, QWidget *parent = nullptr);

    /// Shows Markdown from its beginning.
    void showMarkdown(const QString &markdown);
    /// Scrolls so that the text with this anchor is at the top, and marks its line for the eye.
    void goTo(const QString &anchor);
    /// Marks these words wherever they stand; none with an empty text.
    void markWords(const QString &words);

    QVariant loadResource(int type, const QUrl &name) override;

Q_SIGNALS:
    /// `chapter` is empty for the one that is shown, `anchor` for its beginning.
    void linkWanted(const QString &chapter, const QString &anchor);

protected:
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    /// A link is shown by linkWanted() alone.
    void doSetSource(const QUrl &name, QTextDocument::ResourceType type) override;

private:
    void showMarks();
    void scrollToReached();
    void showAgain();
    int pictureWidth() const;

    const TextTable &m_texts;
    QString m_markdown;
    QTextDocument *m_document = nullptr; ///< made of it
    QString m_words;
    QTextCursor m_reached; ///< the line of the anchor that was gone to
    int m_scrolledTo = 0;
    int m_picturesFor = 0; ///< the width they were made for
    QTimer m_reload;
};

} // namespace ktr
