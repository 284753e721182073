#pragma once

#include <QBrush>
#include <QLineEdit>
#include <QString>

namespace corvrec
{

// A text box without line breaks and NULs, whether they come by keys, paste, drop, input method or code. It
// shows its selection only while it has the window's focus, so that at most one field of a window looks
// selected.
class PlainEdit : public QLineEdit
{
    Q_OBJECT
    Q_PROPERTY(QString widestText READ widestText WRITE setWidestText)
    Q_PROPERTY(bool readableWhenDisabled READ readableWhenDisabled WRITE setReadableWhenDisabled)

public:
    explicit PlainEdit(QWidget* parent = nullptr);

    // The field has exactly the width that this text needs; with an empty text Qt's usual width.
    QString widestText() const { return widestText_; }
    void setWidestText(const QString& text);

    // Whether the text keeps its normal colour while the field is disabled.
    bool readableWhenDisabled() const { return readableWhenDisabled_; }
    void setReadableWhenDisabled(bool readable);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    bool event(QEvent* event) override;

protected:
    // Called with every new text before it is shown, and with the caret's position; may correct both.
    virtual void Correct(QString& text, int& caret);

private:
    class Corrector;

    void SetColours();
    QSize AsWideAsText(const QSize& size) const;

    QString widestText_;
    bool readableWhenDisabled_ = false;
    bool hidesSelection_ = false;
    QBrush disabledText_; // no brush: the theme's
};

// The box for a site's code, which the settings file uses as the name of a key and of a section. Characters
// that such a name cannot hold are dropped: '=', '[', ']', control characters, and ';' as the first
// character. While disabled, the box shows an existing site's code unchanged.
class CodeEdit : public PlainEdit
{
    Q_OBJECT

public:
    using PlainEdit::PlainEdit;

protected:
    void Correct(QString& text, int& caret) override;
};

// A text box for numbers. Only typing is filtered: digits, Backspace and Ctrl+X pass; every other character
// is dropped, and so are Ctrl+C and Ctrl+V. Text that comes in another way (Shift+Ins, menu, drop, code) is
// taken as it is, except for line breaks and NULs.
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
