#include "ui/widgets/line_edits.h"

#include <QEvent>
#include <QFontMetrics>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QPalette>
#include <QStyle>
#include <QStyleOptionFrame>
#include <QValidator>

#include <algorithm>

namespace corvrec
{

namespace
{

bool IsLineBreakOrNul(QChar character)
{
    return character == u'\r' || character == u'\n' || character.isNull();
}

// Whether a name in the settings file can hold the character.
bool IsInNames(QChar character)
{
    return character != u'=' && character != u'[' && character != u']' &&
           character.category() != QChar::Other_Control;
}

// ASCII only: QChar::isDigit accepts the digits of every script.
bool IsDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}

// The text of a key pressed with Ctrl differs between window systems (letter, control code, nothing), so the
// key itself is examined.
bool IsControlLetter(const QKeyEvent& event)
{
    return event.modifiers().testFlag(Qt::ControlModifier) && event.key() >= Qt::Key_A &&
           event.key() <= Qt::Key_Z;
}

bool PassesFilter(const QKeyEvent& event)
{
    if (IsControlLetter(event))
        return event.key() == Qt::Key_X && !event.modifiers().testFlag(Qt::AltModifier);
    const QString text = event.text();
    // Backspace, Delete, Return, Tab and Escape have a control character as text, the other editing keys have
    // none.
    const bool isEditingKey = text.isEmpty() || text.front().category() == QChar::Other_Control;
    return isEditingKey || std::all_of(text.begin(), text.end(), IsDigit);
}

} // namespace

// QLineEdit passes each new text to its validator, however it came in, and adopts the corrected one.
class PlainEdit::Corrector : public QValidator
{
public:
    explicit Corrector(PlainEdit& edit)
        : QValidator(&edit)
        , edit_(edit)
    {
    }

    State validate(QString& text, int& caret) const override
    {
        edit_.Correct(text, caret);
        return Acceptable;
    }

private:
    PlainEdit& edit_;
};

PlainEdit::PlainEdit(QWidget* parent)
    : QLineEdit(parent)
{
    setValidator(new Corrector(*this));
    SetColours();
}

void PlainEdit::setWidestText(const QString& text)
{
    widestText_ = text;
    setSizePolicy(text.isEmpty() ? QSizePolicy::Expanding : QSizePolicy::Fixed,
                  sizePolicy().verticalPolicy());
    updateGeometry();
}

void PlainEdit::setReadableWhenDisabled(bool readable)
{
    readableWhenDisabled_ = readable;
    SetColours();
}

QSize PlainEdit::sizeHint() const
{
    return AsWideAsText(QLineEdit::sizeHint());
}

QSize PlainEdit::minimumSizeHint() const
{
    return AsWideAsText(QLineEdit::minimumSizeHint());
}

bool PlainEdit::event(QEvent* event)
{
    const bool isHandled = QLineEdit::event(event);
    switch (event->type()) {
    case QEvent::FocusIn:
    case QEvent::FocusOut:
    case QEvent::WindowActivate: // the focus may have moved while another window was in front
    case QEvent::PaletteChange:
        SetColours();
        break;
    default:
        break;
    }
    return isHandled;
}

// QLineEdit paints with its palette: without a brush, a selection looks like the rest of the text. All other
// brushes remain the theme's.
void PlainEdit::SetColours()
{
    const bool hidesSelection = window()->focusWidget() != this;
    const QBrush disabledText =
        readableWhenDisabled_ ? palette().brush(QPalette::Active, QPalette::Text) : QBrush();
    if (hidesSelection == hidesSelection_ && disabledText == disabledText_)
        return;
    hidesSelection_ = hidesSelection;
    disabledText_ = disabledText;
    QPalette colours;
    if (hidesSelection) {
        colours.setBrush(QPalette::Highlight, Qt::NoBrush);
        colours.setBrush(QPalette::HighlightedText, Qt::NoBrush);
    }
    if (readableWhenDisabled_)
        colours.setBrush(QPalette::Disabled, QPalette::Text, disabledText);
    setPalette(colours);
}

QSize PlainEdit::AsWideAsText(const QSize& size) const
{
    if (widestText_.isEmpty())
        return size;
    constexpr int textMargin = 2; // pixels that QLineEdit leaves free at each side of its text
    QStyleOptionFrame option;
    initStyleOption(&option);
    const QMargins margins = textMargins() + contentsMargins();
    const int caret = style()->pixelMetric(QStyle::PM_TextCursorWidth, &option, this);
    const int text = fontMetrics().horizontalAdvance(widestText_) + caret + 2 * textMargin + margins.left() +
                     margins.right();
    const QSize whole = style()->sizeFromContents(QStyle::CT_LineEdit, &option, {text, size.height()}, this);
    return {whole.width(), size.height()};
}

void PlainEdit::Correct(QString& text, int& caret)
{
    const auto inFront = std::min<qsizetype>(caret, text.size());
    caret -= static_cast<int>(std::count_if(text.cbegin(), text.cbegin() + inFront, IsLineBreakOrNul));
    text.removeIf(IsLineBreakOrNul);
}

void CodeEdit::Correct(QString& text, int& caret)
{
    PlainEdit::Correct(text, caret);
    if (!isEnabled())
        return;
    QString code;
    int droppedInFront = 0;
    for (qsizetype position = 0; position < text.size(); ++position) {
        const QChar character = text.at(position);
        // A name has no blanks at its ends, so they do not count as first character.
        const bool isFirst = std::ranges::all_of(code, [](QChar before) { return before == u' '; });
        if (IsInNames(character) && !(isFirst && character == u';'))
            code += character;
        else if (position < caret)
            ++droppedInFront;
    }
    text = code;
    caret -= droppedInFront;
}

DigitsEdit::DigitsEdit(QWidget* parent)
    : PlainEdit(parent)
{
}

void DigitsEdit::keyPressEvent(QKeyEvent* event)
{
    if (PassesFilter(*event))
        PlainEdit::keyPressEvent(event);
    else
        event->accept(); // dropped, and not offered to the window either
}

void DigitsEdit::inputMethodEvent(QInputMethodEvent* event)
{
    QString digits = event->commitString();
    digits.removeIf([](QChar character) { return !IsDigit(character); });
    QInputMethodEvent filtered(event->preeditString(), event->attributes());
    const bool dropsAll = digits.isEmpty() && !event->commitString().isEmpty();
    if (!dropsAll) // otherwise the text to be replaced stays
        filtered.setCommitString(digits, event->replacementStart(), event->replacementLength());
    PlainEdit::inputMethodEvent(&filtered);
    event->setAccepted(filtered.isAccepted());
}

} // namespace corvrec
