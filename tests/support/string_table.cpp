#include "tests/support/string_table.h"

#include <fstream>
#include <nlohmann/json.hpp>

namespace corvrec
{

std::string ExpectedText(TextId id)
{
    static const auto table = nlohmann::json::parse(std::ifstream(CORVREC_TEST_DATA "/texts.json"));
    return table.at(std::to_string(static_cast<int>(id))).get<std::string>();
}

} // namespace corvrec
