#include "host/VelmoraApplicationAdditions.h"

#include "commands/VelmoraShortcuts.h"
#include "gestures/VelmoraMouseHandling.h"
#include "host/Velmora.h"
#include "host/_QZ_EX.h"
#include "platform/runtime/Class.h"
#include "preferences/VelmoraActivation.h"

namespace velmora {

ProcessWide<NSEventRef> DravikRealEvent;

namespace {

const Category category(NSApplication::classObject(),
                        {methodFor<&velmoraSendEvent>("velmoraSendEvent:"),
                         methodFor<&dravikNextEventMatchingMask_untilDate_inMode_dequeue>(
                             "dravikNextEventMatchingMask:untilDate:inMode:dequeue:")});

/// Key-downs without any of these flags are the host's.
constexpr std::uint32_t shortcutModifierMask = NSCommandKeyMask | NSFunctionKeyMask;

/// After the exchange, the host's own dispatch answers to our name.
void passOn(NSApplication& application, const NSEventRef& event) {
    static const Selector selector = Selector::named("velmoraSendEvent:");
    message<void(const NSEventRef&)>(application, selector, event);
}

/// Leaves VelmoraIndex at the first entry of that button and these modifiers, or at the end. False
/// at the end.
bool scanEntries(std::int32_t button, std::uint32_t modifiers) {
    for (VelmoraIndex = 0; VelmoraActions[*VelmoraIndex]; ++*VelmoraIndex) {
        if (VelmoraMouseButton[*VelmoraIndex] == button &&
            VelmoraModifiers[*VelmoraIndex] == modifiers) {
            return true;
        }
    }
    return false;
}

/// Whether the key or extra button was a menu command's.
bool ranShortcut(const NSEventRef& event) {
    const std::shared_ptr<VelmoraShortcuts> shortcuts = Velmora::sharedInstance()->shortcuts();
    return shortcuts && shortcuts->handleEvent(event);
}

/// Sends the matched entry's action and passes on what it returns. An entry whose action the mouse
/// handling does not have is as good as none.
void sendAction(NSApplication& application, NSEventRef resolved, const NSEventRef& given) {
    const std::shared_ptr<VelmoraMouseHandling> handler = *VelmoraMouseHandler;
    const Selector action = VelmoraActions[*VelmoraIndex];
    if (!handler || !handler->respondsToSelector(action)) {
        passOn(application, given);
        return;
    }
    const NSEventRef result = message<NSEventRef(const NSEventRef&, const NSEventRef&)>(
        *handler, action, resolved, given);
    if (result) passOn(application, result);
}

/// Whether the press belongs to an activation entry; its action has then run.
bool tookPress(NSApplication& application, const NSEventRef& press, const NSEventRef& given) {
    const std::uint32_t modifiers = press->modifierFlags() & VelmoraModifierMask;
    if (!scanEntries(press->buttonNumber(), modifiers)) return false;
    sendAction(application, press, given);
    return true;
}

}  // namespace

void velmoraSendEvent(NSApplication& application, const NSEventRef& given) {
    if (!given) return;
    // The event as it was fetched: types, flags and buttons are read from it, while it is always
    // the given one that is passed on.
    const NSEventRef& real = *DravikRealEvent;
    const bool isReal =
        real && isMouseEventType(given->type()) && given->eventNumber() == real->eventNumber();
    const NSEventRef& event = isReal ? real : given;
    switch (event->type()) {
        case NSKeyDown:
            if ((event->modifierFlags() & shortcutModifierMask) != 0 && ranShortcut(event)) return;
            break;
        case NSFlagsChanged:
            if (scanEntries(-1, event->modifierFlags() & VelmoraModifierMask)) {
                sendAction(application, event, given);
                return;
            }
            break;
        case NSOtherMouseDown: {
            // Kept, since the shortcut's command may fetch other events. The host still gets the
            // press of a button that ran a command.
            const NSEventRef press = event;
            if (!ranShortcut(press) && tookPress(application, press, given)) return;
            break;
        }
        case NSLeftMouseDown:
        case NSRightMouseDown:
            if (tookPress(application, event, given)) return;
            break;
        default: break;
    }
    passOn(application, given);
}

NSEventRef dravikNextEventMatchingMask_untilDate_inMode_dequeue(NSApplication& application,
                                                                std::uint32_t mask, Time until,
                                                                RunLoopMode mode, bool dequeue) {
    static const Selector platformFetch =
        Selector::named("dravikNextEventMatchingMask:untilDate:inMode:dequeue:");
    NSEventRef event = message<NSEventRef(std::uint32_t, Time, RunLoopMode, bool)>(
        application, platformFetch, mask, until, mode, dequeue);
    DravikRealEvent = event && isMouseEventType(event->type()) ? event->copy() : nullptr;
    return event;
}

void placeHooks() {
    Class& application = NSApplication::classObject();
    _XIM2_with(application, Selector::named("sendEvent:"), Selector::named("velmoraSendEvent:"));
    _XIM2_with(application, Selector::named("nextEventMatchingMask:untilDate:inMode:dequeue:"),
               Selector::named("dravikNextEventMatchingMask:untilDate:inMode:dequeue:"));
    _XIM2_with(NSMenu::classObject(), Selector::named("performActionForItemAtIndex:"),
               Selector::named("velmoraPerformActionForItemAtIndex:"));
}

void passEventOn(const NSEventRef& event) {
    if (event) passOn(NSApp(), event);
}

}  // namespace velmora
