// A container's side of an event: whatever a control hands over, the host lives on.
#include <gtest/gtest.h>

#include <stdexcept>

#include "platform/win32/Variant.h"
#include "platform/win32/ole/ControlSite.h"

namespace kavidex::tests {

using platform::win32::TextOf;
using platform::win32::Variant;

TEST(HostSite, NothingThatAnEventCarriesEndsTheHost) {
    std::vector<std::string> heard;
    bool angry = false;
    auto* site = new platform::win32::ControlSite(
        nullptr, {.event = [&](const platform::win32::SiteEvent& event) {
            heard.clear();
            for (const auto& argument : event.Arguments()) heard.push_back(TextOf(argument));
            if (angry) throw std::runtime_error("the host's own");
        }});
    constexpr DISPID oleDragDrop = 5;
    const auto tell = [&](const Variant& given) {
        VARIANT argument = given.Get();
        DISPPARAMS parameters{&argument, nullptr, 1, 0};
        return site->Invoke(oleDragDrop, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr,
                            nullptr, nullptr);
    };
    const Variant files = platform::win32::ArrayOf({Variant("C:\\a.txt"), Variant("C:\\b.txt")});
    EXPECT_EQ(tell(files), S_OK);
    EXPECT_EQ(heard, std::vector<std::string>{"C:\\a.txt|C:\\b.txt"});
    for (const Variant& odd :
         {Variant(static_cast<IDispatch*>(site)), Variant::Missing(), Variant::Null(), Variant()}) {
        EXPECT_EQ(tell(odd), S_OK);
        EXPECT_EQ(heard, std::vector<std::string>{""});
    }
    angry = true;
    EXPECT_TRUE(FAILED(tell(files)));
    site->Release();
}

} // namespace kavidex::tests
