// The manifest by which a host uses the library without registration: the file Kavidex.manifest
// beside Kavidex.ocx (Kavidex64.manifest beside Kavidex64.ocx), which names its classes.
#pragma once

#include <windows.h>

#include <string>

namespace kavidex::com {

// UTF-8, complete; computed from the class table as registration is.
std::string ManifestText();

// Writes it beside the library, whole or not at all.
HRESULT WriteManifest() noexcept;

} // namespace kavidex::com
