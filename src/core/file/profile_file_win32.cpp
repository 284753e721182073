#include "core/file/profile_file.h"

#include <algorithm>
#include <limits>
#include <string>
#include <system_error>
#include <windows.h>

namespace corvrec
{

namespace
{

// Replaces a character that the code page lacks. No file name contains it, so every operation on such a path
// fails.
constexpr const char* kNoCharacter = "?";

// The profile functions convert the file's text through the machine's own code page, both ways. A byte
// survives if every byte is a character of its own, whichever it is; in UTF-8 or an East Asian page accented
// letters would not.
bool CodePageKeepsBytes()
{
    CPINFO page{};
    return ::GetCPInfo(CP_ACP, &page) != FALSE && page.MaxCharSize == 1;
}

// A path for the profile functions, in the machine's own code page.
std::string AnsiPath(const std::wstring& path)
{
    const auto length = static_cast<int>(path.size());
    const int size = ::WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, path.data(), length, nullptr, 0,
                                           kNoCharacter, nullptr);
    std::string ansi(static_cast<std::size_t>(std::max(size, 0)), '\0');
    ::WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, path.data(), length, ansi.data(), size, kNoCharacter,
                          nullptr);
    return ansi;
}

// A directory's short name has no characters outside the code page. Empty when the file system keeps no short
// names.
std::wstring ShortDirectory(const std::wstring& directory)
{
    std::wstring name(::GetShortPathNameW(directory.c_str(), nullptr, 0), L'\0');
    name.resize(::GetShortPathNameW(directory.c_str(), name.data(), static_cast<DWORD>(name.size())));
    return name;
}

// The full path: the functions would look for a bare name in the Windows directory. Only the directory is
// shortened, since the file may not exist yet. A path that cannot be expressed keeps its kNoCharacter.
std::string ProfilePath(const std::filesystem::path& file)
{
    if (!CodePageKeepsBytes())
        return kNoCharacter;
    std::string path = AnsiPath(file.native());
    if (path.find(kNoCharacter) == std::string::npos)
        return path;
    const std::filesystem::path directory = ShortDirectory(file.parent_path().native());
    return directory.empty() ? path : AnsiPath((directory / file.filename()).native());
}

std::filesystem::path FullPath(const std::filesystem::path& file)
{
    std::error_code failure;
    const auto full = std::filesystem::absolute(file, failure);
    return failure ? file : full;
}

// A parameter ends at its first NUL. The copy is deliberate: old systems write into an empty name.
std::string Parameter(std::string_view text)
{
    return std::string(text.substr(0, text.find('\0')));
}

DWORD BufferSize(std::size_t size)
{
    return static_cast<DWORD>(std::min<std::size_t>(size, std::numeric_limits<DWORD>::max()));
}

class Win32ProfileFile final : public ProfileFile
{
public:
    explicit Win32ProfileFile(const std::filesystem::path& file)
        : file_(FullPath(file))
        , path_(ProfilePath(file_))
    {
    }

    std::string Read(std::string_view section, std::string_view key, std::string_view fallback,
                     std::size_t size) override
    {
        std::string name = Parameter(key);
        return Get(section, name.data(), fallback, size);
    }

    std::string Keys(std::string_view section, std::string_view fallback, std::size_t size) override
    {
        return Get(section, nullptr, fallback, size);
    }

    bool Write(std::string_view section, std::string_view key, std::string_view value) override
    {
        std::string name = Parameter(key);
        std::string text = Parameter(value);
        return Set(section, name.data(), text.data());
    }

    bool DeleteKey(std::string_view section, std::string_view key) override
    {
        std::string name = Parameter(key);
        return Set(section, name.data(), nullptr);
    }

    bool DeleteSection(std::string_view section) override { return Set(section, nullptr, nullptr); }

    // A missing file counts as writable.
    bool IsWritable() override
    {
        if (path_.find(kNoCharacter) != std::string::npos)
            return false;
        HANDLE file = ::CreateFileW(file_.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file == INVALID_HANDLE_VALUE)
            return ::GetLastError() == ERROR_FILE_NOT_FOUND;
        ::CloseHandle(file);
        return true;
    }

    void Flush() override
    {
        // Old systems cache the file until this call.
        ::WritePrivateProfileStringA(nullptr, nullptr, nullptr, path_.c_str());
        HANDLE file = ::CreateFileW(file_.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file == INVALID_HANDLE_VALUE)
            return;
        ::FlushFileBuffers(file);
        ::CloseHandle(file);
    }

private:
    // key: null for the list of the section's keys.
    std::string Get(std::string_view section, char* key, std::string_view fallback, std::size_t size)
    {
        std::string name = Parameter(section);
        std::string missing = Parameter(fallback);
        std::string buffer(BufferSize(size), '\0');
        buffer.resize(::GetPrivateProfileStringA(name.data(), key, missing.data(), buffer.data(),
                                                 BufferSize(size), path_.c_str()));
        return buffer;
    }

    // key: null to delete the whole section. value: null to delete the key.
    bool Set(std::string_view section, char* key, char* value)
    {
        std::string name = Parameter(section);
        return ::WritePrivateProfileStringA(name.data(), key, value, path_.c_str()) != FALSE;
    }

    std::filesystem::path file_;
    std::string path_;
};

} // namespace

std::unique_ptr<ProfileFile> OpenProfileFile(const std::filesystem::path& file)
{
    return std::make_unique<Win32ProfileFile>(file);
}

} // namespace corvrec
