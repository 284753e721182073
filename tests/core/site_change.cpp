#include "tests/core/site_change.h"

#include "core/file/section.h"
#include "core/site/site_keys.h"
#include "core/site/site_list.h"
#include "tests/support/sample_site.h"
#include "tests/support/settings_file.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <gtest/gtest.h>
#include <utility>

namespace corvrec
{

namespace
{

constexpr DateTime kToday{.year = 2026, .month = 3, .day = 3};
constexpr std::string_view kNewCode = "NUOVO";

std::string SiteCode(int site)
{
    const std::string number = std::to_string(site);
    return "S" + std::string(3 - number.size(), '0') + number;
}

std::string SiteName(int site)
{
    return "Ufficio " + std::to_string(site);
}

std::string PlainFile(int sites, std::string_view end)
{
    std::string bytes;
    const auto line = [&](const std::string& text) { bytes.append(text).append(end); };
    line("; settings of the recorder");
    line("[General]");
    line("Com=COM1");
    line("Log=Corvrec.log");
    line("");
    line("[Siti]");
    for (int site = 0; site < sites; ++site)
        line(SiteCode(site) + "=" + SiteName(site));
    line("[Recorder]");
    line("Version=3");
    for (int site = 0; site < sites; ++site) {
        line("[" + SiteCode(site) + "]");
        for (const auto& [key, value] : SavedKeys())
            line(key + "=" + value);
    }
    return bytes;
}

// Nothing is where SaveSite would put it.
std::string OddFile(int sites)
{
    constexpr std::array<std::string_view, 3> ends = {"\r\n", "\n", "\r"};
    std::string bytes;
    int lines = 0;
    const auto line = [&](const std::string& text) {
        bytes.append(text).append(ends.at(static_cast<std::size_t>(lines++ % 7) % ends.size()));
    };
    line("lines before the first header=belong to nobody");
    line("");
    line(" [ Recorder ] behind it=too");
    line("\tVersion = \"3\" ");
    line("bare");
    for (int site = 0; site < sites; ++site) {
        line("  [" + SiteCode(site) + "]   ; site " + std::to_string(site));
        for (const auto& [key, value] : SavedKeys())
            line("  " + key + " =" + value);
        line("; of site " + std::to_string(site));
        line(" \t ");
        line("bare line of site " + std::to_string(site));
        line("Own = of the recorder");
        line(";Baud=a comment");
    }
    line("[SITI]");
    for (int site = sites - 1; site >= 0; --site)
        line(" " + SiteCode(site) + " =  " + SiteName(site));
    line("");
    line("[Recorder");
    line("Version=of a second section of that name");
    line("[General]");
    line("Com=COM1");
    return bytes + "Other=the last line has no end";
}

std::string Widened(std::string_view text)
{
    std::string bytes = "\xFF\xFE";
    for (const char c : text)
        bytes.append({c, '\0'});
    return bytes;
}

// The calls that the site editor makes; a new site has no section to delete.
void Save(ProfileFile& file, std::string_view code, std::string_view name, const SiteRecord& site)
{
    if (code != kNewCode)
        Section(file, code).Delete(); // the editor ignores the result too
    SaveSite(file, code, name, site, kToday);
    file.Flush();
}

SiteRecord SiteWithTexts(const std::string& text)
{
    SiteRecord site = SampleSite();
    site.dataFile = text;
    site.historyFile = text;
    site.logFile = text;
    site.initString = text;
    return site;
}

// A new site, three ways to change one, and its removal.
std::vector<SiteChange> SiteChanges()
{
    return {
        {"newSite", [](ProfileFile& file, std::string_view) { Save(file, kNewCode, "Nuovo", SampleSite()); }},
        {"nameAlone",
         [](ProfileFile& file, std::string_view code) { Save(file, code, "Sede", SampleSite()); }},
        {"longerTexts",
         [](ProfileFile& file, std::string_view code) {
             Save(file, code, std::string(60, 'n'), SiteWithTexts(std::string(300, 'x')));
         }},
        {"shorterTexts",
         [](ProfileFile& file, std::string_view code) { Save(file, code, "u", SiteWithTexts("x")); }},
        {"removal",
         [](ProfileFile& file, std::string_view code) {
             RemoveSite(file, code);
             file.Flush();
         }},
    };
}

} // namespace

std::string Scenario::Before() const
{
    switch (form) {
    case FileForm::crLf:
        return PlainFile(sites, "\r\n");
    case FileForm::lf:
        return PlainFile(sites, "\n");
    case FileForm::odd:
        return OddFile(sites);
    case FileForm::utf16:
        break;
    }
    return Widened(OddFile(sites));
}

std::string Scenario::Name() const
{
    constexpr std::array<std::string_view, 4> forms = {"CrLf", "Lf", "Odd", "Utf16"};
    return std::string(change.name) + "Of" + code + "Among" + std::to_string(sites) +
           std::string(forms.at(static_cast<std::size_t>(form)));
}

void PrintTo(const Scenario& scenario, std::ostream* out)
{
    *out << scenario.Name();
}

std::vector<Scenario> ScenariosOver(int sites, FileForm form, const std::vector<int>& changed)
{
    std::vector<Scenario> scenarios;
    for (const SiteChange& change : SiteChanges()) {
        if (change.name == "newSite") {
            scenarios.push_back(
                {.sites = sites, .form = form, .change = change, .code = std::string(kNewCode)});
            continue;
        }
        for (const int site : changed)
            scenarios.push_back({.sites = sites, .form = form, .change = change, .code = SiteCode(site)});
    }
    return scenarios;
}

template <typename Operation>
bool SteppedFile::Take(Operation operation)
{
    Step step;
    step.before = steps_.empty() ? BytesOf(path_) : steps_.back().after;
    step.firstCall = calls_.Made().size();
    step.isDone = operation(file_);
    step.endCall = calls_.Made().size();
    step.after = BytesOf(path_);
    if (step.isDone)
        operation(expected_);
    EXPECT_TRUE(step.after == expected_.Bytes()) << "step " << steps_.size();
    steps_.push_back(std::move(step));
    return steps_.back().isDone;
}

std::string SteppedFile::Read(std::string_view section, std::string_view key, std::string_view fallback,
                              std::size_t size)
{
    return file_.Read(section, key, fallback, size);
}

std::string SteppedFile::Keys(std::string_view section, std::string_view fallback, std::size_t size)
{
    return file_.Keys(section, fallback, size);
}

bool SteppedFile::Write(std::string_view section, std::string_view key, std::string_view value)
{
    return Take([&](auto& file) { return file.Write(section, key, value); });
}

bool SteppedFile::DeleteKey(std::string_view section, std::string_view key)
{
    return Take([&](auto& file) { return file.DeleteKey(section, key); });
}

bool SteppedFile::DeleteSection(std::string_view section)
{
    return Take([&](auto& file) { return file.DeleteSection(section); });
}

Rehearsal::Rehearsal(const Scenario& scenario)
{
    const SettingsFile settings(scenario.Before());
    ProbedCalls calls;
    const auto profile = OpenProfileFile(settings.Path(), calls);
    SteppedFile file(*profile, calls, settings.Path());

    scenario.change.run(file, scenario.code);

    made = calls.Made();
    pieces = calls.Pieces();
    steps = file.Steps();
}

const Step& Rehearsal::StepAt(std::size_t call) const
{
    const auto step =
        std::ranges::find_if(steps, [&](const Step& candidate) { return call < candidate.endCall; });
    return step == steps.end() ? steps.back() : *step;
}

std::string BytesOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    std::string bytes(static_cast<std::size_t>(std::max<std::streamoff>(file.tellg(), 0)), '\0');
    file.seekg(0);
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return bytes;
}

std::string WithoutFiller(std::string_view bytes)
{
    constexpr std::string_view filler(" \r\n\0", 4);
    return std::string(bytes.substr(0, bytes.find_last_not_of(filler) + 1));
}

} // namespace corvrec
