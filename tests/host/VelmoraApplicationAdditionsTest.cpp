#include "host/VelmoraApplicationAdditions.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "gestures/VelmoraMouseHandling.h"
#include "host/_QZ_EX.h"
#include "platform/runtime/Class.h"
#include "preferences/VelmoraActivation.h"
#include "support/HeadlessHost.h"

namespace velmora {
namespace {

NSEventRef event(std::uint32_t type, int number, int button = 0, std::uint32_t flags = 0) {
    NSEvent::Fields fields;
    fields.type = type;
    fields.eventNumber = number;
    fields.buttonNumber = button;
    fields.modifierFlags = flags;
    return std::make_shared<NSEvent>(fields);
}

/// Notes what the host's own dispatch was given, and answers actions as told.
struct Router : HeadlessHost {
    Router() : HeadlessHost("Editor") {
        menu({submenu("Editor", {item("About")})});
        launch();
        current = this;
        // Ours now stands where the host's dispatch did; put a witness there.
        Class& application = NSApplication::classObject();
        application.class_removeMethods({methodFor<&Router::witness>("velmoraSendEvent:")});
        application.class_addMethods({methodFor<&Router::witness>("velmoraSendEvent:")});
        Class& handling = VelmoraMouseHandling::classObject();
        handling.class_addMethods({methodFor<&Router::answer>("answer::")});
    }
    static void witness(NSApplication&, const NSEventRef& event) {
        current->passed.push_back(event);
    }
    static NSEventRef answer(VelmoraMouseHandling&, const NSEventRef& resolved,
                             const NSEventRef& given) {
        current->asked = {resolved, given};
        current->entry = *VelmoraIndex;
        DravikRealEvent = nullptr;  // as a fetch inside would
        return current->result;
    }
    void entries(const std::vector<std::pair<int, std::uint32_t>>& combinations) {
        std::size_t i = 0;
        for (const auto& [button, flags] : combinations) {
            VelmoraMouseButton[i] = button;
            VelmoraModifiers[i] = flags;
            VelmoraActions[i++] = Selector::named("answer::");
        }
        VelmoraActions[i] = Selector();
    }

    inline static Router* current = nullptr;
    std::vector<NSEventRef> passed;
    std::vector<NSEventRef> asked;
    std::int32_t entry = -1;
    NSEventRef result;
};

TEST(VelmoraApplicationAdditionsTest, TheFirstEntryOfExactlyThatCombinationIsAsked) {
    struct Row {
        const char* name;
        NSEventRef event;
        int entry;  // -1: passed on
    };
    const std::uint32_t option = NSAlternateKeyMask;
    const std::uint32_t both = NSControlKeyMask | option;
    const std::vector<Row> rows{
        {"right", event(NSRightMouseDown, 1, 1), 0},
        {"right with Shift", event(NSRightMouseDown, 1, 1, NSShiftKeyMask), -1},
        {"middle with Option", event(NSOtherMouseDown, 1, 2, option), 1},
        {"Caps Lock and the low bits do not count",
         event(NSOtherMouseDown, 1, 2, option | NSAlphaShiftKeyMask | NSNumericPadKeyMask | 0x120),
         1},
        {"Option and Shift", event(NSOtherMouseDown, 1, 2, option | NSShiftKeyMask), -1},
        {"modifiers alone", event(NSFlagsChanged, 0, 0, both), 2},
        {"fewer modifiers", event(NSFlagsChanged, 0, 0, option), -1},
        {"left with those modifiers", event(NSLeftMouseDown, 1, 0, both), 3},
        {"a release", event(NSRightMouseUp, 1, 1), -1},
        {"a drag", event(NSRightMouseDragged, 1, 1), -1},
        {"a key", event(NSKeyDown, 0, 0, 0), -1},
        {"beyond the last type", event(40, 0, 1), -1},
    };
    for (const Row& row : rows) {
        Router router;
        router.entries({{1, 0}, {2, option}, {-1, both}, {0, both}, {1, 0}});
        NSApp().sendEvent(row.event);
        EXPECT_EQ(router.entry, row.entry) << row.name;
        EXPECT_EQ(router.passed.size(), row.entry < 0 ? 1U : 0U) << row.name;
    }
}

TEST(VelmoraApplicationAdditionsTest, TheScanEndsAtTheEndOfTheEntries) {
    Router router;
    router.entries({{1, 0}, {2, 0}});
    NSApp().sendEvent(event(NSLeftMouseDown, 1, 0));
    EXPECT_EQ(*VelmoraIndex, 2);
}

TEST(VelmoraApplicationAdditionsTest, TheFetchedEventIsReadAndTheGivenOnePassedOn) {
    Router router;
    router.entries({{1, 0}});
    const NSEventRef real = event(NSRightMouseDown, 7, 1);
    struct Row {
        const char* name;
        NSEventRef given;
        bool asked;
    };
    const std::vector<Row> rows{
        {"same number: read from the fetched one", event(NSLeftMouseDown, 7, 0, NSShiftKeyMask),
         true},
        {"another number", event(NSLeftMouseDown, 8, 0, NSShiftKeyMask), false},
        {"no mouse event", event(NSKeyDown, 7, 0, NSShiftKeyMask), false},
    };
    for (const Row& row : rows) {
        router.asked.clear();
        router.passed.clear();
        DravikRealEvent = real;
        NSApp().sendEvent(row.given);
        if (row.asked) {
            EXPECT_EQ(router.asked, (std::vector<NSEventRef>{real, row.given})) << row.name;
        } else {
            EXPECT_EQ(router.passed, std::vector<NSEventRef>{row.given}) << row.name;
        }
    }
}

TEST(VelmoraApplicationAdditionsTest, TheActionsResultIsPassedOnInPlaceOfTheEvent) {
    Router router;
    router.entries({{1, 0}});
    router.result = event(NSRightMouseUp, 9, 1);
    NSApp().sendEvent(event(NSRightMouseDown, 8, 1));
    EXPECT_EQ(router.passed, std::vector<NSEventRef>{router.result});
}

TEST(VelmoraApplicationAdditionsTest, AnEntryWhoseActionNobodyHasPassesTheEventOn) {
    Router router;
    router.entries({{1, 0}});
    VelmoraActions[0] = Selector::named("doSomethingUnheardOf:triggerEvent:");
    const NSEventRef press = event(NSRightMouseDown, 1, 1);
    NSApp().sendEvent(press);
    EXPECT_EQ(router.passed, std::vector<NSEventRef>{press});
    EXPECT_TRUE(router.log().empty());
}

TEST(VelmoraApplicationAdditionsTest, AFetchKeepsACopyOfAMouseEventAndForgetsItOtherwise) {
    Router router;
    const auto fetch = [] {
        return NSApp().nextEventMatchingMask_untilDate_inMode_dequeue(NSAnyEventMask, distantPast,
                                                                      NSDefaultRunLoopMode, true);
    };
    NSApp().postEvent(event(NSRightMouseDown, 5, 1));
    NSApp().postEvent(event(NSKeyDown, 0));
    const NSEventRef press = fetch();
    ASSERT_TRUE(*DravikRealEvent);
    EXPECT_NE(*DravikRealEvent, press);
    EXPECT_EQ((*DravikRealEvent)->eventNumber(), 5);
    fetch();
    EXPECT_FALSE(*DravikRealEvent);
    DravikRealEvent = press;
    EXPECT_EQ(fetch(), nullptr);
    EXPECT_FALSE(*DravikRealEvent);
}

class Base : public NSObject {
public:
    static Class& classObject() {
        static auto* object = &(new Class("ExchangeBase", &NSObject::classObject()))
                                   ->method<&Base::one>("one")
                                   .method<&Base::other>("other:");
        return *object;
    }
    int one() { return 1; }
    int other(int value) { return value; }
};
class Derived final : public Base {
public:
    static Class& classObject() {
        static auto* object =
            &(new Class("ExchangeDerived", &Base::classObject()))->method<&Derived::two>("two");
        return *object;
    }
    Class& isa() const override { return classObject(); }
    int two() { return 2; }
};

TEST(VelmoraApplicationAdditionsTest, ExchangingTwoMethodsTwiceUndoesIt) {
    HeadlessHost host;
    Derived object;
    const Selector one = Selector::named("one");
    const Selector two = Selector::named("two");
    const auto send = [&](Selector selector) { return message<int()>(object, selector); };
    EXPECT_EQ(_XIM2_with(Derived::classObject(), one, two), &Derived::classObject());
    EXPECT_EQ(send(one), 2) << "the inherited method has become the class's own";
    EXPECT_EQ(send(two), 1);
    message<Class*(Selector, Selector)>(Derived::classObject(), Selector::named("_XIM2:with:"), two,
                                        one);
    EXPECT_EQ(send(one), 1);
    EXPECT_EQ(send(two), 2);
    for (const char* wrong : {"other:", "missing"}) {
        _XIM2_with(Derived::classObject(), one, Selector::named(wrong));
        EXPECT_EQ(send(one), 1);
    }
    EXPECT_EQ(host.log().size(), 2U);
}

}  // namespace
}  // namespace velmora
