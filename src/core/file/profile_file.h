#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace corvrec
{

// The settings file as Windows' profile functions see it (GetPrivateProfileStringA,
// WritePrivateProfileStringA). All texts are bytes in code page 1252. Nothing throws: whatever the file holds
// or the system answers, a failed read returns the fallback, and a failed write returns false and leaves the
// file as it was, byte for byte.
//
// Only the first section of a name counts, and in it only the first key of a name. Names ignore case.
class ProfileFile
{
public:
    virtual ~ProfileFile() = default;

    // The key's value, cut to size - 1 bytes. The fallback, cut the same way and without trailing spaces,
    // when the file, the section or the key is missing. One pair of equal quotes around the value is dropped.
    // An empty value is not missing.
    virtual std::string Read(std::string_view section, std::string_view key, std::string_view fallback,
                             std::size_t size) = 0;

    // The section's key names in file order, each followed by a NUL, cut to size - 2 bytes in total (so the
    // last name may be cut and lack its NUL). The fallback, without a NUL, when there is no key.
    virtual std::string Keys(std::string_view section, std::string_view fallback, std::size_t size) = 0;

    // Changes the key in place; adds key, section or file when missing. When the key already has the value,
    // nothing is written.
    virtual bool Write(std::string_view section, std::string_view key, std::string_view value) = 0;

    // True also when there is no such key.
    virtual bool DeleteKey(std::string_view section, std::string_view key) = 0;

    // Comments and blank lines of the section stay in the file. True also when there is no such section.
    virtual bool DeleteSection(std::string_view section) = 0;

    // Whether permissions allow a write: false for a file that this user may not write, or on a read-only
    // file system. For a missing file its directory decides. A write can fail all the same, for example for
    // lack of room.
    [[nodiscard]] virtual bool IsWritable() = 0;

    // Asks the system to bring everything written to the disk; called once after a user's action. A failure
    // is ignored: every other program sees the data in the file, and only a power cut could still lose it.
    virtual void Flush() = 0;
};

// On Windows the profile functions themselves, elsewhere an implementation that gives the same bytes. On a
// Windows whose code page would not keep the bytes (UTF-8, East Asia) every operation fails. The file need
// not exist and may be a symbolic link; it is opened again for each operation. Where SIGXFSZ exists the
// program ignores it, so that a limit on file sizes is a failed write and does not end the program.
std::unique_ptr<ProfileFile> OpenProfileFile(const std::filesystem::path& file);

} // namespace corvrec
