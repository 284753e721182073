#include "core/file/profile_file.h"
#include "tests/support/json_cases.h"
#include "tests/support/settings_file.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace corvrec
{

namespace
{

// Each character of the text is the byte with its number, so it is encoded in one or two bytes of UTF-8.
std::optional<std::string> BytesOf(const Json& value)
{
    if (value.is_null())
        return std::nullopt;
    const auto utf8 = value.get<std::string>();
    std::string bytes;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const auto lead = static_cast<unsigned char>(utf8[i]);
        const bool isPair = lead >= 0x80;
        bytes += isPair ? static_cast<char>((lead & 0x03) << 6 | (utf8.at(++i) & 0x3F)) : utf8[i];
    }
    return bytes;
}

struct VectorCase {
    Json data;
    [[nodiscard]] std::string Name() const { return data.at("name"); }
};

// NOLINTNEXTLINE(readability-identifier-naming): GoogleTest's name. Prints the name instead of all bytes.
void PrintTo(const VectorCase& vector, std::ostream* out)
{
    *out << vector.Name();
}

std::vector<VectorCase> VectorsOf(const std::string& file)
{
    std::ifstream lines(std::string(CORVREC_TEST_DATA "/profile/") + file + ".jsonl");
    std::vector<VectorCase> vectors;
    for (std::string line; std::getline(lines, line);)
        vectors.push_back({ParsedJson(line)});
    return vectors;
}

std::string TestName(const testing::TestParamInfo<VectorCase>& info)
{
    std::string name = info.param.Name();
    name.erase(0, name.find(": ") + 2);
    std::ranges::replace_if(
        name, [](unsigned char character) { return std::isalnum(character) == 0; }, '_');
    return name;
}

void PlayRead(ProfileFile& file, const Json& operation)
{
    const std::string section = BytesOf(operation.at("section")).value();
    const auto key = BytesOf(operation.at("key"));
    const std::string fallback = BytesOf(operation.at("default")).value_or("");
    const std::size_t size = operation.at("size");

    const std::string answer =
        key ? file.Read(section, *key, fallback, size) : file.Keys(section, fallback, size);

    EXPECT_EQ(answer, BytesOf(operation.at("expect"))) << operation.dump();
    EXPECT_EQ(answer.size(), operation.at("count")) << operation.dump();
}

void PlayWrite(ProfileFile& file, const Json& operation)
{
    const std::string section = BytesOf(operation.at("section")).value();
    const auto key = BytesOf(operation.at("key"));
    const auto value = BytesOf(operation.at("value"));

    const bool isDone = !key     ? file.DeleteSection(section)
                        : !value ? file.DeleteKey(section, *key)
                                 : file.Write(section, *key, *value);

    EXPECT_EQ(isDone, operation.at("ok")) << operation.dump();
}

void Play(SettingsFile& directory, ProfileFile& file, const Json& operations)
{
    for (const Json& operation : operations) {
        const std::string kind = operation.at("op");
        if (kind == "read") {
            PlayRead(file, operation);
        } else if (kind == "write") {
            PlayWrite(file, operation);
        } else if (const auto bytes = BytesOf(operation.at("bytes"))) {
            directory.Rewrite(*bytes);
        } else {
            directory.Remove();
        }
    }
}

// The path that the vector uses, prepared as its fixture says.
std::filesystem::path PathOf(const SettingsFile& directory, std::string_view fixture)
{
    const auto path = directory.Path();
    if (fixture == "directory") {
        directory.Remove();
        std::filesystem::create_directory(path);
    }
    if (fixture == "read-only")
        std::filesystem::permissions(path, std::filesystem::perms(0444));
    return fixture == "missing-parent" ? directory.Directory() / "missing" / path.filename() : path;
}

// Tries it, since the superuser may also write read-only files.
bool IsWritable(const std::filesystem::path& path)
{
    return std::ofstream(path, std::ios::in | std::ios::out).is_open();
}

// A path that is no regular file has no bytes to compare.
void ExpectBytes(const SettingsFile& directory, std::string_view fixture,
                 const std::optional<std::string>& bytes)
{
    if (!fixture.empty() && fixture != "read-only")
        return;
    EXPECT_EQ(directory.Exists(), bytes.has_value());
    EXPECT_EQ(directory.Bytes(), bytes.value_or(""));
}

class ProfileVectors : public testing::TestWithParam<VectorCase>
{
};

TEST_P(ProfileVectors, GiveTheListedAnswersAndBytes)
{
    const Json& vector = GetParam().data;
    const std::string fixture = vector.value("fixture", "");
    SettingsFile directory(BytesOf(vector.at("before")));
    const auto path = PathOf(directory, fixture);
    if (fixture == "read-only" && IsWritable(path))
        GTEST_SKIP() << "the superuser may write it";

    Play(directory, *OpenProfileFile(path), vector.at("ops"));

    ExpectBytes(directory, fixture, BytesOf(vector.at("after")));
}

INSTANTIATE_TEST_SUITE_P(Read, ProfileVectors, testing::ValuesIn(VectorsOf("read")), TestName);
INSTANTIATE_TEST_SUITE_P(List, ProfileVectors, testing::ValuesIn(VectorsOf("list")), TestName);
INSTANTIATE_TEST_SUITE_P(Write, ProfileVectors, testing::ValuesIn(VectorsOf("write")), TestName);
INSTANTIATE_TEST_SUITE_P(Delete, ProfileVectors, testing::ValuesIn(VectorsOf("delete")), TestName);
INSTANTIATE_TEST_SUITE_P(Sequence, ProfileVectors, testing::ValuesIn(VectorsOf("sequence")), TestName);

} // namespace

} // namespace corvrec
