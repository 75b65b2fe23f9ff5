// Dragging and dropping as the controls' logic sees it.
#pragma once

#include <cstdint>

#include "platform/Exchange.h"

namespace kavidex::controls {

// Numbers of the OLE drop effects.
namespace drop {
constexpr std::int32_t none = 0, copy = 1, move = 2, link = 4;
}

// Numbers of the keys and buttons that are held during a drag.
namespace dragKeys {
constexpr std::int32_t left = 1, right = 2, shift = 4, control = 8;
}

using DropData = platform::ExchangeData;

enum class DragState : std::int32_t { Enter = 0, Leave = 1, Over = 2 };

// Where a drag stands, on the screen, and what its source allows.
struct DropPlace {
    int x = 0, y = 0;
    std::int32_t keys = 0, allowed = 0;
};

// What a drop target reports; the answers are effects.
class DropReceiver {
public:
    virtual std::int32_t DragMoved(DragState state, const DropData& data,
                                   const DropPlace& place) = 0;
    virtual std::int32_t DragDropped(const DropData& data, const DropPlace& place) = 0;

protected:
    ~DropReceiver() = default;
};

} // namespace kavidex::controls
