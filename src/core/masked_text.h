#pragma once

#include <string>
#include <string_view>

namespace corvrec
{

// The text of a masked edit box. Each '#' in the mask is a place for one digit, shown as '_' while it is
// empty; every other character is a literal that never moves. Deleting a digit leaves its place empty:
// nothing shifts. An empty mask accepts any text. Positions count characters from 0.
class MaskedText
{
public:
    // Shown in an empty place.
    static constexpr char32_t kPrompt = U'_';

    const std::u32string& Mask() const { return mask_; }
    // Also empties the text to literals and prompts.
    void SetMask(std::u32string_view mask);

    const std::u32string& Text() const { return text_; }
    // Whether the text has the mask's length and fits it place by place.
    bool Accepts(std::u32string_view text) const;
    // Moves the caret to 0. False, and no change, when the text does not fit.
    bool SetText(std::u32string_view text);

    // Where the box should put its caret after the last change.
    std::size_t Caret() const { return caret_; }

    // Empties the places in [start, start + length), then fills in the characters of `inserted` from start
    // on, one per place, skipping literals. Characters that do not fit are dropped. A literal in `inserted`
    // moves on past the next literal if the two are equal ("8:30" gives "8_:30"). The caret ends after the
    // last character filled in and after any literal that follows it. False when nothing of `inserted` fits:
    // the text is left unchanged. Typing, deleting and pasting all go through here.
    bool Replace(std::size_t start, std::size_t length, std::u32string_view inserted);

    // Where to put the caret before Backspace (CaretForBackspace) or Delete (CaretForDelete) so that it
    // deletes from a place: literals next to the caret are skipped.
    std::size_t CaretForBackspace(std::size_t caret) const;
    std::size_t CaretForDelete(std::size_t caret) const;

private:
    // The text during Replace, before it is known whether anything fits.
    struct Filling;

    bool IsPlace(std::size_t position) const { return mask_[position] == U'#'; }

    // False when the character does not fit.
    bool Put(Filling& filling, char32_t character) const;
    bool PutDigit(Filling& filling, char32_t digit) const;
    bool PassLiteral(Filling& filling, char32_t literal) const;

    std::u32string mask_;
    std::u32string text_;
    std::size_t caret_ = 0;
};

} // namespace corvrec
