#pragma once

#include "core/site/site_record.h"

namespace corvrec
{

// A site with every field filled, daily and by modem. It loads as it is saved, so that a change of it can be
// told from a loss. Each test sets what it is about.
SiteRecord SampleSite();

} // namespace corvrec
