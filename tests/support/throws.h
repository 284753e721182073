#pragma once

#include "core/device/serial_port.h"

namespace corvrec
{

// Whether the call throws PortError.
template <typename Call>
bool Throws(const Call& call)
{
    try {
        call();
    } catch (const PortError&) {
        return true;
    }
    return false;
}

} // namespace corvrec
