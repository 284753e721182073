#include "tests/core/ini_lines.h"
#include "tests/core/site_change.h"
#include "tests/support/settings_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <gtest/gtest.h>
#include <iostream>
#include <memory>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace corvrec
{

namespace
{

// A fault that is put on one call.
struct Fault {
    std::string_view name;
    void (*put)(ProbedCalls& calls, std::size_t call,
                std::size_t bytes); // bytes: the number that the call would move
    bool isTransfer = false;        // only for pread and pwrite
    bool isForEver = false;
    bool isHarmless = false; // when the call can be repeated
};

template <int error>
void Once(ProbedCalls& calls, std::size_t call, std::size_t /*bytes*/)
{
    calls.FailAt(call, error);
}

template <int error>
void FromThenOn(ProbedCalls& calls, std::size_t call, std::size_t /*bytes*/)
{
    calls.FailFrom(call, error);
}

constexpr std::array<Fault, 17> kFaults{{
    {"noSpace", Once<ENOSPC>},
    {"overQuota", Once<EDQUOT>},
    {"diskError", Once<EIO>},
    {"tooLarge", Once<EFBIG>},
    {.name = "noSpaceFromThenOn", .put = FromThenOn<ENOSPC>, .isForEver = true},
    {.name = "overQuotaFromThenOn", .put = FromThenOn<EDQUOT>, .isForEver = true},
    {.name = "diskErrorFromThenOn", .put = FromThenOn<EIO>, .isForEver = true},
    {.name = "tooLargeFromThenOn", .put = FromThenOn<EFBIG>, .isForEver = true},
    {.name = "interrupted", .put = Once<EINTR>, .isHarmless = true},
    {.name = "interruptedTenTimes",
     .put =
         [](ProbedCalls& calls, std::size_t call, std::size_t) {
             for (std::size_t i = 0; i < 10; ++i)
                 calls.FailAt(call + i, EINTR);
         },
     .isHarmless = true},
    {.name = "nothingMoved",
     .put = [](ProbedCalls& calls, std::size_t call, std::size_t) { calls.ShortenAt(call, 0); },
     .isTransfer = true},
    {.name = "oneByteMoved",
     .put = [](ProbedCalls& calls, std::size_t call, std::size_t) { calls.ShortenAt(call, 1); },
     .isTransfer = true,
     .isHarmless = true},
    {.name = "halfMoved",
     .put = [](ProbedCalls& calls, std::size_t call,
               std::size_t bytes) { calls.ShortenAt(call, std::max<std::size_t>(bytes / 2, 1)); },
     .isTransfer = true,
     .isHarmless = true},
    {.name = "halfMovedThenNoSpace",
     .put =
         [](ProbedCalls& calls, std::size_t call, std::size_t bytes) {
             calls.ShortenAt(call, std::max<std::size_t>(bytes / 2, 1));
             calls.FailAt(call + 1, ENOSPC);
         },
     .isTransfer = true},
    {.name = "halfMovedThenDiskError",
     .put =
         [](ProbedCalls& calls, std::size_t call, std::size_t bytes) {
             calls.ShortenAt(call, std::max<std::size_t>(bytes / 2, 1));
             calls.FailAt(call + 1, EIO);
         },
     .isTransfer = true},
    {.name = "halfMovedThenNothing",
     .put =
         [](ProbedCalls& calls, std::size_t call, std::size_t bytes) {
             calls.ShortenAt(call, std::max<std::size_t>(bytes / 2, 1));
             calls.ShortenAt(call + 1, 0);
         },
     .isTransfer = true},
    {.name = "halfMovedThenInterrupted",
     .put =
         [](ProbedCalls& calls, std::size_t call, std::size_t bytes) {
             calls.ShortenAt(call, std::max<std::size_t>(bytes / 2, 1));
             calls.FailAt(call + 1, EINTR);
         },
     .isTransfer = true,
     .isHarmless = true},
}};

struct Case {
    Scenario scenario;
    Fault fault;
};

std::vector<Case> Cases()
{
    std::vector<Case> cases;
    for (const auto& [sites, form, changes] :
         {std::tuple(1, FileForm::crLf, std::set<std::string_view>{"newSite", "everyValue"}),
          {8, FileForm::odd, {"longerTexts", "removal"}}}) {
        for (const Scenario& scenario : ScenariosOver(sites, form, {sites / 2})) {
            for (const Fault& fault : kFaults) {
                if (changes.contains(scenario.change.name))
                    cases.push_back({.scenario = scenario, .fault = fault});
            }
        }
    }
    return cases;
}

// NOLINTNEXTLINE(readability-identifier-naming): GoogleTest's name
void PrintTo(const Case& refused, std::ostream* out)
{
    *out << refused.scenario.Name() << " " << refused.fault.name;
}

std::vector<std::size_t> CallsFor(const Fault& fault, const Rehearsal& rehearsal)
{
    std::vector<std::size_t> calls;
    for (std::size_t call = 0; call < rehearsal.made.size(); ++call) {
        const std::string& name = rehearsal.made[call];
        if (!fault.isTransfer || name == "pread" || name == "pwrite")
            calls.push_back(call);
    }
    return calls;
}

// The bytes that the call writes; for any other call, those that a read of the whole file moves.
std::size_t BytesMoved(const Rehearsal& rehearsal, std::size_t call)
{
    const auto piece = std::ranges::find(rehearsal.pieces, call, &ProbedCalls::Piece::call);
    if (piece != rehearsal.pieces.end())
        return piece->count;
    const std::size_t step = rehearsal.StepAt(call);
    return step < rehearsal.steps.size() ? rehearsal.steps[step].before.size() : 0;
}

class RefusedCall : public testing::TestWithParam<Case>
{
protected:
    RefusedCall()
        : rehearsal(GetParam().scenario)
    {
    }

    // Expects each step that reported success in the file, no other step, and no other line changed.
    void ExpectTruth(const std::vector<Step>& steps, std::size_t refusedCall) const
    {
        const Scenario& scenario = GetParam().scenario;
        SiteView view = ViewOf(scenario.Before(), scenario.code);
        ASSERT_EQ(steps.size(), rehearsal.steps.size()); // the editor continues after an error
        for (const Step& step : steps) {
            SCOPED_TRACE("[" + step.section + "]" + step.key);
            if (!step.isDone && !IsLate(refusedCall)) {
                ASSERT_EQ(step.after, step.before);
                continue;
            }
            if (step.isDone || step.after != step.before)
                Apply(step, scenario.code, view.own);
            const SiteView after = ViewOf(step.after, scenario.code);
            ASSERT_EQ(after.own, view.own);
            ASSERT_TRUE(KeepsForeign(view, after));
        }
    }

    // A failing close is reported too late to undo anything. So is a permanent fault when the step has
    // already written.
    [[nodiscard]] bool IsLate(std::size_t refusedCall) const
    {
        const std::string& name = rehearsal.made[refusedCall];
        if (!GetParam().fault.isForEver)
            return name == "close";
        const Step& step = rehearsal.steps[rehearsal.StepAt(refusedCall)];
        return std::ranges::any_of(rehearsal.pieces, [&](const ProbedCalls::Piece& piece) {
            return piece.call >= step.firstCall && piece.call < refusedCall;
        });
    }

    Rehearsal rehearsal;
};

// NOLINTNEXTLINE(readability-function-cognitive-complexity): one case after another
TEST_P(RefusedCall, IsReportedAndChangesNothing)
{
    const auto& [scenario, fault] = GetParam();
    const std::string before = scenario.Before();
    const SettingsFile settings(before);
    for (const std::size_t call : TakenOf(CallsFor(fault, rehearsal))) {
        SCOPED_TRACE(std::to_string(call) + " " + rehearsal.made[call]);
        settings.Rewrite(before);
        ProbedCalls calls;
        const auto profile = OpenProfileFile(settings.Path(), calls);
        SteppedFile file(*profile, calls, settings.Path());
        fault.put(calls, call, BytesMoved(rehearsal, call));

        scenario.change.run(file, scenario.code);

        ExpectTruth(file.Steps(), call);
        const auto refused = std::ranges::count(file.Steps(), false, &Step::isDone);
        const bool isHarmless =
            fault.isHarmless && rehearsal.made[call] != "fstat"; // fstat is never interrupted
        EXPECT_TRUE(refused == 0 || !isHarmless);
        EXPECT_TRUE(refused <= 1 || fault.isForEver);

        // The same change again, without the fault.
        calls.Mend();
        SteppedFile again(*profile, calls, settings.Path());
        scenario.change.run(again, scenario.code);
        EXPECT_EQ(std::ranges::count(again.Steps(), false, &Step::isDone), 0);
        EXPECT_EQ(ViewOf(settings.Bytes(), scenario.code).own, rehearsal.own.back());
        if (HasFailure())
            break;
    }
}

INSTANTIATE_TEST_SUITE_P(All, RefusedCall, testing::ValuesIn(Cases()), [](const auto& test) {
    return test.param.scenario.Name() + "_" + std::string(test.param.fault.name);
});

TEST(RefusedCallsInTotal, AtLeast2000Times)
{
    std::size_t cases = 0;
    for (const auto& [scenario, fault] : Cases())
        cases += CallsFor(fault, Rehearsal(scenario)).size();
    std::cout << "every " << kStride << "th of " << cases << " refused or short calls\n";
    EXPECT_GE(cases, 2000U);
}

} // namespace

} // namespace corvrec
