#include "ui/help/guide_view.h"

#include <QAbstractTextDocumentLayout>
#include <QEvent>
#include <QPalette>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextTable>
#include <QtMath>

#include <algorithm>
#include <cstdlib>

namespace corvrec
{

namespace
{

constexpr int kCellPadding = 4;

constexpr int kTablePercent = 98; // of the view's width; at 100 the outer line would lack a pixel

// The anchor as sites that show Markdown form it.
QString AnchorOf(const QString& heading)
{
    QString anchor;
    for (const QChar character : heading.toLower()) {
        if (character == u' ' || character == u'-')
            anchor.append(u'-');
        else if (character.isLetterOrNumber())
            anchor.append(character);
    }
    return anchor;
}

// The link colour, made lighter or darker until it can be read on the background. A desktop that sets dark
// colours but no link colour leaves Qt's dark blue.
QColor ReadableLink(const QPalette& palette)
{
    constexpr int leastDifference = 100; // of grey levels, 0 to 255
    const int background = qGray(palette.color(QPalette::Base).rgb());
    QColor link = palette.color(QPalette::Link);
    for (int step = 0; step < 10 && std::abs(qGray(link.rgb()) - background) < leastDifference; ++step)
        link = background < 128 ? link.lighter(130) : link.darker(130);
    return link;
}

// The block of a heading; an invalid one for an anchor without a heading.
QTextBlock HeadingOf(const QTextDocument& document, const QString& anchor)
{
    QTextBlock block = document.begin();
    while (block.isValid() && (block.blockFormat().headingLevel() == 0 || AnchorOf(block.text()) != anchor))
        block = block.next();
    return block;
}

} // namespace

GuideView::GuideView(QWidget* parent)
    : QTextBrowser(parent)
{
    setUndoRedoEnabled(false);
    setOpenLinks(false); // nothing outside the guide is ever opened
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    connect(this, &QTextBrowser::anchorClicked, this, [this](const QUrl& link) {
        if (link.adjusted(QUrl::RemoveFragment) == source())
            ShowChapter(link.fragment());
    });
    setSource(QUrl("qrc:/guida/guida.md"), QTextDocument::MarkdownResource);
    SpaceBlocks();
    ColourLinks();
    ColourHits();
    DrawTables();
    LoadPictures();
}

void GuideView::ShowChapter(const QString& anchor)
{
    const QTextBlock heading = HeadingOf(*document(), anchor);
    if (!heading.isValid())
        return;
    const Place before{.top = TopPosition(), .cursor = textCursor().position()};
    setTextCursor(QTextCursor(heading)); // a search continues from here
    ScrollTo(heading.position());
    if (TopPosition() != before.top)
        places_.push_back(before);
}

void GuideView::GoBack()
{
    if (places_.empty())
        return;
    const Place place = places_.back();
    places_.pop_back();
    QTextCursor cursor(document());
    cursor.setPosition(place.cursor);
    setTextCursor(cursor);
    ScrollToLine(place.top);
}

bool GuideView::FindNext(const QString& text)
{
    return Find(text, {});
}

bool GuideView::FindPrevious(const QString& text)
{
    return Find(text, QTextDocument::FindBackward);
}

bool GuideView::Find(const QString& text, QTextDocument::FindFlags direction)
{
    if (text.isEmpty())
        return false;
    const QTextCursor before = textCursor();
    if (!find(text, direction)) {
        moveCursor(direction == QTextDocument::FindBackward ? QTextCursor::End : QTextCursor::Start);
        if (!find(text, direction)) {
            setTextCursor(before);
            return false;
        }
    }
    const int middle = viewport()->height() / 2;
    verticalScrollBar()->setValue(verticalScrollBar()->value() + cursorRect().center().y() - middle);
    return true;
}

void GuideView::changeEvent(QEvent* event)
{
    QTextBrowser::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        ColourLinks();
        ColourHits();
    }
}

// Text at the top stays there, however the new width changes the lines and pictures above it.
void GuideView::resizeEvent(QResizeEvent* event)
{
    const int top = TopPosition();
    FitPictures();
    // Lay out everything now: the scroll bars take their range from what is laid out when the base class
    // handles the event.
    document()->setTextWidth(viewport()->width());
    document()->size();
    QTextBrowser::resizeEvent(event);
    ScrollTo(top);
}

// Space around headings and paragraphs. Long lines of code are wrapped and do not run out of the view.
void GuideView::SpaceBlocks()
{
    const int line = fontMetrics().lineSpacing();
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        QTextCursor cursor(block);
        if (cursor.currentTable() != nullptr)
            continue;
        QTextBlockFormat format = block.blockFormat();
        const bool isCode = format.hasProperty(QTextFormat::BlockCodeFence);
        format.setNonBreakableLines(false);
        if (format.headingLevel() > 0) {
            format.setTopMargin(line);
            format.setBottomMargin(line / 2.0);
        } else if (isCode) {
            format.setLeftMargin(line);
            format.setBackground(palette().alternateBase());
        } else if (block.textList() == nullptr) {
            format.setTopMargin(line / 2.0);
            format.setBottomMargin(line / 2.0);
        }
        cursor.setBlockFormat(format);
    }
}

// A hit is selected while the search field has the focus. On Windows the selection of a view without the
// focus can hardly be seen.
void GuideView::ColourHits()
{
    QPalette colours = palette();
    for (const QPalette::ColorRole role : {QPalette::Highlight, QPalette::HighlightedText})
        colours.setColor(QPalette::Inactive, role, colours.color(QPalette::Active, role));
    if (colours != palette())
        setPalette(colours);
}

void GuideView::ColourLinks()
{
    QTextCharFormat format;
    format.setForeground(ReadableLink(palette()));
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        for (auto part = block.begin(); !part.atEnd(); ++part) {
            const QTextFragment text = part.fragment();
            if (!text.charFormat().isAnchor() || text.charFormat().foreground() == format.foreground())
                continue;
            QTextCursor cursor(document());
            cursor.setPosition(text.position());
            cursor.setPosition(text.position() + text.length(), QTextCursor::KeepAnchor);
            cursor.mergeCharFormat(format);
            part = block.begin(); // the change has split the fragments
        }
    }
}

void GuideView::DrawTables()
{
    for (QTextFrame* const frame : document()->rootFrame()->childFrames()) {
        auto* const table = qobject_cast<QTextTable*>(frame);
        if (table == nullptr)
            continue;
        QTextTableFormat format = table->format();
        format.setBorder(1);
        format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
        format.setBorderBrush(palette().mid());
        format.setBorderCollapse(true);
        format.setCellPadding(kCellPadding);
        format.setWidth(QTextLength(QTextLength::PercentageLength, kTablePercent));
        format.setTopMargin(fontMetrics().lineSpacing() / 2.0);
        format.setBottomMargin(fontMetrics().lineSpacing() / 2.0);
        table->setFormat(format);
    }
}

void GuideView::LoadPictures()
{
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        for (auto part = block.begin(); !part.atEnd(); ++part) {
            const QTextCharFormat format = part.fragment().charFormat();
            if (format.isImageFormat()) {
                const QString name = format.toImageFormat().name();
                QString doubled = name;
                doubled.insert(name.lastIndexOf('.'), "@2x");
                pictures_.insert(
                    name, {.plain = QImage(":/guida/" + name), .doubled = QImage(":/guida/" + doubled)});
            }
        }
    }
}

// Fits the pictures into the view's width. Scaled here because the painter would not smooth them.
void GuideView::FitPictures()
{
    const int room = viewport()->width() - qCeil(2 * document()->documentMargin());
    const qreal ratio = devicePixelRatioF();
    const QUrl base = document()->baseUrl();
    for (auto picture = pictures_.cbegin(); picture != pictures_.cend(); ++picture) {
        // On a screen of more than 100 % the plain picture would be enlarged and blurred.
        const bool isDoubled = ratio > 1 && !picture->doubled.isNull();
        const QImage& source = isDoubled ? picture->doubled : picture->plain;
        const qreal ownWidth = source.width() / (isDoubled ? 2.0 : 1.0);
        const int width = qRound(std::min<qreal>(room, ownWidth) * ratio);
        QImage fitted = source.scaledToWidth(std::max(width, 1), Qt::SmoothTransformation);
        fitted.setDevicePixelRatio(ratio);
        document()->addResource(QTextDocument::ImageResource, base.resolved(QUrl(picture.key())), fitted);
    }
    document()->markContentsDirty(0, document()->characterCount());
}

// The text position at the top of the view.
int GuideView::TopPosition() const
{
    return cursorForPosition({0, 0}).position();
}

// Scrolls to the position's line, wherever it is in its block.
void GuideView::ScrollToLine(int position)
{
    QTextCursor cursor(document());
    cursor.setPosition(position);
    verticalScrollBar()->setValue(verticalScrollBar()->value() + cursorRect(cursor).top());
}

// Scrolls to the top of the position's block, including the space above it.
void GuideView::ScrollTo(int position)
{
    const QAbstractTextDocumentLayout* const layout = document()->documentLayout();
    const QRectF block = layout->blockBoundingRect(document()->findBlock(position));
    verticalScrollBar()->setValue(qFloor(block.top()));
}

} // namespace corvrec
