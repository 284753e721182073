#pragma once

#include "core/text_ids.h"

#include <string>

namespace corvrec
{

// The expected text from tests/data/texts.json. Throws when there is none.
std::string ExpectedText(TextId id);

} // namespace corvrec
