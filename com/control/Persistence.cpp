#include "com/control/Persistence.h"

namespace kavidex::com {

using controls::BagWidth;

namespace {

constexpr std::string_view widthName = "_ExtentX", heightName = "_ExtentY";

StreamBag Collect(const PersistentOwner& owner, const ControlCore& core) {
    StreamBag bag;
    owner.SaveProperties(bag);
    bag.Write(widthName, std::int64_t{core.Extent().cx}, BagWidth::Natural);
    bag.Write(heightName, std::int64_t{core.Extent().cy}, BagWidth::Natural);
    return bag;
}

} // namespace

HRESULT LoadFrom(IStream& stream, PersistentOwner& owner, ControlCore& core) {
    StreamBag bag;
    if (!bag.Load(stream)) return STG_E_DOCFILECORRUPT;
    const auto width = bag.Read(widthName, std::int64_t{0}, BagWidth::Natural),
               height = bag.Read(heightName, std::int64_t{0}, BagWidth::Natural);
    if (width && height) core.SetExtent({data::ToInt32(*width), data::ToInt32(*height)});
    owner.LoadProperties(bag);
    core.dirty = false;
    return S_OK;
}

HRESULT SaveTo(IStream& stream, const PersistentOwner& owner, const ControlCore& core) {
    return Collect(owner, core).Save(stream);
}

ULONG SavedSize(const PersistentOwner& owner, const ControlCore& core) {
    return static_cast<ULONG>(Collect(owner, core).Size());
}

} // namespace kavidex::com
