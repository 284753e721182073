#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace corvrec
{

// The settings file as the profile functions of Windows see it (GetPrivateProfileStringA,
// WritePrivateProfileStringA). All texts are bytes in code page 1252. Nothing throws: whatever the file holds
// or the system answers, a failed read gives the fallback and a failed write gives false and leaves the file
// as it was, byte for byte.
//
// Only the first section of a name counts, and in it only the first key of a name; names ignore letter case.
class ProfileFile
{
public:
    virtual ~ProfileFile() = default;

    // The key's value, cut to size - 1 bytes; the fallback, cut alike and without trailing spaces, when the
    // file, the section or the key is missing. A pair of equal quotes around the value is dropped. An empty
    // value is not missing.
    virtual std::string Read(std::string_view section, std::string_view key, std::string_view fallback,
                             std::size_t size) = 0;

    // The section's key names in file order, a NUL behind each, cut to size - 2 bytes in all (so the last
    // name may be cut and lack its NUL). The fallback, without a NUL, when there is no key.
    virtual std::string Keys(std::string_view section, std::string_view fallback, std::size_t size) = 0;

    // Sets the key in place, adding key, section or file when missing. Writing what stands there already
    // writes nothing.
    virtual bool Write(std::string_view section, std::string_view key, std::string_view value) = 0;

    virtual bool DeleteKey(std::string_view section, std::string_view key) = 0;

    // Comments and blank lines of the section stay in the file.
    virtual bool DeleteSection(std::string_view section) = 0;

    // Whether a write could succeed as far as permissions tell: false for a file that this user may not
    // write, or in a file system without writing. A file that is missing counts as its directory does. A
    // write can fail all the same, for want of room for example.
    [[nodiscard]] virtual bool IsWritable() = 0;

    // Asks the system to bring what was written to the disk; once after a user's action. A failure is
    // ignored: the data is in the file for every other program, only a power cut could still lose it.
    virtual void Flush() = 0;
};

// The profile functions themselves on Windows, elsewhere an implementation that gives the same bytes. On a
// Windows whose code page would not keep the bytes (UTF-8, East Asia) every operation fails. The
// file need not exist; it is opened anew for each operation and may be a symbolic link. The program ignores
// SIGXFSZ where there is such a signal, so that a limit of the file size is a failed write and not the
// program's end.
std::unique_ptr<ProfileFile> OpenProfileFile(const std::filesystem::path& file);

} // namespace corvrec
