// Peak heap use of reading, for any content of a file. Counted in bytes, so it does not depend on timing.
#include "core/site/modem_catalogue.h"
#include "tests/fuzz/text_profile.h"
#include "tests/support/settings_file.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <malloc.h>
#include <new>
#include <ostream>
#include <string>
#include <string_view>

namespace
{

std::size_t allocated = 0;
std::size_t most = 0;

void* Allocate(std::size_t size)
{
    void* const block = std::malloc(size);
    if (block == nullptr)
        throw std::bad_alloc();
    allocated += malloc_usable_size(block);
    most = std::max(most, allocated);
    return block;
}

void Free(void* block)
{
    allocated -= malloc_usable_size(block);
    std::free(block);
}

} // namespace

void* operator new(std::size_t size)
{
    return Allocate(size);
}

void operator delete(void* block) noexcept
{
    Free(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept
{
    Free(block);
}

namespace corvrec
{

namespace
{

constexpr std::size_t kMebibyte = std::size_t{1024} * 1024;
constexpr std::size_t kFileSize = kMebibyte / 2;

// The most bytes that the action allocates at a time, in addition to what is allocated already.
std::size_t PeakOf(const std::function<void()>& action)
{
    const std::size_t before = allocated;
    most = allocated;
    action();
    return most - before;
}

std::string Repeated(std::string_view piece)
{
    std::string bytes;
    bytes.reserve(kFileSize);
    while (bytes.size() + piece.size() <= kFileSize)
        bytes.append(piece);
    return bytes;
}

// Lines of head, a name of three letters, and tail. The names differ until all combinations are used up.
std::string Numbered(std::string_view begin, std::string_view head, std::string_view tail)
{
    std::string bytes(begin);
    bytes.reserve(kFileSize);
    for (std::size_t number = 0; bytes.size() + head.size() + 3 + tail.size() <= kFileSize; ++number) {
        constexpr std::string_view letters =
            "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ!#$%&()*+,-./:<>?@^_{|}~"
            "\xC0\xC1\xC2\xC3\xC4\xC5\xC6\xC7\xC8\xC9\xCA\xCB\xCC\xCD\xCE\xCF"
            "\xD0\xD1\xD2\xD3\xD4\xD5\xD6\xD7\xD8\xD9\xDA\xDB\xDC\xDD\xDE\xDF";
        std::size_t rest = number;
        bytes.append(head);
        for (int place = 0; place < 3; ++place, rest /= letters.size())
            bytes += letters[rest % letters.size()];
        bytes.append(tail);
    }
    return bytes;
}

std::string Wide(std::string_view bytes)
{
    std::string wide = "\xFF\xFE";
    wide.reserve(kFileSize);
    for (const char byte : bytes.substr(0, kFileSize / 2 - 1))
        wide.append(1, byte).append(1, '\0');
    return wide;
}

struct Content {
    const char* name;
    std::function<std::string()> bytes;
};

// NOLINTNEXTLINE(readability-identifier-naming): GoogleTest's name
void PrintTo(const Content& content, std::ostream* out)
{
    *out << content.name;
}

class Memory : public testing::TestWithParam<Content>
{
};

TEST_P(Memory, OfATextOrAFileIsAtMostTenTimesItsBytes)
{
    const std::string bytes = GetParam().bytes();
    const SettingsFile place(bytes);
    const auto takes = [&](const std::function<void(ProfileFile&)>& use) {
        EXPECT_LE(PeakOf([&] {
                      fuzz::TextProfile text(bytes);
                      use(text);
                  }),
                  10 * bytes.size());
        place.Rewrite(bytes);
        EXPECT_LE(PeakOf([&] { use(*OpenProfileFile(place.Path())); }), 10 * bytes.size());
    };

    for (const char* const section : {"", "[", "A", "zzz"}) {
        SCOPED_TRACE(section);
        takes([&](ProfileFile& file) {
            file.Read(section, "", "none", 100);
            file.Keys(section, "none", 65536);
            file.Write(section, "", "1");
            file.Write(section, "key", "1");
            file.Write("new", "key", "1");
            file.DeleteKey(section, "");
        });
        takes([&](ProfileFile& file) { file.DeleteSection(section); });
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, Memory,
    testing::Values(Content{"brackets", [] { return Repeated("["); }},
                    Content{"headersWithoutAName", [] { return Repeated("[\n"); }},
                    Content{"closedHeadersWithoutAName", [] { return Repeated("[]\n"); }},
                    Content{"headersOfEachName", [] { return Numbered("", "[", "\n"); }},
                    Content{"headersOfOneLetter", [] { return Repeated("[A\n[B\n[C\n"); }},
                    Content{"keysWithoutAName", [] { return "[A]\n" + Repeated("=\n"); }},
                    Content{"keysOfEachName", [] { return Numbered("[A]\n", "", "=\n"); }},
                    Content{"sectionsOfOneKey", [] { return Repeated("[A\n=\n"); }},
                    Content{"lineEnds", [] { return Repeated("\n"); }},
                    Content{"lineEndsInASection", [] { return "[A]\n" + Repeated("\n"); }},
                    Content{"commentsInASection", [] { return "[A]\n" + Repeated(";\n=\n"); }},
                    Content{"equalsSigns", [] { return "[A]\n" + Repeated("="); }},
                    Content{"nuls", [] { return Repeated(std::string_view("\0", 1)); }},
                    Content{"blanks", [] { return Repeated(" "); }},
                    Content{"wideHeadersWithoutAName", [] { return Wide(Repeated("[\n")); }},
                    Content{"wideHeadersOfEachName", [] { return Wide(Numbered("", "[", "\n")); }},
                    Content{"wideKeysWithoutAName", [] { return Wide("[A]\n" + Repeated("=\n")); }},
                    Content{"wideKeysOfEachName", [] { return Wide(Numbered("[A]\n", "", "=\n")); }},
                    Content{"wideLineEnds", [] { return Wide(Repeated("\n")); }}),
    [](const auto& test) { return std::string(test.param.name); });

// A million models without name and string.
TEST(CatalogueMemory, OfAFileOfLineEndsIsThatOfTheirPositions)
{
    const SettingsFile place;
    const std::filesystem::path file = place.Directory() / "modem.dat";
    place.Rewrite(std::string(4 * kMebibyte, '\n'));
    std::filesystem::rename(place.Path(), file);
    std::size_t models = 0;

    EXPECT_LE(PeakOf([&] { models = ModemCatalogue(file).Models().Count(); }), 10 * kMebibyte);

    EXPECT_EQ(models, kMebibyte);
}

TEST(CatalogueMemory, OfASparse4GiBFileIsThatOfThePartRead)
{
    const SettingsFile place("");
    const std::filesystem::path file = place.Directory() / "modem.dat";
    std::filesystem::rename(place.Path(), file);
    std::filesystem::resize_file(file, std::uintmax_t{4096} * kMebibyte);
    std::size_t models = 1;

    EXPECT_LE(PeakOf([&] { models = ModemCatalogue(file).Models().Count(); }), 10 * kMebibyte);

    EXPECT_EQ(models, 0U);
}

} // namespace

} // namespace corvrec
