// The masked edit box under any sequence of edits, compared with a simple model: the same text, the same
// caret, and a text that always fits its mask.
//
// Input: the mask, then operations, all separated by '|'. An operation is a letter and its text or positions:
// "##:##|t8|t:|p30|s0|2|t12|b|d".

#include "core/masked_text.h"
#include "tests/fuzz/fuzzing.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace corvrec::fuzz
{

namespace
{

constexpr std::size_t kNowhere = std::u32string::npos;

bool IsDigit(char32_t character)
{
    return character >= U'0' && character <= U'9';
}

// Maps bytes above ASCII to Arabic digits, which Unicode counts as digits and the mask refuses.
std::u32string TextOf(std::string_view bytes)
{
    std::u32string text;
    for (const char byte : bytes) {
        const auto number = static_cast<unsigned char>(byte);
        text += static_cast<char32_t>(number < 0x80 ? number : 0x660 + number % 10);
    }
    return text;
}

// A text of places and literals, edited one character at a time.
struct Model {
    std::u32string mask;
    std::u32string text;
    std::size_t caret = 0;
    bool hasSteppedOver = true; // the caret skipped the literals before it by itself

    explicit Model(const std::u32string& newMask)
        : mask(newMask)
        , text(newMask)
    {
        std::ranges::replace(text, U'#', U'_');
    }

    [[nodiscard]] bool IsLiteral(std::size_t position) const
    {
        return position < mask.size() && mask[position] != U'#';
    }

    // Whether each place has a digit or a prompt and each literal is where the mask has it. Without a mask
    // any text fits.
    [[nodiscard]] bool Fits(const std::u32string& candidate) const
    {
        if (mask.empty())
            return true;
        if (candidate.size() != mask.size())
            return false;
        for (std::size_t i = 0; i < mask.size(); ++i) {
            const bool isFitting =
                IsLiteral(i) ? candidate[i] == mask[i] : IsDigit(candidate[i]) || candidate[i] == U'_';
            if (!isFitting)
                return false;
        }
        return true;
    }

    bool Put(char32_t character)
    {
        std::size_t position = caret;
        if (IsDigit(character)) {
            while (IsLiteral(position))
                ++position;
            if (position == mask.size())
                return false;
            text[position++] = character;
            while (IsLiteral(position))
                ++position;
            caret = position;
            hasSteppedOver = true;
            return true;
        }
        if (hasSteppedOver && caret > 0 && IsLiteral(caret - 1) && mask[caret - 1] == character) {
            hasSteppedOver = false;
            return true;
        }
        while (position < mask.size() && !IsLiteral(position))
            ++position;
        if (position == mask.size() || mask[position] != character)
            return false;
        caret = position + 1;
        hasSteppedOver = false;
        return true;
    }

    bool Replace(std::size_t start, std::size_t length, const std::u32string& inserted)
    {
        const Model before = *this;
        start = std::min(start, text.size());
        length = std::min(length, text.size() - start);
        caret = start;
        hasSteppedOver = true;
        if (mask.empty()) {
            text = text.substr(0, start) + inserted + text.substr(start + length);
            caret += inserted.size();
            return true;
        }
        for (std::size_t i = start; i < start + length; ++i)
            text[i] = IsLiteral(i) ? text[i] : U'_';
        const auto taken =
            std::ranges::count_if(inserted, [&](char32_t character) { return Put(character); });
        if (taken > 0 || inserted.empty())
            return true;
        text = before.text;
        return false;
    }
};

// The box as a user sees it: a caret, and a selection that starts there.
class Box
{
public:
    explicit Box(std::string_view mask)
        : model_(std::u32string())
    {
        SetMask(TextOf(mask));
    }

    void Do(std::string_view operation, Fields& fields)
    {
        if (operation.empty())
            return;
        const std::string_view first = operation.substr(1);
        switch (operation.front()) {
        case 'm':
            SetMask(TextOf(first));
            break;
        case 'x':
            SetText(TextOf(first));
            break;
        case 's': // also beyond the text
            caret_ = Fields::NumberOf(first, 0);
            selected_ = fields.Number(0);
            break;
        case 't': // also a paste
            Replace(caret_, selected_, TextOf(first));
            break;
        case 'b':
            EraseBefore();
            break;
        case 'd':
            EraseAt();
            break;
        case 'a':
            PasteOwnText();
            break;
        default:
            break;
        }
    }

private:
    void Compare() const
    {
        Check(masked_.Text() == model_.text, "the text is that of the model");
        Check(masked_.Caret() <= masked_.Text().size(), "the caret is within the text");
        Check(model_.Fits(masked_.Text()), "the text fits its mask");
    }

    void SetMask(const std::u32string& mask)
    {
        masked_.SetMask(mask);
        model_ = Model(mask);
        MoveTo(0);
        Compare();
    }

    void SetText(const std::u32string& text)
    {
        const bool fits = model_.Fits(text);
        Check(masked_.Accepts(text) == fits, "a text is accepted when it fits");
        const bool isSet = masked_.SetText(text);
        Check(isSet == fits, "a text is set when it fits");
        if (isSet) {
            model_.text = text;
            MoveTo(masked_.Caret());
        }
        Compare();
    }

    void Replace(std::size_t start, std::size_t length, const std::u32string& inserted)
    {
        const bool isDone = masked_.Replace(start, length, inserted);
        Check(isDone == model_.Replace(start, length, inserted), "an edit fits as in the model");
        Check(masked_.Caret() == model_.caret, "the caret is where the model has it");
        Compare();
        MoveTo(masked_.Caret());
    }

    void EraseBefore()
    {
        if (selected_ > 0)
            return Replace(caret_, selected_, {});
        const std::size_t place = masked_.CaretForBackspace(caret_);
        Check(place <= caret_ && (place == 0 || !model_.IsLiteral(place - 1)),
              "a backspace starts after a place");
        if (place > 0)
            Replace(place - 1, 1, {});
    }

    void EraseAt()
    {
        if (selected_ > 0)
            return Replace(caret_, selected_, {});
        const std::size_t place = masked_.CaretForDelete(caret_);
        Check(!model_.IsLiteral(place), "a deletion starts at a place");
        Replace(place, 1, {});
    }

    // Whether no literals are adjacent and none is a digit, as in a time or a date.
    [[nodiscard]] bool HasUsualMask() const
    {
        for (std::size_t i = 0; i < masked_.Mask().size(); ++i) {
            if (IsDigit(masked_.Mask()[i]) || (model_.IsLiteral(i) && model_.IsLiteral(i + 1)))
                return false;
        }
        return true;
    }

    void PasteOwnText()
    {
        const std::u32string text = masked_.Text();
        const bool isComplete = text.find(MaskedText::kPrompt) == kNowhere;
        Replace(0, text.size(), text);
        Check(!isComplete || !HasUsualMask() || masked_.Text() == text,
              "a complete text stays when it is pasted over itself");
    }

    void MoveTo(std::size_t caret)
    {
        caret_ = caret;
        selected_ = 0;
    }

    MaskedText masked_;
    Model model_;
    std::size_t caret_ = 0;
    std::size_t selected_ = 0;
};

} // namespace

} // namespace corvrec::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    corvrec::fuzz::Fields fields(data, size);
    corvrec::fuzz::Box box(fields.Text());
    while (!fields.AtEnd())
        box.Do(fields.Text(), fields);
    return 0;
}
