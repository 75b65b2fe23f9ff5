// A typed list of subscribers, called in the order of their subscription.
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace kavidex::controls {

// A subscriber may unsubscribe, subscribe others or drop the event's owner while it is called.
template <class... Arguments>
class Event {
public:
    using Handler = std::function<void(Arguments...)>;

    // The subscription lasts as long as the returned token.
    [[nodiscard]] std::shared_ptr<void> Subscribe(Handler handler) {
        auto entry = std::make_shared<Handler>(std::move(handler));
        std::erase_if(lclHandlers, [](const auto& known) { return known.expired(); });
        lclHandlers.push_back(entry);
        return entry;
    }

    void Raise(Arguments... arguments) const {
        const auto handlers = lclHandlers;
        for (const auto& handler : handlers)
            if (const auto alive = handler.lock()) (*alive)(arguments...);
    }

private:
    std::vector<std::weak_ptr<Handler>> lclHandlers;
};

} // namespace kavidex::controls
