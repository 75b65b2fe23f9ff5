#include "com/dispatch/Enumerator.h"

#include <utility>

#include "com/dispatch/LiveObjects.h"
#include "platform/win32/Counted.h"

namespace kavidex::com {

namespace {

using platform::win32::Counted;

class Enumerator final : public Counted<IEnumVARIANT> {
public:
    using Item = std::function<std::optional<Variant>(std::size_t)>;

    Enumerator(Item item, std::size_t place) : lclItem(std::move(item)), lclPlace(place) {}

    HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* items, ULONG* fetched) override {
        if (fetched) *fetched = 0;
        if (!items || (!fetched && count != 1)) return E_POINTER;
        return Guard("Kavidex.Enumerator", IID_IEnumVARIANT, [&] {
            for (ULONG i = 0; i < count; ++i) {
                auto item = lclItem(lclPlace);
                if (!item) return S_FALSE;
                items[i] = item->Detach();
                ++lclPlace;
                if (fetched) *fetched = i + 1;
            }
            return S_OK;
        });
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
        return Guard("Kavidex.Enumerator", IID_IEnumVARIANT, [&] {
            for (; count > 0; --count, ++lclPlace)
                if (!lclItem(lclPlace)) return S_FALSE;
            return S_OK;
        });
    }
    HRESULT STDMETHODCALLTYPE Reset() override {
        lclPlace = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** copy) override {
        if (!copy) return E_POINTER;
        return Guard("Kavidex.Enumerator", IID_IEnumVARIANT, [&] {
            *copy = new Enumerator(lclItem, lclPlace);
            return S_OK;
        });
    }

private:
    Item lclItem;
    std::size_t lclPlace;
    LiveCount lclCount;
};

} // namespace

ComPtr<IUnknown> MakeEnumerator(std::function<std::optional<Variant>(std::size_t)> item) {
    return ComPtr<IUnknown>::Attach(new Enumerator(std::move(item), 0));
}

ComPtr<IUnknown> MakeEnumerator(std::vector<Variant> items) {
    return MakeEnumerator([items = std::move(items)](std::size_t place) -> std::optional<Variant> {
        if (place >= items.size()) return std::nullopt;
        return items[place];
    });
}

} // namespace kavidex::com
