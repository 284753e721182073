#include "core/site/site_list.h"

#include "core/file/code_page.h"
#include "core/file/ini_text.h"
#include "core/file/profile_file.h"
#include "core/file/section.h"
#include "core/site/conversions.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace corvrec
{

namespace
{

// Size of the buffer for each read of the site list, including the closing NUL.
constexpr std::size_t kListSize = 500;

// Shown for a site without a name.
constexpr const char* kNoName = "0";

// The site list's own reading of "Ricorrenza". Unlike the editor's it knows numbers without a meaning.
std::optional<ScheduleKind> ListedKind(std::string_view ricorrenza)
{
    const int number = Whole16(LeadingNumber(ricorrenza));
    if (number >= 1)
        return ScheduleKind::weekly;
    switch (number) {
    case 0:
        return ScheduleKind::continuous;
    case -1:
        return ScheduleKind::hourly;
    case -2:
        return ScheduleKind::daily;
    default:
        return std::nullopt;
    }
}

SiteRow ReadRow(ProfileFile& file, const Section& sites, std::string code)
{
    const Section section(file, code, kListSize);
    SiteRow site;
    if (const auto enabled = section.Read("SitoAbilitato"))
        site.enabled = LeadingNumber(*enabled);
    site.name = sites.Read(code).value_or(kNoName);
    if (const auto ricorrenza = section.Read("Ricorrenza"))
        site.schedule = ListedKind(*ricorrenza);
    site.code = std::move(code);
    return site;
}

SiteFiles ReadFiles(const Section& section)
{
    return {
        .data = section.Read("Dati").value_or(""),
        .exchange = section.Read("Dati2").value_or(""),
        .history = section.Read("Storico").value_or(""),
    };
}

// Only files of the same kind count: a data file that is another site's exchange file is no collision.
bool ShareAFile(const SiteFiles& left, const SiteFiles& right)
{
    return left.data == right.data || left.exchange == right.exchange || left.history == right.history;
}

} // namespace

std::vector<std::string> SplitKeys(std::string_view keys)
{
    std::vector<std::string> names;
    for (std::size_t end = keys.find('\0'); end != std::string_view::npos; end = keys.find('\0')) {
        names.push_back(Utf8FromCp1252(keys.substr(0, end)));
        keys.remove_prefix(end + 1);
    }
    return names;
}

std::vector<SiteRow> ListSites(ProfileFile& file)
{
    const Section sites(file, "Siti", kListSize);
    std::vector<SiteRow> listed;
    for (std::string& code : SplitKeys(file.Keys("Siti", kMissing, kListSize)))
        listed.push_back(ReadRow(file, sites, std::move(code)));
    return listed;
}

// Asks the file, since the rows lack the sites that were cut off at the start.
bool ListHoldsAllSites(ProfileFile& file)
{
    const std::string keys = file.Keys("Siti", "", 2 * kListSize);
    return keys.size() <= kListSize - 2; // a read that cuts a list ends it with two NULs
}

// Writes and reads the name in an otherwise empty file, so that the file's own rules apply.
std::string ListedName(std::string_view name)
{
    IniText file;
    const std::string bytes = Cp1252FromUtf8(WithoutLineBreaks(name));
    file.Apply(file.Put("Siti", "1", bytes).value());
    const std::string listed = file.Read("Siti", "1", kMissing, kListSize);
    return listed == kMissing ? kNoName : Utf8FromCp1252(listed);
}

std::optional<std::string> ReadComPort(ProfileFile& file)
{
    return Section(file, "General", kListSize).Read("Com");
}

void RemoveSite(ProfileFile& file, std::string_view code)
{
    // Failures are ignored on purpose: a removal is never reported.
    Section(file, code).Delete();
    Section(file, "Siti").DeleteKey(code);
}

std::optional<int> FindCollision(ProfileFile& file, std::span<const SiteRow> sites, const SiteFiles& files,
                                 std::string_view ownCode)
{
    const auto collides = [&](const SiteRow& other) {
        return ShareAFile(files, ReadFiles(Section(file, other.code))) && other.code != ownCode;
    };
    const auto found = std::ranges::find_if(sites, collides);
    if (found == sites.end())
        return std::nullopt;
    return static_cast<int>(found - sites.begin());
}

} // namespace corvrec
