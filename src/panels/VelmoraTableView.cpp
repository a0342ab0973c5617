#include "panels/VelmoraTableView.h"

#include "platform/foundation/files/Characters.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

constexpr char32_t NSDeleteFunctionKey = 0xF728;
constexpr char32_t firstFunctionKey = 0xF704;
constexpr char32_t lastFunctionKey = 0xF726;

const Selector mouseCapture = Selector::named("otherMouseDown:inRow:");
const Selector keyCapture = Selector::named("performKeyEquivalent:inRow:");

char32_t keyOf(const NSEvent& event) {
    const std::string& characters = event.fields().charactersIgnoringModifiers;
    return characters.empty() ? 0 : firstCharacter(characters);
}

bool isCaptured(const NSEvent& event) {
    const char32_t key = keyOf(event);
    return (event.modifierFlags() & NSCommandKeyMask) != 0 ||
           (key >= firstFunctionKey && key <= lastFunctionKey);
}

}  // namespace

Class& VelmoraTableView::classObject() {
    static auto* object =
        &(new Class("VelmoraTableView", &NSTableView::classObject()))->makes<VelmoraTableView>();
    return *object;
}

namespace {

[[maybe_unused]] const Class& registered = VelmoraTableView::classObject();

}  // namespace

Id VelmoraTableView::capturing(Selector selector) const {
    const Id source = selectedRow() >= 0 ? dataSource() : nullptr;
    return source && source->respondsToSelector(selector) ? source : nullptr;
}

void VelmoraTableView::otherMouseDown(const NSEventRef& event) {
    if (const Id source = capturing(mouseCapture)) {
        message<void(const NSEventRef&, int)>(*source, mouseCapture, event, selectedRow());
        return;
    }
    NSTableView::otherMouseDown(event);
}

void VelmoraTableView::keyDown(const NSEventRef& event) {
    const Id source = keyOf(*event) == NSDeleteFunctionKey ? capturing(keyCapture) : nullptr;
    if (source) {
        message<bool(const NSEventRef&, int)>(*source, keyCapture, nullptr, selectedRow());
        return;
    }
    NSTableView::keyDown(event);
}

bool VelmoraTableView::performKeyEquivalent(const NSEventRef& event) {
    if (event->fields().isARepeat) return true;
    const bool captures = event->type() == NSKeyDown && isCaptured(*event);
    const Id source = captures ? capturing(keyCapture) : nullptr;
    if (source &&
        message<bool(const NSEventRef&, int)>(*source, keyCapture, event, selectedRow())) {
        return true;
    }
    return NSTableView::performKeyEquivalent(event);
}

void VelmoraTableView::editColumn_row_withEvent_select(int column, int row, const NSEventRef& event,
                                                       bool select) {
    static const Selector doubleClick = Selector::named("doubleClickInColumn:row:");
    const Id delegate = doubleClickDelegate_.lock();
    if (delegate && message<bool(int, int)>(*delegate, doubleClick, column, row)) return;
    NSTableView::editColumn_row_withEvent_select(column, row, event, select);
}

}  // namespace velmora
