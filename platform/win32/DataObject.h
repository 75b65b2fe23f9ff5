// The one data object of drags and of the clipboard, and reading what other programs offer.
#pragma once

#include <windows.h>

#include <objidl.h>

#include <functional>

#include "platform/Exchange.h"
#include "platform/win32/ComPtr.h"

namespace kavidex::platform::win32 {

// Text as Unicode and in the system's code page, files as a file list, virtual files as descriptors
// with their contents; files that are still to be made, and contents, when they are asked for.
// Takes what others store in it (the shell keeps a drag's image so). `asked` is called once, before
// the text is handed out.
ComPtr<IDataObject> MakeDataObject(ExchangeData data, std::function<void()> asked = {});

// Throws platform::Error when the clipboard is held open by another program. What the source
// refuses otherwise is not there. Virtual files keep the object, and so do the files of a drag of
// this library: it is asked for them only by FetchFiles.
ExchangeData ReadExchange(IDataObject& data);

} // namespace kavidex::platform::win32
