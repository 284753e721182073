#pragma once

#include "core/clock.h"
#include "core/site/site_record.h"

namespace corvrec
{

// The values that a new site begins with, at this time of day. Its files are names without a directory.
SiteRecord NewSite(const DateTime& now);

} // namespace corvrec
