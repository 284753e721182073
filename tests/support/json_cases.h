#pragma once

#include "core/text_ids.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <string>

namespace corvrec
{

using Json = nlohmann::json;

// The text as JSON. Throws if it is none.
Json ParsedJson(const std::string& text);

// The lists of tests/data/conversions.json; the README.md there explains their fields.
const Json& Lists();

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

// The expected text from tests/data/texts.json. Throws when there is none.
std::string ExpectedText(TextId id);

inline std::string TextOf(const Json& one, const char* field)
{
    return one.at(field).get<std::string>();
}

} // namespace corvrec
