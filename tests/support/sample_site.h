#pragma once

#include "core/site/site_record.h"

namespace corvrec
{

// A site with every field filled, daily and by modem. It loads as it was saved, so a test can distinguish a
// change from a loss. Each test sets the fields that it checks.
SiteRecord SampleSite();

} // namespace corvrec
