// The modem catalogue: one model per line, and no byte lost.
//
// Input: the bytes of modem.dat.

#include "core/site/modem_catalogue.h"

#include "core/file/code_page.h"
#include "tests/fuzz/fuzzing.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace corvrec::fuzz
{

namespace
{

// All line ends as LF, including the last line's.
std::string WithPlainLineEnds(std::string_view bytes)
{
    std::string plain;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const bool isPair = bytes.substr(i).starts_with("\r\n");
        plain += bytes[i] == '\r' ? '\n' : bytes[i];
        i += isPair ? 1 : 0;
    }
    if (!plain.empty() && plain.back() != '\n')
        plain += '\n';
    return plain;
}

void CheckCatalogue(std::string_view bytes)
{
    const std::string wanted = WithPlainLineEnds(bytes);
    std::string found;
    const ModemModels models{std::string(bytes)};
    for (std::size_t line = 0; line < models.Count(); ++line) {
        const ModemModel model = models.At(line);
        Check(model.name.find('=') == std::string::npos, "a name ends at the first '='");
        const std::string name = Cp1252FromUtf8(model.name);
        const std::string initString = Cp1252FromUtf8(model.initString);
        Check(Utf8FromCp1252(name) == model.name && Utf8FromCp1252(initString) == model.initString,
              "all texts are UTF-8");
        // A line without '=' and one that starts with it both have no name; only the file shows the
        // difference.
        const bool hasEquals =
            !name.empty() || std::string_view(wanted).substr(found.size()).starts_with('=');
        found.append(name).append(hasEquals ? "=" : "").append(initString).append("\n");
        Check(wanted.starts_with(found), "a model reproduces its line");
    }
    Check(found == wanted, "each line is a model");
}

} // namespace

} // namespace corvrec::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    corvrec::fuzz::CheckCatalogue({reinterpret_cast<const char*>(data), size}); // bytes are characters here
    return 0;
}
