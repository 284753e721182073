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
    std::string name; // "0" when the site has no name
    std::string code;
    double enabled = 0;                   // any value except 0 counts as enabled
    std::optional<ScheduleKind> schedule; // nullopt: missing, or a negative number without a meaning
};

// The names in a key list as returned by ProfileFile::Keys, where each ends with a NUL. A last piece without
// a NUL is dropped.
std::vector<std::string> SplitKeys(std::string_view keys);

// The sites listed in "Siti", in file order. The key list is cut at 498 bytes, a limit that recorders in the
// field rely on, so a long list loses its last sites.
std::vector<SiteRow> ListSites(ProfileFile& file);

// Whether the codes of all sites in the file fit into the key list. If not, ListSites loses the last ones.
bool ListHoldsAllSites(ProfileFile& file);

// The name that the list will show for a site saved with this name: characters that the file cannot hold
// become '?', blanks and a pair of quotes at the ends disappear.
std::string ListedName(std::string_view name);

// The serial port's name, "Com" of "General", cut like the values of the site list; nullopt when it is
// missing.
std::optional<std::string> ReadComPort(ProfileFile& file);

// Deletes the site's section, then its key in "Siti". Failures are not reported.
void RemoveSite(ProfileFile& file, std::string_view code);

// A site's file names as typed. Two sites collide when their data, exchange or history file is exactly
// equal.
struct SiteFiles {
    std::string data;
    std::string exchange;
    std::string history;
};

// Index in `sites` of the first other site that shares a file of the same kind; nullopt when there is none.
// ownCode is the code of the site being edited.
std::optional<int> FindCollision(ProfileFile& file, std::span<const SiteRow> sites, const SiteFiles& files,
                                 std::string_view ownCode);

} // namespace corvrec
