#pragma once

namespace corvrec
{

// Silences the offscreen platform, which warns about missing features each time a window is shown. All other
// messages stay.
void SilencePlatform();

} // namespace corvrec
