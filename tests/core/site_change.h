#pragma once

#include "core/file/profile_file.h"
#include "tests/support/probed_calls.h"
#include "tests/support/sample.h"

#include <cstddef>
#include <map>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace corvrec
{

// Runs every n-th case of all.
inline const std::size_t kStride = SampleOrAll<std::size_t>(16, 1);

template <typename Cases>
Cases TakenOf(const Cases& all)
{
    Cases taken;
    for (std::size_t i = 0; i < all.size(); i += kStride)
        taken.push_back(all[i]);
    return taken;
}

// How a sample file is written.
enum class FileForm {
    crLf,
    lf,
    odd,   // every line end, odd spacing, comments, blank and bare lines, no line end at the end
    utf16, // the odd one
};

// A settings file with so many sites, each as SaveSite would write SampleSite, among foreign sections and
// comments. The sites' codes are those of SiteCode.
std::string SampleFile(int sites, FileForm form);

std::string SiteCode(int site);

// What a user does to one site, with the calls that the windows make for it.
struct SiteChange {
    std::string_view name;
    void (*run)(ProfileFile& file, std::string_view code);
};

// A new site, four ways to change one, and its removal.
std::vector<SiteChange> SiteChanges();

// A change of one site of one file. The code is that of a new site where the file has none of it.
struct Scenario {
    int sites = 0;
    FileForm form = FileForm::crLf;
    SiteChange change;
    std::string code;

    [[nodiscard]] std::string Before() const { return SampleFile(sites, form); }
    [[nodiscard]] std::string Name() const;
};

// NOLINTNEXTLINE(readability-identifier-naming): GoogleTest's name
void PrintTo(const Scenario& scenario, std::ostream* out);

// Every change of each of these sites of such a file; a new site once.
std::vector<Scenario> ScenariosOver(int sites, FileForm form, const std::vector<int>& changed);

// One operation of a change that writes, and what became of it.
struct Step {
    std::string section;
    std::string key;   // empty: the section is deleted
    std::string value; // "-": the key is deleted
    std::size_t firstCall = 0;
    std::size_t endCall = 0; // behind its last one
    bool isDone = false;
    std::string before; // the file's bytes
    std::string after;
};

// A settings file over probed calls that notes its steps.
class SteppedFile final : public ProfileFile
{
public:
    SteppedFile(ProfileFile& file, const ProbedCalls& calls, std::string path)
        : file_(file)
        , calls_(calls)
        , path_(std::move(path))
    {
    }

    [[nodiscard]] const std::vector<Step>& Steps() const { return steps_; }

    std::string Read(std::string_view section, std::string_view key, std::string_view fallback,
                     std::size_t size) override;
    std::string Keys(std::string_view section, std::string_view fallback, std::size_t size) override;
    bool Write(std::string_view section, std::string_view key, std::string_view value) override;
    bool DeleteKey(std::string_view section, std::string_view key) override;
    bool DeleteSection(std::string_view section) override;
    bool IsWritable() override { return file_.IsWritable(); }
    void Flush() override { file_.Flush(); }

private:
    // Fills in what stands in the step so far.
    template <typename Operation>
    bool Take(Step step, Operation operation);

    ProfileFile& file_;
    const ProbedCalls& calls_;
    std::string path_;
    std::vector<Step> steps_;
};

// What the step makes of SiteView::own.
void Apply(const Step& step, std::string_view code, std::map<std::string, std::string>& own);

// The change without any fault.
struct Rehearsal {
    explicit Rehearsal(const Scenario& scenario);

    std::vector<std::string> made; // as ProbedCalls::Made
    std::vector<ProbedCalls::Piece> pieces;
    std::vector<Step> steps;
    // own of SiteView before each step, and behind the last one.
    std::vector<std::map<std::string, std::string>> own;

    // The step that makes this call; behind the last step (flushing) their number.
    [[nodiscard]] std::size_t StepAt(std::size_t call) const;
};

std::string BytesOf(const std::string& path);

} // namespace corvrec
