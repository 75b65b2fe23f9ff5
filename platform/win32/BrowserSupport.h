// What the web browser control of this machine can show, found out without making it.
#pragma once

#include <string_view>

namespace kavidex::platform::win32 {

// Wine has the control without what shows pages in it, and asks to fetch that when it is used.
bool HasBrowserEngine();

// Whether a program is registered that shows files of the MIME type in place, in our bitness.
bool BrowserShows(std::string_view mimeType);

} // namespace kavidex::platform::win32
