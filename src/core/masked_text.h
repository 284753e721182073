#pragma once

#include <string>
#include <string_view>

namespace corvrec
{

// The text of a masked edit box: '#' in the mask is a place for a digit, shown as '_' while it is empty;
// every other character of the mask is a literal that stays where it is. With an empty mask any text is held
// as it comes. Places never shift: a digit that is deleted leaves its place empty. Positions count characters
// from 0.
class MaskedText
{
public:
    static constexpr char32_t kPrompt = U'_';

    const std::u32string& Mask() const { return mask_; }
    void SetMask(std::u32string_view mask); // the text is emptied to literals and prompts

    const std::u32string& Text() const { return text_; }
    bool Accepts(std::u32string_view text) const; // fits the mask place by place, same length
    bool SetText(std::u32string_view text); // false, and no change, when it does not fit; the caret goes to 0

    std::size_t Caret() const { return caret_; }

    // The places of [start, start + length) are emptied, then the characters of inserted are put in from
    // start on, one a place, stepping over literals; what does not fit is dropped. A literal among them moves
    // on behind the next literal, if that is the same one ("8:30" fills "8_:30"). The caret ends behind the
    // last character put in, and behind a literal that follows it. False when nothing of inserted fits: then
    // the text is left alone. Typing, deleting and pasting are all this.
    bool Replace(std::size_t start, std::size_t length, std::u32string_view inserted);

    // Where the caret belongs before Backspace or Delete takes a character, so that it takes one of a place:
    // literals in front of it, or at it, are stepped over.
    std::size_t BehindPlace(std::size_t caret) const;
    std::size_t AtPlace(std::size_t caret) const;

private:
    struct Filling;

    bool IsPlace(std::size_t position) const { return mask_[position] == U'#'; }
    bool Put(Filling& filling, char32_t character) const;
    bool PutDigit(Filling& filling, char32_t digit) const;
    bool PassLiteral(Filling& filling, char32_t literal) const;

    std::u32string mask_;
    std::u32string text_;
    std::size_t caret_ = 0;
};

} // namespace corvrec
