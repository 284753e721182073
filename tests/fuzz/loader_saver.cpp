// Repeated loading and saving of a site reaches a stable file, whatever the file held, and loses nothing
// except the site's own lines.
//
// Input: the site's code, its name and the file's bytes, separated by '|':
// "A|Uno|[Siti]\nA=Uno\n[A]\nBaud=9600".

#include "core/file/code_page.h"
#include "core/file/section.h"
#include "core/site/site_keys.h"
#include "core/site/site_list.h"
#include "tests/fuzz/fuzzing.h"
#include "tests/fuzz/text_profile.h"
#include "tests/support/reference_profile.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace corvrec::fuzz
{

namespace
{

constexpr DateTime kToday{.year = 2026, .month = 11, .day = 21};

// What the editor shows for a new site: rows, and the letters of the flow-control characters.
SiteRecord NewSite()
{
    SiteRecord site;
    site.device = DeviceRowOf("COM");
    site.handshake = 0;
    site.parity = 0;
    site.xon = FlowCharacter{.control = true, .text = "Q"};
    site.xoff = FlowCharacter{.control = true, .text = "S"};
    site.schedule = ScheduleKind::continuous;
    return site;
}

// A code, in the code page, whose section and key can be found again: without the characters that end or
// start a name.
std::string Findable(std::string_view field)
{
    std::string code(field);
    std::ranges::replace_if(
        code, [](char c) { return static_cast<unsigned char>(c) <= ' ' || c == ']' || c == '='; }, '_');
    if (code.empty() || code.front() == '[' || code.front() == ';')
        code.insert(0, "_");
    return code;
}

// The lines that no save of the site may lose, without blank ones.
std::vector<std::u16string> ForeignLines(std::string_view bytes, std::string_view code)
{
    std::vector<std::u16string> foreign;
    const ReferenceProfile profile(bytes);
    for (const ReferenceProfile::Line& line : profile.Lines()) {
        if (line.kind != ReferenceProfile::Kind::blank && !IsOfSite(line, code))
            foreign.emplace_back(line.text);
    }
    return foreign;
}

bool HasAll(const std::vector<std::u16string>& lines, const std::vector<std::u16string>& wanted)
{
    auto next = wanted.begin();
    for (const std::u16string& line : lines) {
        if (next != wanted.end() && line == *next)
            ++next;
    }
    return next == wanted.end();
}

// One edit that is confirmed without changes.
SiteRecord Edit(TextProfile& file, std::string_view code, std::string_view name)
{
    SiteRecord site = NewSite();
    const std::string before = file.Bytes();
    LoadSite(file, code, site); // the result, whether the alerts were there, does not matter
    Check(file.Bytes() == before, "loading writes nothing");
    Section(file, code).Delete(); // like all writes, fails for UTF-16 of odd length
    SaveSite(file, code, name, site, kToday);
    return site;
}

// Each save may remove a pair of quotes and uncover a later section with the same name. Everything else needs
// three: a character saved as itself is loaded as a number, and an empty weekly schedule as a continuous one,
// whose start time is loaded as 12:00.
std::size_t MostEdits(std::string_view bytes)
{
    const auto strewn =
        std::ranges::count_if(bytes, [](char c) { return c == '"' || c == '\'' || c == '['; });
    return static_cast<std::size_t>(strewn) + 4;
}

void CheckSite(std::string_view codeField, std::string_view nameField, std::string_view bytes)
{
    const std::string stored = Findable(codeField);
    const std::string code = Utf8FromCp1252(stored);
    const std::string name = Utf8FromCp1252(nameField);
    TextProfile file(bytes);

    const std::size_t mostEdits = MostEdits(bytes);
    std::string before;
    SiteRecord site;
    std::size_t edits = 0;
    do {
        Check(edits++ < mostEdits, "repeated loading and saving reaches a stable file");
        before = file.Bytes();
        site = Edit(file, code, name);
        Check(HasAll(ForeignLines(file.Bytes(), stored), ForeignLines(before, stored)),
              "lines that are not the site's stay");
    } while (file.Bytes() != before);

    SiteRecord again = NewSite();
    LoadSite(file, code, again);
    Check(again == site, "a site is loaded as it was saved");
    ListSites(file); // any result is right; only a crash would be a finding
    Check(file.Bytes() == before, "listing writes nothing");
}

} // namespace

} // namespace corvrec::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    corvrec::fuzz::Fields fields(data, size);
    const std::string_view code = fields.Text();
    const std::string_view name = fields.Text();
    corvrec::fuzz::CheckSite(code, name, fields.Rest());
    return 0;
}
