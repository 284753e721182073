#include "ui/help/guide_view.h"

#include <QAbstractTextDocumentLayout>
#include <QEvent>
#include <QPalette>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextList>
#include <QTextTable>
#include <QtMath>

#include <algorithm>
#include <cstdlib>

namespace corvrec
{

namespace
{

constexpr int kCellPadding = 4;

constexpr int kTablePercent = 98; // of the view's width; all of it would lack the outermost line's pixel

// As the sites that show Markdown name their headings.
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

// The link colour, made lighter or darker until it can be read on the background: a desktop that sets dark
// colours without a link colour leaves Qt's dark blue.
QColor ReadableLink(const QPalette& palette)
{
    constexpr int leastDifference = 100; // of greys from 0 to 255
    const int background = qGray(palette.color(QPalette::Base).rgb());
    QColor link = palette.color(QPalette::Link);
    for (int step = 0; step < 10 && std::abs(qGray(link.rgb()) - background) < leastDifference; ++step)
        link = background < 128 ? link.lighter(130) : link.darker(130);
    return link;
}

// The heading's block; none for an anchor of no heading.
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
    setOpenLinks(false); // nothing outside of the guide is ever opened
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    connect(this, &QTextBrowser::anchorClicked, this, [this](const QUrl& link) {
        if (link.adjusted(QUrl::RemoveFragment) == source())
            ShowChapter(link.fragment());
    });
    setSource(QUrl("qrc:/guida/guida.md"), QTextDocument::MarkdownResource);
    SpaceBlocks();
    ColourLinks();
    DrawTables();
    LoadPictures();
}

void GuideView::ShowChapter(const QString& anchor)
{
    const QTextBlock heading = HeadingOf(*document(), anchor);
    if (!heading.isValid())
        return;
    const Place before{.top = TopPosition(), .cursor = textCursor().position()};
    setTextCursor(QTextCursor(heading)); // a search goes on from here
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

// What was on top stays there, whatever the new width makes of the lines and the pictures above.
void GuideView::changeEvent(QEvent* event)
{
    QTextBrowser::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        ColourLinks();
}

void GuideView::resizeEvent(QResizeEvent* event)
{
    const int top = TopPosition();
    FitPictures();
    // All of it now: the scroll bars take their ranges from what is laid out when the base class sees the
    // event.
    document()->setTextWidth(viewport()->width());
    document()->size();
    QTextBrowser::resizeEvent(event);
    ScrollTo(top);
}

// Air around headings and paragraphs; long lines of code are broken instead of running out of the view.
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
            part = block.begin(); // the change made new fragments
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

// Scaled here and not by the painter, which would not smooth them.
void GuideView::FitPictures()
{
    const int room = viewport()->width() - qCeil(2 * document()->documentMargin());
    const qreal ratio = devicePixelRatioF();
    const QUrl base = document()->baseUrl();
    for (auto picture = pictures_.cbegin(); picture != pictures_.cend(); ++picture) {
        // The plain one would be enlarged on a screen of more than 100 %, and blurred.
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

int GuideView::TopPosition() const
{
    return cursorForPosition({0, 0}).position();
}

void GuideView::ScrollToLine(int position)
{
    QTextCursor cursor(document());
    cursor.setPosition(position);
    verticalScrollBar()->setValue(verticalScrollBar()->value() + cursorRect(cursor).top());
}

// The block's, with the air above it.
void GuideView::ScrollTo(int position)
{
    const QAbstractTextDocumentLayout* const layout = document()->documentLayout();
    const QRectF block = layout->blockBoundingRect(document()->findBlock(position));
    verticalScrollBar()->setValue(qFloor(block.top()));
}

} // namespace corvrec
