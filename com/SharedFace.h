// The faces of the shared objects of the data and model rooms: one face an object as long as one is
// alive, so that hosts can compare them by identity.
#pragma once

#include <map>
#include <memory>
#include <mutex>
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
        {
            const std::lock_guard lock(Guard());
            const auto known = Alive().find(object.get());
            if (known != Alive().end()) return ComPtr<IDispatch>(known->second);
        }
        return ComPtr<IDispatch>::Attach(new SharedFace(std::move(object)));
    }

    const Table& Members() const override { return TableOf<T>(); }

private:
    explicit SharedFace(std::shared_ptr<T> object) : Face<T>(std::move(object)) {
        const std::lock_guard lock(Guard());
        Alive()[this->Shared().get()] = this;
    }
    ~SharedFace() override {
        const std::lock_guard lock(Guard());
        Alive().erase(this->Shared().get());
    }

    // An object belongs to one apartment, the map to all of them.
    static std::mutex& Guard() {
        static std::mutex guard;
        return guard;
    }
    static std::map<const T*, SharedFace*>& Alive() {
        static std::map<const T*, SharedFace*> alive;
        return alive;
    }
};

} // namespace kavidex::com
