#include "tests/support/plugged_device.h"

namespace corvrec
{

std::string Answers(const std::vector<std::string>& answers)
{
    constexpr auto kDigits = "0123456789ABCDEF";
    std::string description = "answers";
    for (const std::string& answer : answers) {
        description += answer.empty() ? " -" : " ";
        for (const char byte : answer) {
            const auto code = static_cast<unsigned char>(byte);
            description += kDigits[code / 16];
            description += kDigits[code % 16];
        }
    }
    return description;
}

} // namespace corvrec
