#pragma once

#include <array>
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace corvrec
{

struct KeyLine {
    std::string_view key;
    std::string_view value;
};

// The keys in the section of a saved site.
inline constexpr std::array<KeyLine, 34> kSiteKeys{{
    {"SitoAbilitato", "1"},
    {"STimeRead", "10"},
    {"STimeWrite", "10"},
    {"MTimeRead", "10"},
    {"MTimeWrite", "10"},
    {"FlagCRLF", "0"},
    {"Dispositivo", "STX30"},
    {"MODEM", "1"},
    {"Handshake", "Software"},
    {"Xon", " 17"},
    {"Xoff", " 19"},
    {"Baud", "9600"},
    {"BitDati", "8"},
    {"Parita", "N"},
    {"Stop", "1"},
    {"Ricorrenza", "0"},
    {"Ora", "08:30 21/11/2026"},
    {"Ogni", " 86400"},
    {"AggData", "1"},
    {"AggOra", "0"},
    {"EliminaNull", "1"},
    {"CorreggiCR", "0"},
    {"Dati", "C:\\Dati\\Ufficio.txt"},
    {"Dati2", "C:\\Dati\\Scambio.txt"},
    {"Storico", "C:\\Dati\\Storico.txt"},
    {"Modello", "Generico"},
    {"StringaModem", "ATX3S0=0"},
    {"StringaReset", "AT&F"},
    {"NumeroTel", "ATDT0123456789"},
    {"Importazione", "3"},
    {"FileTimeout", "1600"},
    {"SpazioTimeout", "120"},
    {"TimeoutFineImp", "15"},
    {"CharToDel", "00"},
}};

// A temporary directory with a Corvrec.ini of this many sites, removed with the object.
class SitesFile
{
public:
    explicit SitesFile(int sites);
    ~SitesFile();
    SitesFile(const SitesFile&) = delete;
    SitesFile& operator=(const SitesFile&) = delete;

    [[nodiscard]] std::string Path() const { return (directory_ / "Corvrec.ini").native(); }
    [[nodiscard]] const std::string& Bytes() const { return bytes_; }

    // Writes the file's original bytes again.
    void Restore() const;

    // The code of the site in the middle of the file.
    [[nodiscard]] const std::string& Code() const { return code_; }

    // Offsets of the site's line in [Siti], of its section, and of the section after it.
    [[nodiscard]] std::size_t SiteLine() const { return siteLine_; }
    [[nodiscard]] std::size_t SectionBegin() const { return sectionBegin_; }
    [[nodiscard]] std::size_t SectionEnd() const { return sectionEnd_; }

private:
    std::filesystem::path directory_;
    std::string bytes_;
    std::string code_;
    std::size_t siteLine_ = 0;
    std::size_t sectionBegin_ = 0;
    std::size_t sectionEnd_ = 0;
};

} // namespace corvrec
