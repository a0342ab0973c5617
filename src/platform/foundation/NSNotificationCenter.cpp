#include "platform/foundation/NSNotificationCenter.h"

#include <algorithm>

#include "platform/runtime/Class.h"

namespace velmora {

namespace {

ProcessWide<NSNotificationCenter> center;

}  // namespace

NSNotificationCenter& NSNotificationCenter::defaultCenter() {
    return center;
}

void NSNotificationCenter::addObserver_selector_name_object(const Id& observer, Selector selector,
                                                            std::string_view name,
                                                            NSObject* object) {
    std::erase_if(registrations_, [](const Registration& r) { return r.observer.expired(); });
    registrations_.push_back({observer, selector, std::string(name), object});
}

void NSNotificationCenter::removeObserver(const NSObject& observer) {
    std::erase_if(registrations_, [&](const Registration& registration) {
        return registration.observer.lock().get() == &observer;
    });
}

void NSNotificationCenter::postNotification(const NSNotification& notification) {
    const auto wants = [&](const Registration& r) {
        return r.name == notification.name && (!r.object || r.object == notification.object);
    };
    if (std::none_of(registrations_.begin(), registrations_.end(), wants)) return;
    // Observers may register and unregister while they are told.
    const std::vector<Registration> told = registrations_;
    for (const Registration& registration : told) {
        if (!wants(registration)) continue;
        if (const Id observer = registration.observer.lock()) {
            message<void(const NSNotification&)>(*observer, registration.selector, notification);
        }
    }
}

}  // namespace velmora
