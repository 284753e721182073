#include "core/site/modem_catalogue.h"

#include "core/file/code_page.h"

#include <algorithm>
#include <cstddef>
#include <system_error>
#include <utility>

namespace corvrec
{

namespace
{

// Removes the first line and its line end from the front of the text, which must not be empty.
std::string_view TakeLine(std::string_view& text)
{
    const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end);
    text.remove_prefix(text.starts_with("\r\n") ? 2 : std::min<std::size_t>(1, text.size()));
    return line;
}

// The file's bytes up to its end, the first error, or the last line end within the limit.
std::string Contents(std::ifstream& file)
{
    constexpr std::size_t kChunk = std::size_t{64} * 1024;
    static_assert(ModemCatalogue::mostBytes % kChunk == 0);
    std::string bytes;
    std::vector<char> chunk(kChunk);
    do {
        file.read(chunk.data(), static_cast<std::streamsize>(chunk.size()));
        bytes.append(chunk.data(), static_cast<std::size_t>(file.gcount()));
    } while (file && bytes.size() < ModemCatalogue::mostBytes);
    const bool isCut = file && file.peek() != std::ifstream::traits_type::eof();
    if (isCut)
        bytes.erase(bytes.find_last_of("\r\n") + 1); // npos + 1 is 0: not a single whole line
    return bytes;
}

} // namespace

ModemModel ParseCatalogueLine(std::string_view line)
{
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos)
        return {.name = "", .initString = std::string(line)};
    return {.name = std::string(line.substr(0, equals)), .initString = std::string(line.substr(equals + 1))};
}

ModemModels::ModemModels(std::string bytes)
    : bytes_(std::move(bytes))
{
    for (std::string_view rest = bytes_; !rest.empty(); TakeLine(rest))
        begins_.push_back(static_cast<std::uint32_t>(bytes_.size() - rest.size()));
}

ModemModel ModemModels::At(std::size_t line) const
{
    std::string_view rest = std::string_view(bytes_).substr(begins_.at(line));
    return ParseCatalogueLine(Utf8FromCp1252(TakeLine(rest)));
}

ModemCatalogue::ModemCatalogue(const std::filesystem::path& file)
{
    std::error_code ignored;                              // a file that cannot be examined is no regular file
    if (!std::filesystem::is_regular_file(file, ignored)) // opening a FIFO would wait for its writer
        return;
    file_.open(file, std::ios::binary);
    models_ = ModemModels(Contents(file_));
}

} // namespace corvrec
