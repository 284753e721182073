#pragma once

#include "core/clock.h"
#include "core/site/site_record.h"

#include <string_view>

namespace corvrec
{

class ProfileFile;

// Decodes the site's section, and "Log" of "General", into the fields of `site`. A field whose key is missing
// or has no valid value keeps what it holds. Returns whether both alerts were found; no other missing key is
// ever reported. `code` is UTF-8.
bool LoadSite(ProfileFile& file, std::string_view code, SiteRecord& site);

struct SaveResult {
    bool done = false; // whether the last write succeeded; earlier failures are deliberately not reported
    std::string_view stoppedAt; // the key that has no value to write; empty when all keys were written
};

// Writes the site's line in "Siti", every key of its section and "Log" of "General", one by one in a fixed
// order. `today` is the date that goes into "Ora". Nothing is removed or rolled back.
//
// Stops at "Dispositivo", "Handshake" or "Parita" when no row is chosen, and at "Xon" or "Xoff" when a
// control character has no letter. What was written before stays written.
SaveResult SaveSite(ProfileFile& file, std::string_view code, std::string_view name, const SiteRecord& site,
                    const DateTime& today);

} // namespace corvrec
