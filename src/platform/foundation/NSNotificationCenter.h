#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/runtime/NSObject.h"

namespace velmora {

/// What an observer is told: which event, of which object, and for the menu notifications the index
/// of the item (the user-info key "NSMenuItemIndex").
struct NSNotification {
    std::string_view name;
    NSObject* object = nullptr;
    std::optional<int> menuItemIndex;
};

inline constexpr std::string_view NSApplicationDidFinishLaunchingNotification =
    "NSApplicationDidFinishLaunchingNotification";
inline constexpr std::string_view NSApplicationDidBecomeActiveNotification =
    "NSApplicationDidBecomeActiveNotification";
inline constexpr std::string_view NSApplicationWillResignActiveNotification =
    "NSApplicationWillResignActiveNotification";
inline constexpr std::string_view NSMenuDidAddItemNotification = "NSMenuDidAddItemNotification";
inline constexpr std::string_view NSMenuDidRemoveItemNotification =
    "NSMenuDidRemoveItemNotification";
inline constexpr std::string_view NSMenuDidChangeItemNotification =
    "NSMenuDidChangeItemNotification";

/// A desktop on which every window has a menu bar of its own posts this, with that bar as the
/// object, when a bar that lacks the application's own additions comes into use: a further
/// window's, or one that the host has rebuilt.
inline constexpr std::string_view NSApplicationDidShowMainMenuNotification =
    "NSApplicationDidShowMainMenuNotification";

/// Tells observers, in the order in which they registered, on the posting thread, at once.
class NSNotificationCenter {
public:
    static NSNotificationCenter& defaultCenter();

    /// The selector's method is `void(const NSNotification&)`. A null object stands for any. The
    /// observer is not kept alive; a registration ends with its observer or the process.
    void addObserver_selector_name_object(const Id& observer, Selector selector,
                                          std::string_view name, NSObject* object);
    void removeObserver(const NSObject& observer);

    void postNotification(const NSNotification& notification);

private:
    struct Registration {
        std::weak_ptr<NSObject> observer;
        Selector selector;
        std::string name;
        NSObject* object;
    };
    std::vector<Registration> registrations_;
};

}  // namespace velmora
