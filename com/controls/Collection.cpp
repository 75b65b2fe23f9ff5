// The list of results that a method gives to a host.
#include "com/controls/HostObjects.h"
#include "com/dispatch/Automation.h"
#include "com/dispatch/Enumerator.h"
#include "kavidex_idl.h"
#include "platform/Error.h"

namespace kavidex::com {

namespace {

class Collection final : public Automation {
public:
    explicit Collection(std::vector<Variant> items) : lclItems(std::move(items)) {}

    std::int32_t Count() const { return static_cast<std::int32_t>(lclItems.size()); }
    Variant Item(std::int32_t index) const {
        if (index < 1 || index > Count())
            throw platform::Error(9, "Subscript out of range", "Kavidex.Collection");
        return lclItems[static_cast<std::size_t>(index - 1)];
    }
    ComPtr<IUnknown> NewEnum() const { return MakeEnumerator(lclItems); }

    const Table& Members() const override;

private:
    std::vector<Variant> lclItems;
};

using Row = Rows<Collection>;

constexpr Member members[] = {
    Row::Get<&Collection::Item>(L"Item", DISPID_VALUE, L"Index"),
    Row::Get<&Collection::Count>(L"Count", 1),
    Row::Get<&Collection::NewEnum>(L"_NewEnum", DISPID_NEWENUM),
};

const Table& Collection::Members() const {
    static constexpr Table table{"Kavidex.Collection", &DIID__Collection, members};
    return table;
}

} // namespace

ComPtr<IDispatch> CollectionOf(std::vector<Variant> items) {
    return Make<Collection>(std::move(items));
}

ComPtr<IDispatch> CollectionOf(const std::vector<std::string>& texts) {
    return CollectionOf(std::vector<Variant>(texts.begin(), texts.end()));
}

} // namespace kavidex::com
