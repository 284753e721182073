#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvrec
{

// A second, deliberately simple model of the profile functions: a list of lines, searched from the first. It
// shares no code with src/core/file except for the code page. Parameters and results are bytes.
class ReferenceProfile
{
public:
    enum class Kind { blank, header, comment, key, bare };

    // Texts consist of characters: for a byte by the code page, for a UTF-16 unit its own number. They are
    // valid until the next change.
    struct Line {
        Kind kind = Kind::blank;
        std::u16string_view text;    // without its end
        std::u16string_view end;     // CR, LF, both, or none
        std::u16string_view section; // the name in the header above, or in this one
        std::u16string_view name;    // of a key
        std::u16string_view value;   // of a key: everything after the '='
    };

    explicit ReferenceProfile(std::string_view bytes = {});
    ReferenceProfile(const ReferenceProfile&) = delete;
    ReferenceProfile& operator=(const ReferenceProfile&) = delete;
    ReferenceProfile(ReferenceProfile&&) = delete;
    ReferenceProfile& operator=(ReferenceProfile&&) = delete;
    ~ReferenceProfile() = default;

    // What fits into a buffer of that size; nullopt without such a key (Read) or without any key (Keys).
    [[nodiscard]] std::optional<std::string> Read(std::string_view section, std::string_view key,
                                                  std::size_t size) const;
    [[nodiscard]] std::optional<std::string> Keys(std::string_view section, std::size_t size) const;

    // False when the file cannot be written: UTF-16 of odd length.
    bool Write(std::string_view section, std::string_view key, std::string_view value);
    bool DeleteKey(std::string_view section, std::string_view key);
    bool DeleteSection(std::string_view section);

    [[nodiscard]] std::string Bytes() const;
    [[nodiscard]] const std::vector<Line>& Lines() const { return lines_; }

private:
    using Index = std::size_t;

    void Parse(std::u16string newText);
    // The indices of the section's header, of the header after it, and of a key; the number of lines when
    // there is none.
    [[nodiscard]] Index Header(std::string_view section) const;
    [[nodiscard]] Index End(Index header) const;
    [[nodiscard]] Index Key(Index header, std::string_view key) const;
    // All lines, with one of them replaced.
    [[nodiscard]] std::u16string With(Index line, std::u16string_view replacement) const;

    bool isWide_;
    std::string rest_; // of UTF-16: half a character at the end
    std::u16string text_;
    std::vector<Line> lines_;
};

// Whether saving or removing the site with this code may change the line: the header, keys and bare lines of
// its section, its key in "Siti", and "Log" in "General".
bool IsOfSite(const ReferenceProfile::Line& line, std::string_view code);

// The text in code page 1252, "?" for what the page does not have.
std::string Narrowed(std::u16string_view text);

} // namespace corvrec
