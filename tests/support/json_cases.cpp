#include "tests/support/json_cases.h"

#include <fstream>

namespace corvrec
{

Json ParsedJson(const std::string& text)
{
    return Json::parse(text);
}

const Json& Lists()
{
    static const Json lists = Json::parse(std::ifstream(CORVREC_TEST_DATA "/conversions.json"));
    return lists;
}

std::string ExpectedText(TextId id)
{
    static const Json table = Json::parse(std::ifstream(CORVREC_TEST_DATA "/texts.json"));
    return TextOf(table, std::to_string(static_cast<int>(id)).c_str());
}

} // namespace corvrec
