#pragma once

#include "core/text_ids.h"

#include <string>

namespace corvrec
{

// The expected text of the string table, from tests/data/texts.json. Throws when there is none.
std::string ExpectedText(TextId id);

} // namespace corvrec
