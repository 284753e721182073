#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvrec
{

// A second, deliberately simple model of the profile functions: a list of lines, searched from the first. For
// single-byte files with CR LF at each line end; all texts are bytes.
class ReferenceProfile
{
public:
    explicit ReferenceProfile(std::string_view bytes);

    // Cut to size - 1 bytes; nullopt when the key is missing.
    std::optional<std::string> Read(std::string_view section, std::string_view key, std::size_t size) const;

    // The names that fit completely, each with its NUL, into size - 2 bytes.
    std::vector<std::string> Keys(std::string_view section, std::size_t size) const;

    void Write(std::string_view section, std::string_view key, std::string_view value);
    void DeleteKey(std::string_view section, std::string_view key);
    void DeleteSection(std::string_view section);

    std::string Bytes() const;

private:
    enum class Kind { blank, header, comment, key, bare };

    struct Line {
        std::string text; // without its end
        Kind kind = Kind::blank;
        std::string name; // of a header or a key, trimmed
        std::string folded;
    };

    using Index = std::size_t;

    static Line LineOf(std::string text);
    Index Header(std::string_view section) const; // index of the line, or the number of lines
    Index Behind(Index header) const;
    Index Key(Index header, std::string_view key) const; // as Header

    std::vector<Line> lines_;
};

} // namespace corvrec
