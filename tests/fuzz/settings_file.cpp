// The settings file, with any content and after any operations, compared with a simple model: the same
// results and the same bytes after each operation.
//
// Input: the file's bytes, then operations, all separated by '|'. An operation is a letter and its
// parameters, the first of them directly after the letter: "[Siti]\nA=1|rSiti|A|missing|100|wSiti|B|two".

#include "tests/fuzz/fuzzing.h"
#include "tests/fuzz/memory_calls.h"
#include "tests/support/reference_profile.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>

namespace corvrec::fuzz
{

namespace
{

constexpr std::size_t kUsualSize = 100;

class World
{
public:
    explicit World(std::string_view bytes)
        : files_{Opened(), Opened()}
    {
        if (!bytes.empty())
            calls_.Rewrite(bytes);
    }

    void Do(std::string_view operation, Fields& fields)
    {
        if (operation.empty())
            return;
        const std::string_view first = operation.substr(1);
        if (!Ask(operation.front(), first, fields) && !Change(operation.front(), first, fields))
            Interfere(operation.front(), first, fields);
        Check(!calls_.IsOpen(), "no descriptor stays open between the operations");
    }

private:
    std::unique_ptr<ProfileFile> Opened() { return OpenProfileFile("/nowhere/Corvrec.ini", calls_); }

    ProfileFile& File() { return *files_.at(current_); }

    [[nodiscard]] bool IsReadable() const
    {
        const auto kind = calls_.FileKind();
        return kind == MemoryCalls::Kind::regular || kind == MemoryCalls::Kind::unwritable;
    }

    [[nodiscard]] bool IsWritable() const
    {
        const auto kind = calls_.FileKind();
        return kind == MemoryCalls::Kind::regular || kind == MemoryCalls::Kind::missing;
    }

    // Operations that only read.
    bool Ask(char operation, std::string_view first, Fields& fields)
    {
        const std::size_t changes = calls_.Changes();
        switch (operation) {
        case 'r': {
            const std::string_view key = fields.Text();
            const std::string_view fallback = fields.Text();
            const std::size_t size = fields.Number(kUsualSize);
            Check(File().Read(first, key, fallback, size) ==
                      Model().Read(first, key, size).value_or(Fallback(fallback, size)),
                  "a value reads as in the model");
            break;
        }
        case 'k': {
            const std::string_view fallback = fields.Text();
            const std::size_t size = fields.Number(kUsualSize);
            Check(File().Keys(first, fallback, size) ==
                      Model().Keys(first, size).value_or(Fallback(fallback, size)),
                  "keys are listed as in the model");
            break;
        }
        case 'f':
            File().Flush();
            break;
        default:
            return false;
        }
        Check(calls_.Changes() == changes, "reading changes nothing");
        return true;
    }

    bool Change(char operation, std::string_view first, Fields& fields)
    {
        switch (operation) {
        case 'w': {
            const std::string_view key = fields.Text();
            const std::string_view value = fields.Text();
            CheckChange([&](auto& file) { return file.Write(first, key, value); });
            return true;
        }
        case 'W': { // a long value
            const std::string_view key = fields.Text();
            const std::string value = Repeated(fields);
            CheckChange([&](auto& file) { return file.Write(first, key, value); });
            return true;
        }
        case 'd': {
            const std::string_view key = fields.Text();
            CheckChange([&](auto& file) { return file.DeleteKey(first, key); });
            return true;
        }
        case 'D':
            CheckChange([&](auto& file) { return file.DeleteSection(first); });
            return true;
        default:
            return false;
        }
    }

    // Actions of other programs and of the system.
    void Interfere(char operation, std::string_view first, Fields& fields)
    {
        const std::size_t number = Fields::NumberOf(first, 0);
        switch (operation) {
        case 'o': // the other object on the same file
            current_ = 1 - current_;
            break;
        case 'O': // a new object, which has read nothing yet
            files_.at(current_) = Opened();
            break;
        case 'x':
            calls_.Rewrite(first);
            break;
        case 'X':
            calls_.Rewrite(calls_.Bytes() + std::string(first) + Repeated(fields));
            break;
        case 'n':
            calls_.Replace(first);
            break;
        case 'N':
            calls_.ReplaceWithSameTimes(first);
            break;
        case 'b':
            calls_.RewriteAndSetBack(first);
            break;
        case 'c':
            calls_.SetKind(static_cast<MemoryCalls::Kind>(number % 5)); // its five enumerators
            break;
        case 't':
            calls_.Wait(static_cast<std::int64_t>(number % 10'000));
            break;
        case 'l':
            largestSize_ = number;
            calls_.SetLargestSize(number);
            break;
        case 's':
            calls_.SetMood({.interrupts = (number & 1U) != 0,
                            .movesLittle = (number & 2U) != 0,
                            .cannotReserve = (number & 4U) != 0,
                            .hasForeignTimes = (number & 8U) != 0,
                            .countsTwoSeconds = (number & 16U) != 0});
            break;
        default:
            break;
        }
    }

    // The next field, repeated as often as the field after it says, up to a length that is still fast.
    static std::string Repeated(Fields& fields)
    {
        constexpr std::size_t longest = 5000; // more than a page
        const std::string_view text = fields.Text();
        const std::size_t count = fields.Number(1);
        std::string repeated;
        for (std::size_t i = 0; i < count && repeated.size() + text.size() <= longest && !text.empty(); ++i)
            repeated += text;
        return repeated;
    }

    // A missing file counts as empty.
    [[nodiscard]] std::string_view Content() const
    {
        return calls_.FileKind() == MemoryCalls::Kind::missing ? std::string_view() : calls_.Bytes();
    }

    [[nodiscard]] ReferenceProfile Model() const
    {
        return ReferenceProfile(IsReadable() ? calls_.Bytes() : std::string_view());
    }

    // The fallback as the profile functions return it.
    static std::string Fallback(std::string_view fallback, std::size_t size)
    {
        fallback = fallback.substr(0, fallback.find('\0'));
        while (fallback.ends_with(' '))
            fallback.remove_suffix(1);
        return std::string(fallback.substr(0, size == 0 ? 0 : size - 1));
    }

    // change: makes the same change in the file and in the model.
    template <typename Change>
    void CheckChange(Change change)
    {
        const std::string before(Content());
        ReferenceProfile model(before);
        const bool isPossible = change(model);
        const std::string after = model.Bytes();
        const std::size_t changes = calls_.Changes();
        const bool wasThere = calls_.FileKind() == MemoryCalls::Kind::regular;
        const bool fits = isPossible && (after.size() <= before.size() || after.size() <= largestSize_);
        const bool isDone = change(File());
        Check(isDone == (IsWritable() && fits), "a change succeeds as in the model");
        Check(Content() == (isDone ? after : before), "the file holds what the model holds");
        Check(!isDone || !wasThere || after != before || calls_.Changes() == changes,
              "an equal value is not written");
    }

    MemoryCalls calls_;
    std::array<std::unique_ptr<ProfileFile>, 2> files_;
    std::size_t current_ = 0;
    std::size_t largestSize_ = std::numeric_limits<std::size_t>::max();
};

} // namespace

} // namespace corvrec::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    corvrec::fuzz::Fields fields(data, size);
    corvrec::fuzz::World world(fields.Text());
    while (!fields.AtEnd())
        world.Do(fields.Text(), fields);
    return 0;
}
