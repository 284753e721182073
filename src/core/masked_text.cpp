#include "core/masked_text.h"

#include <algorithm>

namespace corvrec
{

namespace
{

bool IsDigit(char32_t character)
{
    return character >= U'0' && character <= U'9';
}

} // namespace

struct MaskedText::Filling {
    std::u32string text;
    std::size_t caret;

    // Whether the literal before the caret may still be typed: the caret skipped it automatically, so typing
    // or pasting the same literal now means that one and not the next.
    bool literalOwed;
};

void MaskedText::SetMask(std::u32string_view mask)
{
    mask_ = mask;
    text_ = mask;
    std::replace(text_.begin(), text_.end(), U'#', kPrompt);
    caret_ = 0;
}

bool MaskedText::Accepts(std::u32string_view text) const
{
    const auto fits = [](char32_t masked, char32_t character) {
        return masked == U'#' ? IsDigit(character) || character == kPrompt : masked == character;
    };
    return mask_.empty() || std::equal(mask_.begin(), mask_.end(), text.begin(), text.end(), fits);
}

bool MaskedText::SetText(std::u32string_view text)
{
    if (!Accepts(text))
        return false;
    text_ = text;
    caret_ = 0;
    return true;
}

bool MaskedText::Replace(std::size_t start, std::size_t length, std::u32string_view inserted)
{
    start = std::min(start, text_.size());
    length = std::min(length, text_.size() - start);
    if (mask_.empty()) {
        text_.replace(start, length, inserted);
        caret_ = start + inserted.size();
        return true;
    }

    Filling filling{.text = text_, .caret = start, .literalOwed = true};
    for (std::size_t position = start; position < start + length; ++position) {
        if (IsPlace(position))
            filling.text[position] = kPrompt;
    }
    bool fits = inserted.empty();
    for (const char32_t character : inserted)
        fits = Put(filling, character) || fits;

    caret_ = filling.caret;
    if (fits)
        text_ = filling.text;
    return fits;
}

std::size_t MaskedText::CaretForBackspace(std::size_t caret) const
{
    std::size_t place = std::min(caret, mask_.size());
    while (place > 0 && !IsPlace(place - 1))
        --place;
    return place;
}

std::size_t MaskedText::CaretForDelete(std::size_t caret) const
{
    return std::min(mask_.find(U'#', caret), mask_.size());
}

bool MaskedText::Put(Filling& filling, char32_t character) const
{
    return IsDigit(character) ? PutDigit(filling, character) : PassLiteral(filling, character);
}

bool MaskedText::PutDigit(Filling& filling, char32_t digit) const
{
    const std::size_t place = CaretForDelete(filling.caret);
    if (place == mask_.size())
        return false;
    filling.text[place] = digit;
    filling.caret = std::min(mask_.find(U'#', place + 1), mask_.size());
    filling.literalOwed = true;
    return true;
}

bool MaskedText::PassLiteral(Filling& filling, char32_t literal) const
{
    const auto isThisLiteral = [&](std::size_t position) {
        return position < mask_.size() && !IsPlace(position) && mask_[position] == literal;
    };
    const bool alreadyPassed = filling.literalOwed && filling.caret > 0 && isThisLiteral(filling.caret - 1);
    const std::size_t next = mask_.find_first_not_of(U'#', filling.caret);
    if (!alreadyPassed && !isThisLiteral(next))
        return false;
    if (!alreadyPassed)
        filling.caret = next + 1;
    filling.literalOwed = false;
    return true;
}

} // namespace corvrec
