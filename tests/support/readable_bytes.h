#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace corvrec
{

// Bytes in a notation that can be read, and back: "AT<0D>" ends in a carriage return. Every byte other than
// printable ASCII is in brackets.
inline std::string Readable(std::string_view bytes)
{
    constexpr std::string_view kHexDigits = "0123456789ABCDEF";
    std::string readable;
    for (const char c : bytes) {
        const auto code = static_cast<unsigned char>(c);
        if (code >= 0x20 && code < 0x7F)
            readable += c;
        else
            readable += {'<', kHexDigits[code / 16U], kHexDigits[code % 16U], '>'};
    }
    return readable;
}

inline std::string BytesOf(std::string_view readable)
{
    std::string bytes;
    for (std::size_t i = 0; i < readable.size(); ++i) {
        if (readable[i] != '<') {
            bytes += readable[i];
            continue;
        }
        bytes += static_cast<char>(std::stoi(std::string(readable.substr(i + 1, 2)), nullptr, 16));
        i += 3;
    }
    return bytes;
}

} // namespace corvrec
