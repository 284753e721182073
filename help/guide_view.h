#pragma once

#include <QHash>
#include <QImage>
#include <QTextBrowser>

namespace corvrec
{

// The guide as it is read: the text of docs/guida.md, which the program carries with its pictures. Links lead
// to chapters alone, and pictures are never wider than the view.
class GuideView : public QTextBrowser
{
    Q_OBJECT

public:
    explicit GuideView(QWidget* parent = nullptr);

    // Brings the heading with this anchor to the top: the heading's words in lower case, joined by hyphens.
    // An anchor of no heading does nothing.
    void ShowChapter(const QString& anchor);

    // Goes to the next place of this text, at the end on from the beginning; false when there is none.
    bool FindNext(const QString& text);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void SpaceBlocks();
    void DrawTables();
    void LoadPictures();
    void FitPictures();
    void ScrollTo(int position);

    QHash<QString, QImage> pictures_; // by the name in the text, in their own size
};

} // namespace corvrec
