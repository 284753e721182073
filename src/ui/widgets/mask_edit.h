#pragma once

#include "core/masked_text.h"
#include "ui/widgets/line_edits.h"

#include <QPoint>

#include <optional>

namespace corvrec
{

// A masked edit box for times and dates ("##:##", "##/##/##"; with an empty mask a plain text box). text() is
// always the whole shown text with literals and prompts. However the user edits (keys, input method, paste,
// cut, drop), the edit is carried over to a MaskedText, so the box never shows what does not fit.
// What is selected when the focus comes (by a handler of QEvent::FocusIn) stays selected after the click that
// brings it, unless the mouse is dragged.
class MaskEdit : public PlainEdit
{
    Q_OBJECT
    Q_PROPERTY(QString mask READ mask WRITE setMask)
    Q_PROPERTY(QString format READ format WRITE setFormat)

public:
    explicit MaskEdit(QWidget* parent = nullptr);

    // A new mask empties the text to its literals and prompts.
    QString mask() const;
    void setMask(const QString& mask);

    // Display format for when the focus is away; for a complete time "hh:mm" shows the same text.
    QString format() const;
    void setFormat(const QString& format);

    // A text that does not fit the mask is a mistake of the caller: asserted, and the text stays.
    void setText(const QString& text);

    // Clipped to the text; possible without the focus, and does not take it.
    void setSelection(int start, int length);

    // Replaces the selected places: the digits go in from the selection's start, stepping over literals.
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
    void StepOverLiterals(const QKeyEvent& event);

    MaskedText masked_;
    QString format_;
    std::optional<Selection> selectedByFocus_; // from a click that brings the focus to its press
    std::optional<Selection> selectedAfter_;   // from that press to its release
    QPoint pressedAt_;
};

} // namespace corvrec
