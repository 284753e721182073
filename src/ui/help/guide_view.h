#pragma once

#include <QHash>
#include <QImage>
#include <QTextBrowser>

#include <vector>

namespace corvrec
{

// Shows the guide: the text of docs/guida.md, which the program contains together with its pictures. Links
// lead to chapters only, and pictures are never wider than the view.
class GuideView : public QTextBrowser
{
    Q_OBJECT

public:
    explicit GuideView(QWidget* parent = nullptr);

    // Brings a heading to the top. The anchor is the heading's words in lower case, joined by hyphens. An
    // anchor without a heading does nothing.
    void ShowChapter(const QString& anchor);

    // Returns to where the reader was before the last chapter was shown; the next call to the place before
    // that.
    void GoBack();
    void ForgetPlaces() { places_.clear(); }

    // Goes to the next or the previous occurrence of the text and shows it in the middle; continues at the
    // other end of the guide. False when there is none.
    bool FindNext(const QString& text);
    bool FindPrevious(const QString& text);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void ColourHits();

    // Format the loaded text: margins, link colour, table borders.
    void SpaceBlocks();
    void ColourLinks();
    void DrawTables();
    void LoadPictures();
    void FitPictures();
    bool Find(const QString& text, QTextDocument::FindFlags direction);
    [[nodiscard]] int TopPosition() const;
    void ScrollTo(int position);
    void ScrollToLine(int position);

    // A place of the reader: the text position at the top, and the one where a search would continue.
    struct Place {
        int top = 0;
        int cursor = 0;
    };

    // A picture as drawn at 100 % and, where there is one, at 200 %.
    struct Picture {
        QImage plain;
        QImage doubled; // shown at half its size
    };

    QHash<QString, Picture> pictures_; // by the name in the text
    std::vector<Place> places_;        // from before each chapter shown, latest last
};

} // namespace corvrec
