#pragma once

#include "core/file/profile_file.h"
#include "tests/support/probed_calls.h"
#include "tests/support/reference_profile.h"
#include "tests/support/sample.h"

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace corvrec
{

// Only every kStride-th case is run.
inline const std::size_t kStride = SampleOrAll<std::size_t>(16, 64, 1);

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
    odd,   // all kinds of line ends, odd spacing, comments, blank and bare lines, an unfinished last line
    utf16, // the odd form in UTF-16
};

// A user's change of one site, made with the calls that the windows make.
struct SiteChange {
    std::string_view name;
    void (*run)(ProfileFile& file, std::string_view code);
};

// A change of one site of a settings file with this many sites, each as SaveSite would write SampleSite,
// among foreign sections and comments. A code that the file does not contain is a new site's.
struct Scenario {
    int sites = 0;
    FileForm form = FileForm::crLf;
    SiteChange change;
    std::string code;

    [[nodiscard]] std::string Before() const;
    [[nodiscard]] std::string Name() const;
};

// NOLINTNEXTLINE(readability-identifier-naming): GoogleTest's name
void PrintTo(const Scenario& scenario, std::ostream* out);

// Every change of each of these sites in such a file; adding a new site only once.
std::vector<Scenario> ScenariosOver(int sites, FileForm form, const std::vector<int>& changed);

std::string BytesOf(const std::string& path);

// The bytes without the filler that may follow the content.
std::string WithoutFiller(std::string_view bytes);

// One writing operation of a change, and its result.
struct Step {
    std::size_t firstCall = 0;
    std::size_t endCall = 0; // one past its last call
    bool isDone = false;
    std::string before; // the file's bytes
    std::string after;
};

// A settings file over probed calls that records its steps. Expects each step that reports success to change
// the file as the reference model does, and every other one to leave it as it was.
class SteppedFile final : public ProfileFile
{
public:
    SteppedFile(ProfileFile& file, const ProbedCalls& calls, const std::string& path)
        : file_(file)
        , calls_(calls)
        , path_(path)
        , expected_(BytesOf(path))
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
    // operation: the same for the file and for the model.
    template <typename Operation>
    bool Take(Operation operation);

    ProfileFile& file_;
    const ProbedCalls& calls_;
    std::string path_;
    ReferenceProfile expected_;
    std::vector<Step> steps_;
};

// The change without faults.
struct Rehearsal {
    explicit Rehearsal(const Scenario& scenario);

    std::vector<std::string> made; // the calls, as in ProbedCalls::Made
    std::vector<ProbedCalls::Piece> pieces;
    std::vector<Step> steps;

    // The step that makes this call; the last step for calls after it (flushing).
    [[nodiscard]] const Step& StepAt(std::size_t call) const;
};

} // namespace corvrec
