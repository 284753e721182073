#include "tests/core/site_change.h"
#include "tests/support/probed_calls.h"
#include "tests/support/settings_file.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <gtest/gtest.h>
#include <iostream>
#include <memory>
#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace corvrec
{

namespace
{

// A file of a few pages.
std::string Pages()
{
    return Scenario{.sites = 8, .form = FileForm::crLf, .change = {}, .code = {}}.Before() + "Last=no end";
}

// One change for each way to write.
struct Change {
    std::string_view name;
    std::optional<std::string> before;
    bool (*make)(ProfileFile&);
    bool canReserve = true;
};

// NOLINTNEXTLINE(readability-identifier-naming): GoogleTest's name
void PrintTo(const Change& change, std::ostream* out)
{
    *out << change.name;
}

std::vector<Change> Changes()
{
    const auto appends = [](ProfileFile& file) { return file.Write("NA", "Ogni", "1"); };
    const auto appendsPages = [](ProfileFile& file) {
        return file.Write("NA", "Ogni", std::string(9000, '1'));
    };
    const auto replaces = [](ProfileFile& file) { return file.Write("General", "Com", "COM2"); };
    const auto grows = [](ProfileFile& file) { return file.Write("General", "Com", "COM10"); };
    const auto growsByPages = [](ProfileFile& file) {
        return file.Write("S000", "Nuova", std::string(5000, 'x'));
    };
    const auto shrinks = [](ProfileFile& file) { return file.Write("General", "Com", ""); };
    const auto erases = [](ProfileFile& file) { return file.DeleteKey("S000", "Dati"); };
    const auto erasesSection = [](ProfileFile& file) { return file.DeleteSection("S001"); };
    const auto erasesLast = [](ProfileFile& file) { return file.DeleteSection("S007"); };
    const std::string page = "[General]\r\nCom=COM1\r\n[AA]\r\nOgni=1\r\n";
    const std::string wide = std::string("\xFF\xFE[\0A\0A\0]\0\n\0k\0=\0001\0\n\0l\0=\0002\0\n\0", 28);
    return {
        {"appends", Pages(), appends},
        {"appendsPages", Pages(), appendsPages},
        {"replaces", Pages(), replaces},
        {"growsInsideAPage", page, grows},
        {"growsAcrossPages", Pages(), grows},
        {"growsByPages", Pages(), growsByPages},
        {"growsWithoutReserving", Pages(), grows, false},
        {"growsByPagesWithoutReserving", Pages(), growsByPages, false},
        {"shrinks", Pages(), shrinks},
        {"erases", Pages(), erases},
        {"erasesSection", Pages(), erasesSection},
        {"erasesLast", Pages(), erasesLast},
        {"creates", std::nullopt, appends},
        {"createsEmpty", std::nullopt, erases},
        {"growsUtf16", wide, appends},
        {"erasesUtf16", wide, [](ProfileFile& file) { return file.DeleteKey("AA", "k"); }},
    };
}

// What may happen to one call, and to the one after it.
struct Fault {
    int error = 0;                    // 0: the call moves only some bytes
    std::optional<std::size_t> moved; // by a pread or pwrite; then the error is that of the next call
    bool isForEver = false;           // every later call fails too
};

std::vector<Fault> Faults()
{
    std::vector<Fault> faults;
    for (const int error : {ENOSPC, EDQUOT, EIO, EFBIG, EROFS, EINTR})
        faults.push_back({.error = error, .moved = std::nullopt, .isForEver = false});
    for (const int error : {ENOSPC, EDQUOT, EIO, EFBIG})
        faults.push_back({.error = error, .moved = std::nullopt, .isForEver = true});
    faults.push_back({.error = 0, .moved = 0, .isForEver = false}); // the result on a full disk
    for (const std::size_t moved : {1U, 7U, 4096U}) {
        for (const int error : {0, ENOSPC, EIO, EINTR})
            faults.push_back({.error = error, .moved = moved, .isForEver = false});
    }
    return faults;
}

void Put(const Fault& fault, std::size_t call, ProbedCalls& calls)
{
    if (fault.moved)
        calls.ShortenAt(call, *fault.moved);
    if (fault.isForEver)
        calls.FailFrom(call, fault.error);
    else if (fault.error != 0)
        calls.FailAt(fault.moved ? call + 1 : call, fault.error);
}

// The change over its file, which was read once before.
struct Attempt {
    explicit Attempt(const Change& change)
        : file(change.before)
        , profile(OpenProfileFile(file.Path(), calls))
        , make(change.make)
    {
        profile->Read("General", "Com", "", 100);
        calls.ForgetMade();
        if (!change.canReserve)
            calls.FailAll("fallocate", EOPNOTSUPP);
    }

    bool Make() { return make(*profile); }

    // Expects the object to report what is in the file, not what it tried to write.
    void ExpectTruth()
    {
        const ReferenceProfile model(file.Bytes());
        for (const std::string_view section : {"General", "S000", "S001", "S007", "NA", "AA"}) {
            for (const std::string_view key : {"Com", "Nuova", "Dati", "Ogni", "k", "Last"})
                EXPECT_EQ(profile->Read(section, key, "none", 20'000),
                          model.Read(section, key, 20'000).value_or("none"))
                    << section << " " << key;
        }
    }

    ProbedCalls calls;
    SettingsFile file;
    std::unique_ptr<ProfileFile> profile;
    bool (*make)(ProfileFile&);
};

class RefusedCall : public testing::TestWithParam<Change>
{
protected:
    RefusedCall()
    {
        Attempt attempt(GetParam());
        EXPECT_TRUE(attempt.Make());
        made = attempt.calls.Made();
        after = attempt.file.Bytes();
    }

    [[nodiscard]] std::vector<std::size_t> CallsFor(const Fault& fault) const
    {
        std::vector<std::size_t> calls;
        for (std::size_t call = 0; call < made.size(); ++call) {
            if (!fault.moved || made[call] == "pread" || made[call] == "pwrite")
                calls.push_back(call);
        }
        return calls;
    }

    // Whether the change must succeed: the call is repeated. fstat is never interrupted, and a write of no
    // bytes means a full disk.
    [[nodiscard]] bool IsHarmless(const Fault& fault, std::size_t call) const
    {
        const std::size_t failing = fault.moved ? call + 1 : call;
        const bool isRefusedAnyway = !GetParam().canReserve && made[call] == "fallocate";
        if (isRefusedAnyway || (fault.error != 0 && fault.error != EINTR))
            return false;
        if (fault.error == EINTR && (failing == made.size() || made[failing] == "fstat"))
            return false;
        return !fault.moved || (*fault.moved > 0 && made[call] == "pwrite");
    }

    // A failing close is reported too late to undo anything. So is a permanent fault after a write.
    [[nodiscard]] bool IsLate(const Fault& fault, std::size_t call) const
    {
        const auto begin = made.begin();
        const auto end = begin + static_cast<std::ptrdiff_t>(call);
        return made[call] == "close" || (fault.isForEver && std::find(begin, end, "pwrite") != end);
    }

    std::vector<std::string> made; // the calls and the resulting bytes when nothing fails
    std::string after;
};

TEST_P(RefusedCall, LeavesTheOldBytesOrAllOfTheNew)
{
    const std::string before = GetParam().before.value_or("");
    std::size_t cases = 0;
    for (const Fault& fault : Faults()) {
        for (const std::size_t call : CallsFor(fault)) {
            SCOPED_TRACE(std::to_string(call) + " " + made[call] + ", error " + std::to_string(fault.error) +
                         ", moved " + testing::PrintToString(fault.moved));
            Attempt attempt(GetParam());
            Put(fault, call, attempt.calls);

            const bool isDone = attempt.Make();

            ++cases;
            const std::string left = attempt.file.Bytes();
            const bool isExact = isDone ? left.starts_with(after) : left == before;
            EXPECT_TRUE(isExact || IsLate(fault, call));
            // Filler may follow the new bytes after a failed truncation.
            EXPECT_TRUE(WithoutFiller(left) == WithoutFiller(after) ||
                        (!isDone && WithoutFiller(left) == WithoutFiller(before)));
            EXPECT_TRUE(isDone || !IsHarmless(fault, call));

            attempt.calls.Mend();
            attempt.ExpectTruth();
            EXPECT_TRUE(attempt.Make());
            EXPECT_TRUE(WithoutFiller(attempt.file.Bytes()) == WithoutFiller(after));
            ASSERT_FALSE(HasFailure());
        }
    }
    std::cout << cases << " refused or short calls\n";
}

INSTANTIATE_TEST_SUITE_P(All, RefusedCall, testing::ValuesIn(Changes()),
                         [](const auto& test) { return std::string(test.param.name); });

} // namespace

} // namespace corvrec
