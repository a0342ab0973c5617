#include "gestures/VelmoraGestures.h"

#include <exception>
#include <string_view>

#include "gestures/VelmoraMouseHandling.h"
#include "gestures/VelmoraWindowAdditions.h"
#include "platform/appkit/NSApplication.h"
#include "platform/appkit/NSView.h"
#include "platform/appkit/NSWorkspace.h"
#include "platform/runtime/Class.h"
#include "platform/runtime/NSLog.h"
#include "product/Limits.h"

namespace velmora {

namespace {

ProcessWide<std::shared_ptr<VelmoraGestures>> active;

/// The context menu that the view builds for a click with Control at the point of its window's
/// base coordinates. The view's own code runs here, whatever it does.
NSMenuRef contextMenuOf(NSView& view, NSWindow& window, NSPoint point) {
    const NSEventRef click = NSEvent::
        mouseEventWithType_location_modifierFlags_timestamp_windowNumber_context_eventNumber_clickCount_pressure(
            NSLeftMouseDown, point, NSControlKeyMask, 0.0, window.windowNumber(), nullptr, 0, 1,
            1.0F);
    try {
        return view.menuForEvent(click);
    } catch (const std::exception& exception) {
        NSLog(std::string("Caught crash: ") + exception.what());
    } catch (...) {
        NSLog("Caught crash: unknown exception");
    }
    return nullptr;
}

}  // namespace

Class& VelmoraGestures::classObject() {
    static auto* object = new Class("VelmoraGestures", &VelmoraCommon::classObject());
    return *object;
}

Class* VelmoraGestures::uiClass() {
    return Class::named("VelmoraGesturesUI");
}

std::shared_ptr<VelmoraGestures> VelmoraGestures::activeInstance() {
    return *active;
}

void VelmoraGestures::init() {
    VelmoraCommon::init();
    training_ = false;
    active = std::static_pointer_cast<VelmoraGestures>(shared_from_this());
}

void VelmoraGestures::processGesture_makeKey(const std::string& gesture, bool makeKey) {
    if (gesture.empty()) return;
    if (NSTraceEnabled()) NSTrace("gesture \"" + gesture + "\"");
    if (training_) {
        if (ui()) {
            message<void(const std::string&)>(*ui(), Selector::named("processGesture:"), gesture);
        }
        return;
    }
    // A lazily filled menu may have the host do anything, so the list is walked by index.
    for (int i = 0; i < settings()->count(); ++i) {
        const VelmoraSettingRef definition = settings()->objectAtIndex(i);
        if (definition->trigger() != gesture) continue;
        const bool ran = definition->path().starts_with(contextMenuPrefix)
                             ? runContextMenuItem(*definition)
                             : runMenuItem(*definition, makeKey);
        if (ran) return;
    }
    NSBeep();
}

bool VelmoraGestures::runMenuItem(const VelmoraSetting& definition, bool makeKey) {
    const NSMenuItemRef item = findMenuItem(definition);
    if (!item) {
        updateMenu();
        return false;
    }
    if (NSMenu* menu = item->menu()) menu->update();
    if (!item->isEnabled()) return false;
    if (makeKey) checkForKeyWindow();
    executeMenuItemLater(item);
    return true;
}

bool VelmoraGestures::runContextMenuItem(const VelmoraSetting& definition) {
    const NSWindowRef key = NSApp().keyWindow();
    const NSWindowRef window = key ? velmoraCheckForHit(*key) : nullptr;
    if (!window) return false;
    const NSPoint point = window->convertScreenToBase(velmoraGestureStartPoint(NSApp()));
    const NSViewRef content = window->contentView();
    const NSViewRef view = content ? content->hitTest(point) : nullptr;
    if (!view) return false;
    const NSMenuRef menu = contextMenuOf(*view, *window, point);
    if (!menu) return false;
    const NSMenuItemRef item = findMenuItem_inMenu(definition, *menu);
    if (!item) {
        updateMenu();
        return false;
    }
    item->perform();
    return true;
}

NSMenuItemRef VelmoraGestures::findMenuItem_inMenu(const VelmoraSetting& definition, NSMenu& menu) {
    std::string path = definition.path();
    if (path.starts_with(contextMenuPrefix)) path.erase(0, contextMenuPrefix.size());
    weakMatch = nullptr;
    return findSelector_inMenu_path(NSSelectorFromString(definition.selector()), menu, path);
}

void VelmoraGestures::checkForKeyWindow() {
    const NSWindowRef key = NSApp().keyWindow();
    if (!key || velmoraCheckForHit(*key)) return;
    const NSWindowRef hit =
        NSApp().makeWindowsPerform_inOrder(Selector::named("velmoraCheckForHit"), true);
    if (!hit) return;
    // Once is not always enough: the host may answer the first by giving the keys back.
    for (int i = 0; i < 3; ++i) hit->makeKeyWindow();
}

}  // namespace velmora
