#include "ui/widgets/mask_edit.h"

#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>

#include <algorithm>
#include <array>
#include <cassert>
#include <utility>

namespace corvrec
{

namespace
{

std::size_t Index(qsizetype position)
{
    return static_cast<std::size_t>(position); // a position in a text is never negative
}

// A change of a text: `length` characters from `start` on were replaced by `inserted`.
struct Edit {
    qsizetype start = 0;
    qsizetype length = 0;
    QString inserted;
};

// Finds the change. Between equal characters only the caret shows which one was typed or deleted: it is just
// after what was inserted.
Edit Difference(const QString& before, const QString& after, qsizetype caret)
{
    const auto tail = std::mismatch(before.crbegin(), before.crend(), after.crbegin(), after.crend());
    const qsizetype sameBehind = std::min<qsizetype>(tail.first - before.crbegin(), after.size() - caret);
    const qsizetype end = after.size() - sameBehind;
    const auto head =
        std::mismatch(before.cbegin(), before.cend() - sameBehind, after.cbegin(), after.cbegin() + end);
    const qsizetype start = head.first - before.cbegin();
    return {.start = start,
            .length = before.size() - sameBehind - start,
            .inserted = after.mid(start, end - start)};
}

} // namespace

MaskEdit::MaskEdit(QWidget* parent)
    : PlainEdit(parent)
{
}

QString MaskEdit::mask() const
{
    return QString::fromStdU32String(masked_.Mask());
}

void MaskEdit::setMask(const QString& mask)
{
    masked_.SetMask(mask.toStdU32String());
    Show();
}

QString MaskEdit::format() const
{
    return format_;
}

void MaskEdit::setFormat(const QString& format)
{
    format_ = format;
}

void MaskEdit::setText(const QString& text)
{
    [[maybe_unused]] const bool fits = masked_.SetText(text.toStdU32String());
    assert(fits);
    Show();
}

void MaskEdit::setSelection(int start, int length)
{
    const int size = static_cast<int>(text().size());
    const int first = std::clamp(start, 0, size);
    PlainEdit::setSelection(first, std::clamp(length, 0, size - first));
}

void MaskEdit::setSelText(const QString& text)
{
    if (masked_.Mask().empty()) {
        insert(text);
        return;
    }
    const int start = hasSelectedText() ? selectionStart() : cursorPosition();
    masked_.Replace(Index(start), Index(selectedText().size()), text.toStdU32String());
    Show();
}

void MaskEdit::Correct(QString& text, int& caret)
{
    if (masked_.Mask().empty()) {
        PlainEdit::Correct(text, caret);
        masked_.SetText(text.toStdU32String());
        return;
    }
    const QString shown = QString::fromStdU32String(masked_.Text());
    if (text == shown)
        return; // set by Show, or no change
    const Edit edit = Difference(shown, text, caret);
    if (!masked_.Replace(Index(edit.start), Index(edit.length), edit.inserted.toStdU32String()))
        QApplication::beep();
    text = QString::fromStdU32String(masked_.Text());
    caret = static_cast<int>(masked_.Caret());
}

void MaskEdit::keyPressEvent(QKeyEvent* event)
{
    if (!masked_.Mask().empty() && !hasSelectedText())
        StepOverLiterals(*event);
    PlainEdit::keyPressEvent(event);
}

void MaskEdit::focusInEvent(QFocusEvent* event)
{
    // With any other reason, Tab would select the whole text. A selection made before stays.
    QFocusEvent quiet(event->type(), Qt::OtherFocusReason);
    PlainEdit::focusInEvent(&quiet);
    selectedByFocus_.reset();
    // After the last place no digit can be typed.
    const std::array reasons{Qt::TabFocusReason, Qt::BacktabFocusReason, Qt::ShortcutFocusReason,
                             Qt::OtherFocusReason};
    const bool isEntered = std::ranges::find(reasons, event->reason()) != reasons.end();
    if (isEntered && !masked_.Mask().empty() && !hasSelectedText() && cursorPosition() == text().size())
        setCursorPosition(0);
    if (event->reason() == Qt::MouseFocusReason && hasSelectedText())
        selectedByFocus_ = Selection{.start = selectionStart(), .length = selectionLength()};
}

// The press comes after the focus and clears the selection, which mouseReleaseEvent restores.
void MaskEdit::mousePressEvent(QMouseEvent* event)
{
    PlainEdit::mousePressEvent(event);
    selectedAfter_ = std::exchange(selectedByFocus_, std::nullopt);
    pressedAt_ = event->pos();
}

void MaskEdit::mouseReleaseEvent(QMouseEvent* event)
{
    PlainEdit::mouseReleaseEvent(event);
    const std::optional<Selection> selection = std::exchange(selectedAfter_, std::nullopt);
    const bool isDragged = (event->pos() - pressedAt_).manhattanLength() >= QApplication::startDragDistance();
    if (selection && event->button() == Qt::LeftButton && !isDragged)
        setSelection(selection->start, selection->length);
}

void MaskEdit::Show()
{
    PlainEdit::setText(QString::fromStdU32String(masked_.Text()));
    setCursorPosition(static_cast<int>(masked_.Caret()));
}

void MaskEdit::StepOverLiterals(const QKeyEvent& event)
{
    if (event.key() == Qt::Key_Backspace)
        setCursorPosition(static_cast<int>(masked_.CaretForBackspace(Index(cursorPosition()))));
    else if (event.matches(QKeySequence::Delete))
        setCursorPosition(static_cast<int>(masked_.CaretForDelete(Index(cursorPosition()))));
}

} // namespace corvrec
