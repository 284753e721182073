#pragma once

#include "core/masked_text.h"
#include "ui/widgets/line_edits.h"

#include <QPoint>

#include <optional>

namespace corvrec
{

// A masked edit box for times and dates ("##:##", "##/##/##"); with an empty mask a plain text box. text()
// always returns the whole displayed text, including literals and prompts. However the user edits (keys,
// input method, paste, cut, drop), the change is applied to a MaskedText, so the box never shows a text that
// does not fit. A selection made when the focus arrives (in a handler of QEvent::FocusIn) survives the click
// that brought the focus, unless the mouse is dragged.
class MaskEdit : public PlainEdit
{
    Q_OBJECT
    Q_PROPERTY(QString mask READ mask WRITE setMask)
    Q_PROPERTY(QString format READ format WRITE setFormat)

public:
    explicit MaskEdit(QWidget* parent = nullptr);

    // Setting a mask empties the text to literals and prompts.
    QString mask() const;
    void setMask(const QString& mask);

    // The display format without the focus. For a complete time "hh:mm" shows the same text.
    QString format() const;
    void setFormat(const QString& format);

    // The text must fit the mask: this is asserted, and a misfit changes nothing.
    void setText(const QString& text);

    // Limited to the text. Works without the focus and does not take it.
    void setSelection(int start, int length);

    // Replaces the selected places: the digits are filled in from the selection's start, skipping literals.
    void setSelText(const QString& text);

protected:
    void Correct(QString& text, int& caret) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    struct Selection {
        int start = 0;
        int length = 0;
    };

    void Show();

    // Moves the caret for Backspace and Delete so that they delete a digit.
    void StepOverLiterals(const QKeyEvent& event);

    MaskedText masked_;
    QString format_;
    std::optional<Selection> selectedByFocus_; // between a click's focus event and its press
    std::optional<Selection> selectedAfter_;   // between that press and its release
    QPoint pressedAt_;
};

} // namespace corvrec
