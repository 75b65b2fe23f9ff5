#include "com/dispatch/Enumerator.h"

#include <utility>

#include "com/dispatch/LiveObjects.h"

namespace kavidex::com {

namespace {

class Enumerator final : public IEnumVARIANT {
public:
    using Item = std::function<std::optional<Variant>(std::size_t)>;

    Enumerator(Item item, std::size_t place) : lclItem(std::move(item)), lclPlace(place) {}
    virtual ~Enumerator() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (!object) return E_POINTER;
        *object = iid == IID_IUnknown || iid == IID_IEnumVARIANT ? this : nullptr;
        if (!*object) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++lclReferences); }
    ULONG STDMETHODCALLTYPE Release() override {
        const long left = --lclReferences;
        if (left == 0) delete this;
        return static_cast<ULONG>(left);
    }

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
    long lclReferences = 1;
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
