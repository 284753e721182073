// In the place of Windows' icacls, which does nothing under Wine: appends its command line, in UTF-8, to
// C:\icacls.txt. Fails if there is a file C:\icacls-fails.
#include <array>
#include <fstream>
#include <windows.h>

int main()
{
    std::array<char, 4096> line{};
    WideCharToMultiByte(CP_UTF8, 0, GetCommandLineW(), -1, line.data(), static_cast<int>(line.size()),
                        nullptr, nullptr);
    std::ofstream("C:\\icacls.txt", std::ios::app) << line.data() << '\n';
    return std::ifstream("C:\\icacls-fails") ? 5 : 0;
}
