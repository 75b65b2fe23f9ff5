// The faces of the shared objects of the data and model rooms: one face an object as long as one is
// alive, so that hosts can compare them by identity.
#pragma once

#include <map>
#include <memory>
#include <utility>

#include "com/dispatch/Automation.h"

namespace kavidex::com {

// The rows of T; each class's table stands in its own file.
template <class T>
const Table& TableOf();

template <class T>
class SharedFace : public Face<T> {
public:
    static ComPtr<IDispatch> For(std::shared_ptr<T> object) {
        if (!object) return {};
        const auto known = Alive().find(object.get());
        if (known != Alive().end()) return ComPtr<IDispatch>(known->second);
        return ComPtr<IDispatch>::Attach(new SharedFace(std::move(object)));
    }

    const Table& Members() const override { return TableOf<T>(); }

private:
    explicit SharedFace(std::shared_ptr<T> object) : Face<T>(std::move(object)) {
        Alive()[this->Shared().get()] = this;
    }
    ~SharedFace() override { Alive().erase(this->Shared().get()); }

    static std::map<const T*, SharedFace*>& Alive() {
        static std::map<const T*, SharedFace*> alive;
        return alive;
    }
};

} // namespace kavidex::com
