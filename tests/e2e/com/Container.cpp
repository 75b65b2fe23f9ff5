#include "Container.h"

#include <algorithm>

#include "platform/Error.h"

namespace kavidex::tests {

using platform::win32::ControlSite;
using platform::win32::SiteEvent;

Container::Container() {
    window = CreateWindowW(L"STATIC", L"container", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 10, 10, 400,
                           300, nullptr, nullptr, nullptr, nullptr);
    site = new ControlSite(window, {.event =
                                        [this](const SiteEvent& event) {
                                            events.emplace_back(event.id, event.Arguments());
                                            if (onEvent) onEvent(event.id, event.parameters);
                                        },
                                    .keyBack = [this](MSG&, DWORD) { return takesKeys; },
                                    .ambient = [this](DISPID id) -> std::optional<Variant> {
                                        if (id == DISPID_AMBIENT_UIDEAD) return Variant(uiDead);
                                        if (id == DISPID_AMBIENT_USERMODE && userMode)
                                            return Variant(*userMode);
                                        return std::nullopt;
                                    },
                                    .propertyChanged = [this](DISPID id) { changes.push_back(id); },
                                    .note = [this](const char* call) { log.emplace_back(call); }});
}

Container::~Container() {
    Drop();
    DestroyWindow(window);
    EXPECT_EQ(site->References(), 1U) << "the control kept its site";
    site->Release();
}

void Container::Take(const ComPtr<IDispatch>& object, bool show) {
    control = object;
    try {
        site->Take(object.Query<IUnknown>(IID_IUnknown), place, show);
        ASSERT_TRUE(site->HasEvents());
    } catch (const platform::Error& error) {
        FAIL() << error.what();
    }
}

void Container::Drop() {
    site->Close();
    control = nullptr;
}

std::size_t Container::Count(const std::string& call) const {
    return static_cast<std::size_t>(std::count(log.begin(), log.end(), call));
}

} // namespace kavidex::tests
