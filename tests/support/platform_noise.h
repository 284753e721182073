#pragma once

namespace corvrec
{

// The offscreen platform says at each showing of a window what it cannot do. Where thousands are shown, that
// is left out from here on; all other messages stay.
void SilencePlatform();

} // namespace corvrec
