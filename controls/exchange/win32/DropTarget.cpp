#include "controls/exchange/win32/DropTarget.h"

#include <exception>
#include <string>
#include <utility>

#include <shlobj.h>

#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/win32/Counted.h"
#include "platform/win32/DataObject.h"
#include "platform/win32/OwnCall.h"

namespace kavidex::controls::win32 {

using platform::win32::ComPtr;
using platform::win32::Counted;

namespace {

// Null where the shell has none.
template <class Helper>
ComPtr<Helper> ShellHelper(REFIID iid) {
    ComPtr<Helper> helper;
    CoCreateInstance(CLSID_DragDropHelper, nullptr, CLSCTX_INPROC_SERVER, iid,
                     reinterpret_cast<void**>(helper.Put()));
    return helper;
}

class WindowTarget : public Counted<IDropTarget> {
public:
    WindowTarget(HWND window, DropReceiver& receiver, const platform::Workstation& workstation)
        : lclWindow(window), lclReceiver(&receiver), lclWorkstation(workstation),
          lclHelper(ShellHelper<IDropTargetHelper>(IID_IDropTargetHelper)) {}
    void Disconnect() { lclReceiver = nullptr; }

    HRESULT STDMETHODCALLTYPE DragEnter(IDataObject* data, DWORD keys, POINTL point,
                                        DWORD* effect) override {
        lclData = Read(data);
        Report(DragState::Enter, keys, point, effect);
        POINT place{point.x, point.y};
        if (lclHelper) lclHelper->DragEnter(lclWindow, data, &place, effect ? *effect : 0);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE DragOver(DWORD keys, POINTL point, DWORD* effect) override {
        Report(DragState::Over, keys, point, effect);
        POINT place{point.x, point.y};
        if (lclHelper) lclHelper->DragOver(&place, effect ? *effect : 0);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE DragLeave() override {
        if (lclHelper) lclHelper->DragLeave();
        Report(DragState::Leave, 0, {}, nullptr);
        lclData = {};
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Drop(IDataObject* data, DWORD keys, POINTL point,
                                   DWORD* effect) override {
        POINT place{point.x, point.y};
        if (lclHelper) lclHelper->Drop(data, &place, effect ? *effect : 0);
        const auto dropped = data ? Read(data) : std::exchange(lclData, {});
        lclData = {};
        std::int32_t done = drop::none;
        Guarded([&] {
            if (lclReceiver) done = lclReceiver->DragDropped(dropped, Place(keys, point, effect));
        });
        if (effect) *effect &= static_cast<DWORD>(done);
        return S_OK;
    }

private:
    static DropPlace Place(DWORD keys, POINTL point, const DWORD* effect) {
        return {static_cast<int>(point.x), static_cast<int>(point.y),
                static_cast<std::int32_t>(keys), static_cast<std::int32_t>(effect ? *effect : 0)};
    }
    // Nothing thrown passes to OLE.
    template <class Work>
    void Guarded(Work work) const {
        const platform::win32::OwnCall call; // the host may drop the control meanwhile
        try {
            work();
        } catch (const std::exception& error) {
            lclWorkstation.log.Write("DropTarget", error.what());
        }
    }
    DropData Read(IDataObject* data) const {
        DropData result;
        Guarded([&] {
            if (data) result = platform::win32::ReadExchange(*data);
        });
        return result;
    }
    void Report(DragState state, DWORD keys, POINTL point, DWORD* effect) {
        std::int32_t wanted = drop::none;
        Guarded([&] {
            if (lclReceiver)
                wanted = lclReceiver->DragMoved(state, lclData, Place(keys, point, effect));
        });
        if (effect) *effect &= static_cast<DWORD>(wanted);
    }

    HWND lclWindow;
    DropReceiver* lclReceiver;
    const platform::Workstation& lclWorkstation;
    ComPtr<IDropTargetHelper> lclHelper;
    DropData lclData; // of the drag that is over the window
};

class Source : public Counted<IDropSource> {
public:
    explicit Source(const DragListeners& listeners) : lclListeners(listeners) {}
    HRESULT STDMETHODCALLTYPE QueryContinueDrag(BOOL escape, DWORD keys) override {
        if (escape) return DRAGDROP_S_CANCEL;
        return keys & MK_LBUTTON ? S_OK : DRAGDROP_S_DROP;
    }
    HRESULT STDMETHODCALLTYPE GiveFeedback(DWORD effect) override {
        auto shown = static_cast<std::int32_t>(effect);
        bool defaultPointers = true;
        if (lclListeners.feedback) lclListeners.feedback(shown, defaultPointers);
        return defaultPointers ? DRAGDROP_S_USEDEFAULTCURSORS : S_OK;
    }

private:
    const DragListeners& lclListeners;
};

} // namespace

void DropRegistration::Register(HWND window, DropReceiver& receiver,
                                const platform::Workstation& workstation) {
    Revoke();
    lclOleReady = SUCCEEDED(OleInitialize(nullptr));
    lclWindow = window;
    lclTarget = ComPtr<IDropTarget>::Attach(new WindowTarget(window, receiver, workstation));
    const HRESULT registered = RegisterDragDrop(window, lclTarget.Get());
    if (FAILED(registered)) workstation.log.Write("RegisterDragDrop", std::to_string(registered));
}

void DropRegistration::Revoke() {
    if (lclTarget) {
        RevokeDragDrop(lclWindow);
        static_cast<WindowTarget&>(*lclTarget).Disconnect();
        lclTarget.Reset();
    }
    if (std::exchange(lclOleReady, false)) OleUninitialize();
}

std::int32_t Drag(const DropData& data, std::int32_t allowed, HWND window,
                  const DragListeners& listeners) {
    const auto object = platform::win32::MakeDataObject(data, listeners.dataAsked);
    const auto source = ComPtr<IDropSource>::Attach(new Source(listeners));
    if (const auto helper = ShellHelper<IDragSourceHelper>(IID_IDragSourceHelper))
        helper->InitializeFromWindow(window, nullptr, object.Get()); // without: the cursors alone
    DWORD effect = DROPEFFECT_NONE;
    const HRESULT result =
        DoDragDrop(object.Get(), source.Get(), static_cast<DWORD>(allowed), &effect);
    return result == DRAGDROP_S_DROP ? static_cast<std::int32_t>(effect) : drop::none;
}

} // namespace kavidex::controls::win32
