// Dragging in and out of the tree's window over OLE.
#pragma once

#include <string>

#include <windows.h>

#include <ole2.h>

#include "controls/tree/TreeEvents.h"
#include "platform/win32/Counted.h"

namespace kavidex::controls::win32 {

// What a drop target reports; points are screen points, effects OLE's.
class DropReceiver {
public:
    virtual std::int32_t DragMoved(DragState state, const DropData& data, POINT point) = 0;
    virtual std::int32_t DragDropped(const DropData& data, POINT point) = 0;

protected:
    ~DropReceiver() = default;
};

// A target over `receiver`, held by one reference of the caller's. Disconnect before the receiver
// goes: the system may hold the target longer.
class TreeDropTarget : public platform::win32::Counted<IDropTarget> {
public:
    explicit TreeDropTarget(DropReceiver& receiver) : lclReceiver(&receiver) {}
    void Disconnect() { lclReceiver = nullptr; }

    HRESULT STDMETHODCALLTYPE DragEnter(IDataObject* data, DWORD keys, POINTL point,
                                        DWORD* effect) override;
    HRESULT STDMETHODCALLTYPE DragOver(DWORD keys, POINTL point, DWORD* effect) override;
    HRESULT STDMETHODCALLTYPE DragLeave() override;
    HRESULT STDMETHODCALLTYPE Drop(IDataObject* data, DWORD keys, POINTL point,
                                   DWORD* effect) override;

private:
    void Report(DragState state, POINTL point, DWORD* effect);

    DropReceiver* lclReceiver;
    DropData lclData; // of the drag that is over the window
};

DropData ReadDropData(IDataObject& data);

// Drags that text as the left button is held; waits until it is dropped. The effect, or none.
DWORD DragText(const std::string& text);

} // namespace kavidex::controls::win32
