#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace corvrec
{

// A change of a file: `removed` bytes at `offset` give way to `inserted`. All in bytes of the file as it
// stands.
struct Edit {
    std::size_t offset = 0;
    std::size_t removed = 0;
    std::string inserted;

    bool operator==(const Edit&) const = default;
    [[nodiscard]] bool ChangesNothing() const { return removed == 0 && inserted.empty(); }
};

// A profile file's bytes and what they mean: sections, keys and values, and the edits that change them. It
// knows no file. All parameters and results are bytes in code page 1252, sizes as the profile functions of
// Windows count them (the closing NUL of a text included). Any bytes, up to 4 GiB, are a valid file.
//
// A file of even length that starts with FF FE is UTF-16 little endian; every other one is single bytes.
//
// The places of the sections are looked for at the first question, the keys of a section at the first
// question about that section. Apply keeps what it can of both. Whatever the bytes are, text and index
// together take less than ten times their room.
class IniText
{
public:
    explicit IniText(std::string bytes = {});
    ~IniText();
    IniText(IniText&& other) noexcept;
    IniText& operator=(IniText&& other) noexcept;

    [[nodiscard]] const std::string& Bytes() const { return bytes_; }

    // As ProfileFile::Read and ProfileFile::Keys.
    std::string Read(std::string_view section, std::string_view key, std::string_view fallback,
                     std::size_t size);
    std::string Keys(std::string_view section, std::string_view fallback, std::size_t size);

    // The edit that makes the key hold the value, or takes key or section out; one that changes nothing when
    // that is so already. No edit when the bytes cannot be continued: UTF-16 with half a character at the
    // end.
    std::optional<Edit> Put(std::string_view section, std::string_view key, std::string_view value);
    std::optional<Edit> EraseKey(std::string_view section, std::string_view key);
    std::optional<Edit> EraseSection(std::string_view section);

    // Carries out an edit that this object gave for the bytes as they are now.
    void Apply(const Edit& edit);

    // So many bytes that change no reading at the end of the file: a blank line, or blanks behind the last
    // value. In UTF-16 the length is even.
    [[nodiscard]] std::string Filler(std::size_t length) const;

private:
    struct View;
    class Index;

    [[nodiscard]] View Text() const;
    Index& Places();
    [[nodiscard]] bool IsContinuable() const;
    [[nodiscard]] Edit EditAt(std::size_t begin, std::size_t end, std::string_view inserted) const;
    [[nodiscard]] Edit NewSection(std::string_view section, std::string_view line) const;
    [[nodiscard]] Edit NewLine(std::size_t section, std::string_view line);

    std::string bytes_;
    bool isUtf16_;
    std::string narrowed_;         // UTF-16 only: a byte for each unit behind the mark, '?' for what has none
    std::unique_ptr<Index> index_; // nothing before the first question
};

} // namespace corvrec
