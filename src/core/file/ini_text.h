#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace corvrec
{

namespace ini
{
class Index;
struct Text;
} // namespace ini

// A change to a file: `removed` bytes at `offset` are replaced by `inserted`. Counted in bytes of the file as
// it was before the change.
struct Edit {
    std::size_t offset = 0;
    std::size_t removed = 0;
    std::string inserted;

    bool operator==(const Edit&) const = default;
    [[nodiscard]] bool ChangesNothing() const { return removed == 0 && inserted.empty(); }
};

// The bytes of a profile file and their meaning: sections, keys and values, and the edits that change them.
// It does no file access. All parameters and results are bytes in code page 1252; sizes are counted as
// Windows' profile functions count them (including a text's closing NUL). Any bytes, up to 4 GiB, are a valid
// file.
//
// A file of even length that starts with FF FE is UTF-16 little endian; any other file is single bytes.
//
// Sections are indexed at the first query, a section's keys at the first query about that section. Apply
// keeps as much of both as it can. Text and index together take less than ten times the room of the bytes,
// whatever they are.
class IniText
{
public:
    explicit IniText(std::string bytes = {});
    ~IniText();
    IniText(IniText&& other) noexcept;

    [[nodiscard]] const std::string& Bytes() const { return bytes_; }

    // As ProfileFile::Read and ProfileFile::Keys.
    std::string Read(std::string_view section, std::string_view key, std::string_view fallback,
                     std::size_t size);
    std::string Keys(std::string_view section, std::string_view fallback, std::size_t size);

    // The edit that sets the key's value, or removes a key or a section; an empty edit when there is nothing
    // to do. nullopt when the file cannot be edited: UTF-16 with half a character at the end.
    std::optional<Edit> Put(std::string_view section, std::string_view key, std::string_view value);
    std::optional<Edit> EraseKey(std::string_view section, std::string_view key);
    std::optional<Edit> EraseSection(std::string_view section);

    // Carries out an edit. The edit must come from this object and from the bytes as they are now.
    void Apply(const Edit& edit);

    // Padding that no read can see: a blank line, or blanks after the last value. In UTF-16 the length is
    // even.
    [[nodiscard]] std::string Filler(std::size_t length) const;

private:
    [[nodiscard]] ini::Text Text() const;
    ini::Index& Places();
    [[nodiscard]] bool IsContinuable() const;
    [[nodiscard]] Edit EditAt(std::size_t begin, std::size_t end, std::string_view inserted) const;
    [[nodiscard]] Edit NewSection(std::string_view section, std::string_view line) const;
    [[nodiscard]] Edit NewLine(std::size_t section, std::string_view line);

    std::string bytes_;
    bool isUtf16_;
    std::string narrowed_; // UTF-16 only: a byte per unit after the mark, '?' where the page has none
    std::unique_ptr<ini::Index> index_; // null before the first query
};

} // namespace corvrec
