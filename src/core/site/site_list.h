#pragma once

#include "core/site/code_tables.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace corvrec
{

class ProfileFile;

// A row of the site list, in UTF-8.
struct SiteRow {
    std::string name;
    std::string code;
    double enabled = 0;   // any value but 0 counts as enabled
    std::string schedule; // the shown text, not the code; empty when unknown
};

// What the file tells of one site; the schedule's text is the caller's.
struct ListedSite {
    std::string name; // "0" when the site has no name
    std::string code;
    double enabled = 0;
    std::optional<ScheduleKind> schedule; // nothing: missing, or a negative number without a meaning
};

// The names in a key list as ProfileFile::Keys gives it: each ends with a NUL, and a piece without one is
// none.
std::vector<std::string> SplitKeys(std::string_view keys);

// The sites of "Siti" in file order. The key list is cut at 498 bytes (a limit that recorders in the field
// rely on), so a long list loses its last sites.
std::vector<ListedSite> ListSites(ProfileFile& file);

// Whether the next ListSites will still list all of these sites: their codes have room in the key list.
bool ListHolds(std::span<const SiteRow> sites);

// The name that the list shows for a site which is saved with this one and then read again: characters that
// the file cannot hold are '?', blanks and a pair of quotes at the ends are gone.
std::string ListedName(std::string_view name);

// "Com" of "General", read as the site list reads; nothing when it is missing.
std::optional<std::string> ReadComPort(ProfileFile& file);

// Deletes the site's section whole, then its key in "Siti".
void RemoveSite(ProfileFile& file, std::string_view code);

// File names of a site as typed; two sites collide when the same one of the three is equal, exactly.
struct SiteFiles {
    std::string data;
    std::string exchange;
    std::string history;
};

// Row of the first other site that shares a file of the same kind; nothing when none does. ownCode names the
// site that is being edited.
std::optional<int> FindCollision(ProfileFile& file, std::span<const SiteRow> sites, const SiteFiles& files,
                                 std::string_view ownCode);

} // namespace corvrec
