#pragma once

#include "core/clock.h"
#include "core/site/site_record.h"

#include <string_view>

namespace corvrec
{

class ProfileFile;

// Writes the site's line in "Siti", every key of its section and "Log" of "General", one by one in a fixed
// order; today is the date that "Ora" gets. Nothing is removed, nothing rolled back. Gives the last writer's
// result; earlier failures are not reported, on purpose.
//
// Throws std::out_of_range when no row of device, handshake or parity is chosen, or when a flow-control
// character is taken from an empty field; what was written before stays written.
bool SaveSite(ProfileFile& file, std::string_view code, std::string_view name, const SiteRecord& site,
              const DateTime& today);

} // namespace corvrec
