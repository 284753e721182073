#pragma once

#include <windows.h>

namespace corvrec
{

// Whether this Windows is Wine.
inline bool IsWine()
{
    return ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

} // namespace corvrec
