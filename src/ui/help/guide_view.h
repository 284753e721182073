#pragma once

#include <QHash>
#include <QImage>
#include <QTextBrowser>

#include <vector>

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

    // Back to where the reader was before the last chapter that was shown, and from there to the one before.
    void GoBack();
    void ForgetPlaces() { places_.clear(); }

    // Goes to the next or the last place of this text, at the end on from the beginning and the other way
    // round, and shows it in the middle; false when there is none.
    bool FindNext(const QString& text);
    bool FindPrevious(const QString& text);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void SpaceBlocks();
    void ColourLinks();
    void DrawTables();
    void LoadPictures();
    void FitPictures();
    bool Find(const QString& text, QTextDocument::FindFlags direction);
    [[nodiscard]] int TopPosition() const;
    void ScrollTo(int position);
    void ScrollToLine(int position);

    // Where the reader was: what was on top, and where a search would have gone on from.
    struct Place {
        int top = 0;
        int cursor = 0;
    };

    // Taken at 100 % and, where there is one, at 200 %.
    struct Picture {
        QImage plain;
        QImage doubled; // shown at half its size
    };

    QHash<QString, Picture> pictures_; // by the name in the text
    std::vector<Place> places_;        // before each chapter, the last one at the end
};

} // namespace corvrec
