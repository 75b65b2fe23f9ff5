// What OLE walks: an enumerator over a list that was taken when it was made.
#pragma once

#include <windows.h>
#include <ocidl.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "com/dispatch/ErrorBoundary.h"
#include "com/dispatch/LiveObjects.h"
#include "platform/win32/Counted.h"

namespace kavidex::com {

// `Copy` turns a kept element into what the caller owns.
template <class Interface, class Element, class Kept, Element (*Copy)(const Kept&)>
class ListEnumerator final : public platform::win32::Counted<Interface> {
public:
    ListEnumerator(std::vector<Kept> list, std::size_t place)
        : lclList(std::move(list)), lclPlace(place) {}

    HRESULT STDMETHODCALLTYPE Next(ULONG count, Element* items, ULONG* fetched) override {
        if (!items || (!fetched && count != 1)) return E_POINTER;
        ULONG done = 0;
        for (; done < count && lclPlace < lclList.size(); ++done)
            items[done] = Copy(lclList[lclPlace++]);
        if (fetched) *fetched = done;
        return done == count ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
        const auto left = lclList.size() - lclPlace;
        lclPlace += std::min<std::size_t>(count, left);
        return count <= left ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Reset() override {
        lclPlace = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clone(Interface** copy) override {
        if (!copy) return E_POINTER;
        return Guard("Kavidex", __uuidof(Interface), [&] {
            *copy = new ListEnumerator(lclList, lclPlace);
            return S_OK;
        });
    }

private:
    std::vector<Kept> lclList;
    std::size_t lclPlace;
    LiveCount lclCount;
};

} // namespace kavidex::com
