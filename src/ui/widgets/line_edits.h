#pragma once

#include <QBrush>
#include <QLineEdit>
#include <QString>

namespace corvrec
{

// A text box that no line break and no NUL can get into: by keys, paste, drop, input method or code. It shows
// its selection only where the window has its focus, so that one field of a window at most looks marked.
class PlainEdit : public QLineEdit
{
    Q_OBJECT
    Q_PROPERTY(QString widestText READ widestText WRITE setWidestText)
    Q_PROPERTY(bool readableWhenDisabled READ readableWhenDisabled WRITE setReadableWhenDisabled)

public:
    explicit PlainEdit(QWidget* parent = nullptr);

    // The field is as wide as this text needs, and does not grow; empty: as wide as Qt makes a text box.
    QString widestText() const { return widestText_; }
    void setWidestText(const QString& text);

    // Whether the text keeps its colour when the field is disabled.
    bool readableWhenDisabled() const { return readableWhenDisabled_; }
    void setReadableWhenDisabled(bool readable);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    bool event(QEvent* event) override;

protected:
    // Every text passes here before it is shown, with the caret's position in it, and may be corrected.
    virtual void Correct(QString& text, int& caret);

private:
    class Corrector;

    void SetColours();
    QSize AsWideAsText(const QSize& size) const;

    QString widestText_;
    bool readableWhenDisabled_ = false;
    bool hidesSelection_ = false;
    QBrush disabledText_; // none: the theme's
};

// The box for a site's code, which the settings file keeps as the name of a key and of a section. What no
// such name can hold does not get in: '=', '[', ']', control characters, and ';' as the first character. A
// disabled box shows the code of an existing site as it is.
class CodeEdit : public PlainEdit
{
    Q_OBJECT

public:
    using PlainEdit::PlainEdit;

protected:
    void Correct(QString& text, int& caret) override;
};

// A text box for numbers. Only typing is filtered: digits, Backspace and Ctrl+X pass, every other character
// is dropped, Ctrl+C and Ctrl+V too. Text that comes in by other means (Shift+Ins, menu, drop, code) is taken
// as it is, but for line breaks.
class DigitsEdit : public PlainEdit
{
    Q_OBJECT

public:
    explicit DigitsEdit(QWidget* parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
};

} // namespace corvrec
