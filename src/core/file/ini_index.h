#pragma once

#include "core/file/ini_grammar.h"
#include "core/file/name_table.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <unordered_map>

namespace corvrec::ini
{

// The keys of a section. Positions count from the beginning of the section, so that they stay valid when the
// section moves.
struct KeyIndex {
    Entries lines;
    NameTable names;
};

// Where sections and keys are. Every function is given the text that the index describes.
class Index
{
public:
    explicit Index(const Text& text);

    [[nodiscard]] std::optional<std::size_t> FindSection(const Text& text, std::string_view name) const;
    [[nodiscard]] Span SpanOf(const Text& text, std::size_t section) const;

    // The reference is valid until another section's keys are requested.
    const KeyIndex& KeysOf(const Text& text, std::size_t section);

    // Positions count from the beginning of the section.
    std::optional<KeyLine> FindKey(const Text& text, std::size_t section, std::string_view name);

    // Follows a change of the text, in which `inserted` units have replaced the removed ones. Only the
    // sections that it touches are scanned again, including the one before the change: what is left may now
    // belong to that one.
    void Change(const Text& text, Span removed, std::size_t inserted);

private:
    [[nodiscard]] std::string_view NameOf(const Text& text, std::size_t section) const;
    void IndexNames(const Text& text);

    Entries sections_; // the entries of the header lines
    NameTable names_;
    std::unordered_map<std::size_t, KeyIndex> keys_; // by index into sections_
};

} // namespace corvrec::ini
