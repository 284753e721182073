#pragma once

#include "core/clock.h"
#include "core/site/site_record.h"

#include <string_view>

namespace corvrec
{

class ProfileFile;

// Writes the site's line in "Siti", every key of its section and "Log" of "General", one by one in a fixed
// order. `today` is the date that goes into "Ora". Nothing is removed or rolled back. Returns the last
// writer's result; earlier failures are deliberately not reported.
//
// Throws std::out_of_range when no row of device, handshake or parity is chosen, or when a flow-control
// character has no letter. What was written before stays written.
bool SaveSite(ProfileFile& file, std::string_view code, std::string_view name, const SiteRecord& site,
              const DateTime& today);

} // namespace corvrec
