#pragma once

#include <fstream>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <string>

namespace corvrec
{

using Json = nlohmann::json;

// The lists of tests/data/conversions.json; the README.md there explains their fields.
inline const Json& Lists()
{
    static const Json lists = Json::parse(std::ifstream(CORVREC_TEST_DATA "/conversions.json"));
    return lists;
}

// Runs the check on each case of the list, which must not be empty. A failure prints the case.
template <class Check>
void ForEachCase(const char* list, Check check)
{
    const Json& cases = Lists().at(list);
    ASSERT_FALSE(cases.empty());
    for (const Json& one : cases) {
        SCOPED_TRACE(one.dump());
        check(one);
    }
}

inline std::string TextOf(const Json& one, const char* field)
{
    return one.at(field).get<std::string>();
}

} // namespace corvrec
