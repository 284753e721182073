#pragma once

#include "core/site/site_record.h"

#include <string_view>

namespace corvrec
{

class ProfileFile;

// Decodes the site's section, and "Log" of "General", into the fields of `site`. A field whose key is missing
// or has no valid value keeps what it holds. Returns the last reader's result, whether both alerts were
// found; the results of all others are never reported. `code` is UTF-8.
bool LoadSite(ProfileFile& file, std::string_view code, SiteRecord& site);

} // namespace corvrec
