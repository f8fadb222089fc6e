#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "Platform/Registration.h"

namespace orvane {

/// Tells subscribers that something happened, on the main thread. A subscriber may come, go or destroy the publisher
/// while it is told; one that came meanwhile is told the next time.
template <typename... Arguments>
class Signal {
 public:
    using Listener = std::function<void(const Arguments&...)>;

    Registration subscribe(Listener listener) {
        const std::uint64_t id = ++listeners_->lastId;
        listeners_->byId.emplace(id, std::make_shared<Listener>(std::move(listener)));
        return Registration([weak = std::weak_ptr(listeners_), id] {
            if (const auto listeners = weak.lock()) listeners->byId.erase(id);
        });
    }

    void emit(const Arguments&... arguments) const {
        const std::shared_ptr<Listeners> listeners = listeners_;
        std::vector<std::uint64_t> ids;
        ids.reserve(listeners->byId.size());
        for (const auto& [id, listener] : listeners->byId)
            ids.push_back(id);
        for (const std::uint64_t id : ids) {
            const auto found = listeners->byId.find(id);
            if (found == listeners->byId.end()) continue;
            const std::shared_ptr<Listener> listener = found->second;
            (*listener)(arguments...);
        }
    }

 private:
    struct Listeners {
        std::map<std::uint64_t, std::shared_ptr<Listener>> byId;
        std::uint64_t lastId = 0;
    };

    std::shared_ptr<Listeners> listeners_ = std::make_shared<Listeners>();
};

}  // namespace orvane
