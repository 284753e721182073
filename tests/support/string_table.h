#pragma once

#include "core/text_ids.h"

#include <fstream>
#include <nlohmann/json.hpp>
#include <string>

namespace corvrec
{

// The expected text from tests/data/texts.json. Throws when there is none.
inline std::string ExpectedText(TextId id)
{
    static const auto table = nlohmann::json::parse(std::ifstream(CORVREC_TEST_DATA "/texts.json"));
    return table.at(std::to_string(static_cast<int>(id))).get<std::string>();
}

} // namespace corvrec
