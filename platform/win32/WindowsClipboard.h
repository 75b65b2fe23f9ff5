// The clipboard of the desktop, through OLE: the same data object as a drag's.
#pragma once

#include "platform/Exchange.h"

namespace kavidex::platform::win32 {

class WindowsClipboard : public Clipboard {
public:
    bool HasFiles() override;
    bool HasText() override;
    bool HasOwn() override;
    ExchangeData Read() override;
    // What is written stays when this program ends.
    void Write(const ExchangeData& data) override;
};

} // namespace kavidex::platform::win32
