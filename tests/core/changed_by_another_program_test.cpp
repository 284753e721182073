#include "tests/support/probed_calls.h"
#include "tests/support/reference_profile.h"
#include "tests/support/sample.h"
#include "tests/support/settings_file.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <gtest/gtest.h>
#include <iostream>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace corvrec
{

namespace
{

const unsigned kChangesInside = SampleOrAll(625U, 625U, 10'000U);

// All seeds, or only the one in CORVREC_SEED, which a failure names.
std::vector<unsigned> Seeds()
{
    if (const char* const seed = std::getenv("CORVREC_SEED"))
        return {static_cast<unsigned>(std::strtoul(seed, nullptr, 10))};
    std::vector<unsigned> seeds(kChangesInside);
    std::iota(seeds.begin(), seeds.end(), 0U);
    return seeds;
}

// Random choices that are the same for the same seed on every machine.
class Choices
{
public:
    explicit Choices(unsigned seed)
        : random_(seed)
    {
    }

    std::size_t Below(std::size_t end) { return random_() % end; }
    bool OneOf(std::size_t count) { return Below(count) == 0; }
    template <typename Values>
    auto AnyOf(const Values& values)
    {
        return *(std::begin(values) + static_cast<std::ptrdiff_t>(Below(std::size(values))));
    }

private:
    std::mt19937 random_;
};

constexpr std::array<std::string_view, 4> kSections = {"Siti", "General", "MI", "NA"};
constexpr std::array<std::string_view, 5> kKeys = {"Com", "Ogni", "Ora", "MI", "Dati"};

std::string AnyValue(Choices& choices)
{
    // Few lengths, so that files of equal size are common.
    constexpr std::array<std::size_t, 5> lengths = {0, 4, 4, 4, 40};
    std::string value(choices.AnyOf(lengths), static_cast<char>('a' + choices.Below(26)));
    return value;
}

std::string AnyLine(Choices& choices)
{
    constexpr std::array<std::string_view, 4> others = {"; a comment", "", "bare", "  \t"};
    constexpr std::array<std::string_view, 4> ends = {"\r\n", "\r\n", "\n", "\r"};
    const std::string line = choices.OneOf(5) ? std::string(choices.AnyOf(others))
                                              : std::string(choices.AnyOf(kKeys)) +
                                                    (choices.OneOf(4) ? " = " : "=") + AnyValue(choices);
    return line + std::string(choices.AnyOf(ends));
}

// Sometimes longer than a page.
std::string AnyFile(Choices& choices)
{
    std::string bytes;
    const std::size_t sections = choices.Below(6);
    for (std::size_t section = 0; section < sections; ++section) {
        bytes += "[" + std::string(choices.AnyOf(kSections)) + "]\r\n";
        const std::size_t lines = choices.OneOf(20) ? 200 : choices.Below(6);
        for (std::size_t line = 0; line < lines; ++line)
            bytes += AnyLine(choices);
    }
    if (choices.OneOf(3))
        bytes += "Last=without end";
    return bytes;
}

enum class Kind { write, deleteKey, deleteSection };

struct Operation {
    Kind kind = Kind::write;
    std::string section;
    std::string key;
    std::string value;
};

Operation AnyOperation(Choices& choices)
{
    constexpr std::array kinds = {Kind::write, Kind::write, Kind::write, Kind::deleteKey,
                                  Kind::deleteSection};
    return {.kind = choices.AnyOf(kinds),
            .section = std::string(choices.AnyOf(kSections)),
            .key = std::string(choices.AnyOf(kKeys)),
            .value = AnyValue(choices)};
}

// file: a ProfileFile or the model.
template <typename File>
bool Make(const Operation& operation, File& file)
{
    switch (operation.kind) {
    case Kind::write:
        return file.Write(operation.section, operation.key, operation.value);
    case Kind::deleteKey:
        return file.DeleteKey(operation.section, operation.key);
    case Kind::deleteSection:
        break;
    }
    return file.DeleteSection(operation.section);
}

std::string BytesAfter(const Operation& operation, std::string_view before)
{
    ReferenceProfile model(before);
    Make(operation, model);
    return model.Bytes();
}

std::string ValueIn(std::string_view bytes, std::string_view section, std::string_view key)
{
    return ReferenceProfile(bytes).Read(section, key, 100).value_or("none");
}

// One operation during which another program changes the file, just before one of our calls.
struct Inside {
    explicit Inside(unsigned seed)
        : choices(seed)
        , ours(AnyFile(choices))
        , theirs(choices.OneOf(3) ? Mutated(ours) : AnyFile(choices))
        , settings(ours)
        , profile(OpenProfileFile(settings.Path(), calls))
    {
        profile->Read("General", "Com", "", 100);
        calls.ForgetMade();
    }

    static std::string Mutated(std::string bytes)
    {
        std::ranges::replace(bytes, 'm', 'n');
        return bytes;
    }

    void ChangeAt(std::size_t call)
    {
        changedAt = call;
        if (isReplaced)
            calls.ReplaceAt(call, settings.Path(), theirs);
        else
            calls.RewriteAt(call, settings.Path(), theirs);
    }

    // Whether the change happened before the last call with that name.
    [[nodiscard]] bool IsBefore(std::string_view name) const
    {
        const auto& made = calls.Made();
        const auto last = std::find(made.rbegin(), made.rend(), name);
        return last != made.rend() && changedAt < static_cast<std::size_t>(made.rend() - last);
    }

    // The other program's bytes, overwritten where we wrote after the change. A truncation of ours may have
    // shortened them, and a gap before our bytes is filled with NULs.
    void ExpectOnlyOurBytes() const
    {
        const std::string left = settings.Bytes();
        std::string expected = theirs;
        for (const ProbedCalls::Piece& piece : calls.Pieces()) {
            if (piece.call < changedAt)
                continue;
            expected.resize(std::max(expected.size(), piece.End()));
            expected.replace(piece.begin, piece.count, left, piece.begin, piece.count);
        }
        if (IsBefore("ftruncate"))
            expected.resize(left.size());
        EXPECT_EQ(left, expected);
    }

    // Expects the object to report what the file holds.
    void ExpectTruth()
    {
        calls.Mend();
        const std::string bytes = settings.Bytes();
        for (const std::string_view section : kSections) {
            for (const std::string_view key : kKeys)
                EXPECT_EQ(profile->Read(section, key, "none", 100), ValueIn(bytes, section, key))
                    << section << " " << key;
        }
    }

    Choices choices;
    std::string ours;
    std::string theirs;
    bool isReplaced = choices.OneOf(3);
    ProbedCalls calls;
    SettingsFile settings;
    std::unique_ptr<ProfileFile> profile;
    std::size_t changedAt = 0;
};

TEST(ChangedByAnotherProgram, DuringAReadGivesTheOldValueOrTheNew)
{
    for (const unsigned seed : Seeds()) {
        SCOPED_TRACE("CORVREC_SEED=" + std::to_string(seed));
        Inside inside(seed);
        inside.ChangeAt(inside.choices.Below(5)); // stat, open, pread, fstat, close
        const std::string_view section = inside.choices.AnyOf(kSections);
        const std::string_view key = inside.choices.AnyOf(kKeys);

        const std::string value = inside.profile->Read(section, key, "none", 100);

        EXPECT_TRUE(value == ValueIn(inside.ours, section, key) ||
                    value == ValueIn(inside.theirs, section, key));
        inside.ExpectTruth();
        ASSERT_FALSE(HasFailure());
    }
}

// There is no lock. A change before our read is kept whole. A change between our read and our write loses the
// bytes that we write, and its end where we shorten the file; the rest stays.
TEST(ChangedByAnotherProgram, DuringAWriteIsKeptExceptForTheWrittenBytes)
{
    std::array<int, 3> seen = {};
    for (const unsigned seed : Seeds()) {
        SCOPED_TRACE("CORVREC_SEED=" + std::to_string(seed));
        Inside inside(seed);
        const Operation operation = AnyOperation(inside.choices);
        inside.ChangeAt(inside.choices.Below(
            7)); // open, fstat, pread, perhaps fallocate, pwrite, ftruncate; fstat, close

        EXPECT_TRUE(Make(operation, *inside.profile));

        const std::string left = inside.settings.Bytes();
        const auto& made = inside.calls.Made();
        if (inside.changedAt >= made.size()) {
            EXPECT_EQ(left, BytesAfter(operation, inside.ours)); // the change never happened
        } else if (inside.IsBefore(inside.isReplaced ? "open" : "pread")) {
            ++seen[0];
            EXPECT_EQ(left, BytesAfter(operation, inside.theirs));
        } else if (inside.isReplaced || inside.calls.Pieces().empty() ||
                   !(inside.IsBefore("pwrite") || inside.IsBefore("ftruncate"))) {
            ++seen[1];
            EXPECT_EQ(left, inside.theirs);
        } else {
            ++seen[2];
            inside.ExpectOnlyOurBytes();
        }
        inside.ExpectTruth();
        ASSERT_FALSE(HasFailure());
    }
    std::cout << seen[0] << " changes kept whole, " << seen[1] << " replaced ours, " << seen[2]
              << " kept except for our bytes\n";
}

} // namespace

} // namespace corvrec
