// The events of the tree control, and what they carry.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "controls/common/Event.h"
#include "controls/exchange/DragDrop.h"

namespace kavidex::controls {

struct TreeItemInfo {
    std::string description, type;
    std::int32_t id = 0;      // of the tree item
    std::string nodeFullPath; // descriptions from the root on, joined by backslashes
    std::int32_t itemId = 0;  // of the object that the item stands for
};

struct DropEvent {
    const DropData& data;
    std::int32_t& effect;  // what the host makes of it, for the source
    std::int32_t targetId; // the folder that takes it: under the cursor, around the document there,
                           // or the root; 0 while there is no tree
    bool fromMail;         // counts as mail dragged from the mail program
};

struct TreeSignals {
    Event<> Click, DblClick;
    Event<std::int16_t&, std::int16_t> KeyDown, KeyUp; // key code (0: handled), shift state
    Event<std::int16_t&> KeyPress;
    Event<std::int16_t, std::int16_t, float, float> MouseDown, MouseMove, MouseUp; // twips

    Event<const TreeItemInfo&> EvItemSelected, EvItemSelectedExternal, EvItemSelectedRightMouse;
    Event<const TreeItemInfo&, bool&> ChosenAgain; // the document that is selected; true: shown
    Event<const DropEvent&> EvItemDropped;
    Event<> EvItemDroppedAndHandled;
    Event<const std::vector<std::string>&, std::int32_t> EvItemPastedSpecial;
    Event<DragState, std::int32_t> EvItemDragOver; // the id of the item under the cursor, 0: none
    Event<const TreeItemInfo&> EvItemCreated, EvItemDelete;
    Event<const std::vector<std::int32_t>&> MayWriteChanged; // of the files of these items
    Event<std::int32_t> NoteMade;                            // by the user, who now writes in it
    Event<> EvItemCopy, EvItemCut, EvItemPaste;
    Event<const TreeItemInfo&, const std::string&> EvItemRenamed; // and the old description
    Event<> EvCompleteDrag;
    // A drag as OLE has it, for the control around this one: what it carries and the effects that
    // it allows; a format that a target asks for; the pointer's looks; the effect offered to what
    // is dragged over; and what became of it.
    Event<const DropData&, std::int32_t&> DragStarted;
    Event<const DropData&, std::int16_t&> DragDataAsked;
    Event<std::int32_t&, bool&> DragFeedback; // effect, the system's pointers
    Event<const DropData&, std::int32_t&, DragState> DraggedOver;
    Event<std::int32_t&> DragCompleted;
    Event<> Refreshed;                       // by the user's key
    Event<std::string_view> PropertyChanged; // the saved item's name, for the container
};

} // namespace kavidex::controls
