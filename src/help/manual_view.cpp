#include "help/manual_view.h"

#include "help/manual_document.h"
#include "help/manual_texts.h"
#include "look/palettes.h"

#include <QAbstractTextDocumentLayout>
#include <QDesktopServices>
#include <QEvent>
#include <QFileInfo>
#include <QImage>
#include <QScrollBar>
#include <QTextBlock>

#include <algorithm>
#include <chrono>
#include <cstdlib>

namespace ktr {

namespace {

constexpr int widestPicture = 760; ///< in pixels of the window
constexpr int narrowestPicture = 240;
constexpr int margin = 16;
constexpr auto reloadDelay = std::chrono::milliseconds(150);

/// Where the part of a text with this anchor begins; null when there is none.
QTextCursor placeOf(QTextDocument &document, const QString &anchor)
{
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto part = block.begin(); !part.atEnd(); ++part) {
            if (part.fragment().charFormat().anchorNames().contains(anchor)) {
                QTextCursor cursor(&document);
                cursor.setPosition(part.fragment().position());
                return cursor;
            }
        }
    }
    return {};
}

} // namespace

ManualView::ManualView(const TextTable &texts, QWidget *parent) : QTextBrowser(parent), m_texts(texts)
{
    setObjectName(QStringLiteral("Txt_manual"));
    setOpenLinks(false);
    setOpenExternalLinks(false);
    m_reload.setSingleShot(true);
    connect(&m_reload, &QTimer::timeout, this, &ManualView::showAgain);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn); // the width does not depend on the text
    connect(this, &QTextBrowser::anchorClicked, this, [this](const QUrl &url) {
        if (!url.scheme().isEmpty() && url.scheme() != QLatin1String("file")) {
            QDesktopServices::openUrl(url);
            return;
        }
        Q_EMIT linkWanted(QFileInfo(url.path()).completeBaseName(), url.fragment());
    });
}

/// So that nothing has to be scrolled aside.
int ManualView::pictureWidth() const
{
    constexpr int around = 2 * margin + 4;
    return std::clamp(viewport()->width() - around, narrowestPicture, widestPicture);
}

QVariant ManualView::loadResource(int type, const QUrl &name)
{
    if (type != QTextDocument::ImageResource) {
        return {};
    }
    QImage picture = QImage::fromData(manualPicture(QFileInfo(name.path()).fileName()));
    if (picture.isNull()) { // the text beside it tells what would be seen
        picture = QImage(1, 1, QImage::Format_ARGB32);
        picture.fill(Qt::transparent);
        return picture;
    }
    const qreal scale = devicePixelRatioF();
    const int wide = std::min(picture.width(), qRound(pictureWidth() * scale));
    // With a palette it would be scaled within that, as a pattern of dots.
    picture = picture.convertToFormat(QImage::Format_RGB32).scaledToWidth(wide, Qt::SmoothTransformation);
    picture.setDevicePixelRatio(scale);
    return picture;
}

void ManualView::doSetSource(const QUrl &, QTextDocument::ResourceType) {}

void ManualView::showMarkdown(const QString &markdown)
{
    m_markdown = markdown;
    m_reached = {};
    m_picturesFor = pictureWidth();
    // One that is shown would be laid out anew with each paragraph.
    auto *anew = new QTextDocument(this);
    anew->setDefaultFont(font());
    anew->setDocumentMargin(margin);
    anew->setTextWidth(
        viewport()->width()); // laid out endlessly wide first it would be scrolled aside for a while
    fillManualDocument(*anew, markdown, m_texts, palette());
    setExtraSelections({}); // they point into the document that goes
    setDocument(anew);
    delete m_document;
    m_document = anew;
    moveCursor(QTextCursor::Start);
    verticalScrollBar()->setValue(0);
    showMarks();
}

void ManualView::goTo(const QString &anchor)
{
    m_reached = placeOf(*document(), anchor);
    if (!m_reached.isNull()) {
        setTextCursor(m_reached);
        scrollToReached();
    }
    showMarks();
}

void ManualView::scrollToReached()
{
    constexpr int above = 8;
    const int top = qRound(document()->documentLayout()->blockBoundingRect(m_reached.block()).top());
    verticalScrollBar()->setValue(std::max(0, top - above));
    m_scrolledTo = verticalScrollBar()->value();
}

void ManualView::resizeEvent(QResizeEvent *event)
{
    const bool isWhereItWas = !m_reached.isNull() && verticalScrollBar()->value() == m_scrolledTo;
    QTextBrowser::resizeEvent(event);
    if (isWhereItWas) { // the lines are others
        scrollToReached();
    }
    if (std::abs(m_picturesFor - pictureWidth()) > margin && !m_markdown.isEmpty()) {
        m_reload.start(reloadDelay);
    }
}

/// The same with the present colours, letters and width, at the same place.
void ManualView::showAgain()
{
    const int place = verticalScrollBar()->value();
    const bool isWhereItWas = !m_reached.isNull() && place == m_scrolledTo;
    const int reached = m_reached.isNull() ? -1 : m_reached.position();
    showMarkdown(QString(m_markdown));
    if (reached >= 0) {
        m_reached = QTextCursor(document());
        m_reached.setPosition(reached);
        showMarks();
    }
    if (isWhereItWas) {
        scrollToReached();
    } else {
        verticalScrollBar()->setValue(place);
    }
}

void ManualView::markWords(const QString &words)
{
    m_words = words;
    showMarks();
}

void ManualView::showMarks()
{
    QList<QTextEdit::ExtraSelection> marks;
    if (!m_reached.isNull() && m_reached.blockFormat().headingLevel() != 1) {
        ExtraSelection line;
        line.cursor = m_reached;
        line.format.setBackground(tint(palette()));
        line.format.setProperty(QTextFormat::FullWidthSelection, true);
        marks += line;
    }
    for (const QString &word : m_words.split(u' ', Qt::SkipEmptyParts)) {
        for (QTextCursor found = document()->find(word); !found.isNull();
             found = document()->find(word, found)) {
            ExtraSelection mark;
            mark.cursor = found;
            mark.format.setBackground(accent(palette()));
            mark.format.setForeground(accentText(palette()));
            marks += mark;
        }
    }
    setExtraSelections(marks);
}

void ManualView::changeEvent(QEvent *event)
{
    QTextBrowser::changeEvent(event);
    const bool isLook = event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange;
    if (isLook && !m_markdown.isEmpty()) { // the colours stand in the document
        showAgain();
    }
}

} // namespace ktr
