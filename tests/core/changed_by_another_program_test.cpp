#include "tests/core/ini_lines.h"
#include "tests/core/site_change.h"
#include "tests/core/timed_calls.h"
#include "tests/support/probed_calls.h"
#include "tests/support/settings_file.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iostream>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace corvrec
{

namespace
{

constexpr unsigned kInterleavings = 10'000;
constexpr int kSteps = 12;
constexpr unsigned kChangesInside = 10'000;

// All seeds below the end, or only the one in CORVREC_SEED, which a failure names.
std::vector<unsigned> Seeds(unsigned end)
{
    if (const char* const seed = std::getenv("CORVREC_SEED"))
        return {static_cast<unsigned>(std::strtoul(seed, nullptr, 10))};
    std::vector<unsigned> seeds(end);
    for (unsigned seed = 0; seed < end; ++seed)
        seeds[seed] = seed;
    return TakenOf(seeds);
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
    return std::string(choices.AnyOf(lengths), static_cast<char>('a' + choices.Below(26)));
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

// What the profile functions would read, worked out from the bytes alone.
std::string ValueIn(std::string_view bytes, std::string_view section, std::string_view key)
{
    const std::vector<IniLine> lines = LinesOf(bytes);
    const IniLine* const line = KeyOf(lines, section, key);
    return line == nullptr
               ? "none"
               : line->value.substr(std::min(line->value.find_first_not_of(" \t"), line->value.size()));
}

std::string KeysIn(std::string_view bytes, std::string_view section)
{
    const std::vector<IniLine> lines = LinesOf(bytes);
    const int number = SectionOf(lines, section);
    std::string names;
    for (const IniLine& line : lines) {
        if (number >= 0 && line.section == number && line.kind == IniLine::Kind::key)
            names.append(line.name).append(1, '\0');
    }
    return names.empty() ? "none" : names;
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

bool Make(const Operation& operation, ProfileFile& file)
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

// All lines except those that the operation changes, joined.
std::string OthersIn(std::string_view bytes, const Operation& operation, bool isSectionNew)
{
    const std::vector<IniLine> lines = LinesOf(bytes);
    const int section = SectionOf(lines, operation.section);
    const IniLine* const own = KeyOf(lines, operation.section, operation.key);
    std::string others;
    for (const IniLine& line : lines) {
        const bool isOfSection = section >= 0 && line.section == section;
        const bool isHeader = isOfSection && line.kind == IniLine::Kind::header;
        const bool isDeleted =
            isOfSection && operation.kind == Kind::deleteSection &&
            (isHeader || line.kind == IniLine::Kind::key || line.kind == IniLine::Kind::bare);
        const bool isOwn = operation.kind != Kind::deleteSection && &line == own;
        if (!isDeleted && !isOwn && !(isHeader && isSectionNew))
            others += line.bytes;
    }
    return others;
}

// Expects the operation in the file and nothing else changed.
void ExpectMade(const Operation& operation, std::string_view before, std::string_view after)
{
    const bool isSectionNew =
        operation.kind == Kind::write && SectionOf(LinesOf(before), operation.section) < 0;
    const Operation nothing{.kind = Kind::deleteKey, .section = operation.section, .key = "-", .value = {}};
    // A deleted name may uncover a second line with that name, which counts as a foreign line.
    const std::string others = OthersIn(before, operation, false);
    std::string left = operation.kind == Kind::write ? OthersIn(after, operation, isSectionNew)
                                                     : OthersIn(after, nothing, false);
    if (left == others + "\r\n" && !others.ends_with('\n') && !others.ends_with('\r'))
        left = others; // the unfinished last line was ended before the new one
    EXPECT_EQ(left, others);
    if (operation.kind == Kind::write) {
        EXPECT_EQ(ValueIn(after, operation.section, operation.key), operation.value);
    }
}

// One settings file, our object over it, and another program that changes it.
class OtherProgram
{
public:
    explicit OtherProgram(unsigned seed)
        : choices_(seed)
        , calls_(choices_.AnyOf(std::array<std::int64_t, 4>{1'000'000, 4'000'000, 10'000'000, 1'000'000'000}))
        , settings_(AnyFile(choices_))
        , path_(settings_.Path())
        , profile_(OpenProfileFile(path_, calls_))
    {
    }

    void Step()
    {
        constexpr std::array<std::int64_t, 8> waits = {0,          0,          0,           1'000'000,
                                                       11'000'000, 25'000'000, 995'000'000, 3'000'000'000};
        calls_.Advance(choices_.AnyOf(waits));
        if (choices_.OneOf(3))
            OtherChanges();
        else if (choices_.OneOf(4))
            WeWrite();
        else
            WeRead();
    }

private:
    void WeRead()
    {
        const std::string bytes = BytesOf(path_);
        const std::string_view section = choices_.AnyOf(kSections);
        const std::string_view key = choices_.AnyOf(kKeys);
        EXPECT_EQ(profile_->Read(section, key, "none", 100), ValueIn(bytes, section, key))
            << section << " " << key;
        EXPECT_EQ(InLowerCase(profile_->Keys(section, "none", 10'000)), KeysIn(bytes, section)) << section;
    }

    void WeWrite()
    {
        const Operation operation = AnyOperation(choices_);
        const std::string before = BytesOf(path_);
        EXPECT_TRUE(Make(operation, *profile_));
        ExpectMade(operation, before, BytesOf(path_));
    }

    void OtherChanges()
    {
        constexpr std::array changes = {&OtherProgram::Rewrite,       &OtherProgram::ChangeOneByte,
                                        &OtherProgram::ChangeOneByte, &OtherProgram::Append,
                                        &OtherProgram::Replace,       &OtherProgram::Empty,
                                        &OtherProgram::Remove,        &OtherProgram::OnlyTouch};
        (this->*choices_.AnyOf(changes))();
    }

    void Rewrite()
    {
        settings_.Rewrite(AnyFile(choices_));
        calls_.Changed(path_);
    }

    // Keeps the size, and sometimes sets the modification time back.
    void ChangeOneByte()
    {
        std::string bytes = BytesOf(path_);
        const auto letter =
            std::ranges::find_if(bytes, [&](char c) { return c >= 'a' && c < 'z' && choices_.OneOf(5); });
        if (letter == bytes.end())
            return;
        ++*letter;
        settings_.Rewrite(bytes);
        calls_.Changed(path_, choices_.OneOf(3));
    }

    void Append()
    {
        settings_.Rewrite(BytesOf(path_) + AnyFile(choices_));
        calls_.Changed(path_);
    }

    // Replaces the file by another one, often of the same size.
    void Replace()
    {
        std::string bytes = choices_.OneOf(2) ? AnyFile(choices_) : BytesOf(path_);
        std::ranges::replace(bytes, 'a', 'b');
        const std::string other = path_ + ".new";
        std::ofstream(other, std::ios::binary) << bytes;
        const bool keepsTimes = choices_.OneOf(3); // as a copy that preserves times
        if (keepsTimes)
            calls_.CopyTimes(path_, other);
        std::filesystem::rename(other, path_);
        if (!keepsTimes)
            calls_.Changed(path_);
    }

    void Empty()
    {
        settings_.Rewrite("");
        calls_.Changed(path_);
    }

    void Remove() { settings_.Remove(); }

    void OnlyTouch() { calls_.Changed(path_); }

    Choices choices_;
    TimedCalls calls_;
    SettingsFile settings_;
    std::string path_;
    std::unique_ptr<ProfileFile> profile_;
};

TEST(ChangedByAnotherProgram, BetweenTwoOperationsIsReadAndKept)
{
    for (const unsigned seed : Seeds(kInterleavings)) {
        OtherProgram other(seed);
        for (int step = 0; step < kSteps; ++step) {
            SCOPED_TRACE("CORVREC_SEED=" + std::to_string(seed) + ", step " + std::to_string(step));
            other.Step();
            ASSERT_FALSE(HasFailure());
        }
    }
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
    for (const unsigned seed : Seeds(kChangesInside)) {
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
    for (const unsigned seed : Seeds(kChangesInside)) {
        SCOPED_TRACE("CORVREC_SEED=" + std::to_string(seed));
        Inside inside(seed);
        const Operation operation = AnyOperation(inside.choices);
        inside.ChangeAt(inside.choices.Below(
            7)); // open, fstat, pread, perhaps fallocate, pwrite, ftruncate; fstat, close

        EXPECT_TRUE(Make(operation, *inside.profile));

        const std::string left = inside.settings.Bytes();
        const auto& made = inside.calls.Made();
        if (inside.changedAt >= made.size()) {
            ExpectMade(operation, inside.ours, left); // the change never happened
        } else if (inside.IsBefore(inside.isReplaced ? "open" : "pread")) {
            ++seen[0];
            ExpectMade(operation, inside.theirs, left);
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
