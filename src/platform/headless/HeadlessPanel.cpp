#include "platform/headless/HeadlessPanel.h"

#include <sstream>
#include <utility>

#include "platform/appkit/NSApplication.h"
#include "platform/headless/HeadlessDesktop.h"
#include "platform/headless/windows/HeadlessText.h"

namespace velmora {

namespace {

constexpr float width = 300;
constexpr float heightWithoutRows = 40;
constexpr float rowHeight = 24;

/// The command that a key is in a panel; none for a key that types, or that is pressed with
/// modifiers.
Selector commandOf(const NSEvent& key) {
    constexpr std::uint32_t modifiers = NSShiftKeyMask | NSControlKeyMask | NSAlternateKeyMask |
                                        NSCommandKeyMask | NSFunctionKeyMask;
    if ((key.modifierFlags() & modifiers) != 0) return {};
    static const Selector cancel = Selector::named("cancel:");
    static const Selector newline = Selector::named("insertNewline:");
    static const Selector tab = Selector::named("insertTab:");
    const std::string& characters = key.fields().characters;
    if (characters == "\x1B") return cancel;
    if (characters == "\r") return newline;
    return characters == "\t" ? tab : Selector();
}

/// Return and Tab, which a field of one line has no place for.
bool isControlCharacter(const NSEvent& key) {
    return key.fields().characters == "\r" || key.fields().characters == "\t";
}

}  // namespace

HeadlessPanel::HeadlessPanel(HeadlessDesktop& desktop, NSPanel& panel)
    : desktop_(desktop), panel_(panel), number_(desktop.takeWindowNumber()) {
    contentChanged();
}

HeadlessPanel::~HeadlessPanel() {
    desktop_.removePanel(*this);
}

void HeadlessPanel::center() {
    const NSRect screen = HeadlessDesktop::mainScreen;
    frame_.origin = {screen.origin.x + (screen.size.width - frame_.size.width) / 2,
                     screen.origin.y + (screen.size.height - frame_.size.height) / 2};
}

void HeadlessPanel::makeKeyAndOrderFront() {
    if (!visible_) {
        visible_ = true;
        std::ostringstream text;
        text << '"' << title() << "\" at " << frame_.origin.x << ' ' << frame_.origin.y;
        desktop_.record(Transcript::Kind::panel, text.str());
        drawControls();
    }
    desktop_.showPanel(*this);
}

NSRect HeadlessPanel::drawerFrame() {
    const NSContentDrawerRef& drawer = panel_.drawer();
    return {{frame_.origin.x + frame_.size.width, frame_.origin.y},
            {drawer ? drawer->contentSize().width : 0, frame_.size.height}};
}

void HeadlessPanel::contentChanged() {
    const auto rows = static_cast<float>(panel_.rows().size());
    frame_.size = {width, heightWithoutRows + rowHeight * rows};
    watchTables();
    if (visible_) drawControls();
}

void HeadlessPanel::drawControls() {
    for (const NSControlRef& control : panel_.controls()) {
        control->drawRect({{0, 0}, {width, rowHeight}});
    }
}

void HeadlessPanel::makeKeyWindow() {
    if (visible_) desktop_.makeKey(*this);
}

void HeadlessPanel::orderOut() {
    if (!visible_) return;
    visible_ = false;
    desktop_.removePanel(*this);
    desktop_.record(Transcript::Kind::panel, '"' + title() + "\" gone");
}

void HeadlessPanel::runModal() {
    makeKeyAndOrderFront();
    ended_ = false;
    desktop_.beginModal(*this);
    while (!ended_) {
        fetching_ = true;
        const NSEventRef event = NSApp().nextEventMatchingMask_untilDate_inMode_dequeue(
            NSAnyEventMask, distantFuture, NSModalPanelRunLoopMode, true);
        fetching_ = false;
        if (event && event->type() != NSAppKitDefined) NSApp().sendEvent(event);
    }
    desktop_.endModal(*this);
}

void HeadlessPanel::watchTables() {
    tables_.clear();
    for (const NSControlRef& control : panel_.controls()) {
        if (auto table = std::dynamic_pointer_cast<NSTableView>(control)) {
            tables_.push_back(std::make_unique<HeadlessTable>(std::move(table)));
        }
    }
}

NSControlRef HeadlessPanel::focused() const {
    if (auto control = std::dynamic_pointer_cast<NSControl>(panel_.firstResponder())) {
        return control;
    }
    const std::vector<NSControlRef> controls = panel_.controls();
    for (const NSControlRef& control : controls) {
        if (dynamic_cast<NSTextField*>(control.get()) && control->acceptsFirstResponder()) {
            return control;
        }
    }
    return tables_.empty() ? nullptr : tables_.front()->table();
}

NSTextField* HeadlessPanel::field() const {
    return dynamic_cast<NSTextField*>(focused().get());
}

NSButtonRef HeadlessPanel::buttonTitled(const std::string& title) const {
    for (const NSControlRef& control : panel_.controls()) {
        auto button = std::dynamic_pointer_cast<NSButton>(control);
        if (button && button->title() == title) return button;
    }
    return nullptr;
}

bool HeadlessPanel::clickButtonWithKey(const std::string& key) {
    for (const NSControlRef& control : panel_.controls()) {
        const auto button = std::dynamic_pointer_cast<NSButton>(control);
        if (!button || button->keyEquivalent() != key || !button->isEnabled()) continue;
        button->performClick(nullptr);
        return true;
    }
    return false;
}

void HeadlessPanel::otherMouseDown(const NSEventRef& event) {
    if (!panel_.attachedSheet() && !tables_.empty()) {
        const auto table = tables_.front()->table();
        table->otherMouseDown(event);
    }
}

void HeadlessPanel::keyDown(const NSEventRef& event) {
    if (panel_.userPressedKey(event)) return;
    const NSControlRef focused = this->focused();
    const auto field = std::dynamic_pointer_cast<NSTextField>(focused);
    const auto area = std::dynamic_pointer_cast<NSTextView>(focused);
    const auto table = std::dynamic_pointer_cast<NSTableView>(focused);
    const Selector command = commandOf(*event);
    const bool isEscape = command && command.name() == "cancel:";
    if (field && command) {
        if (field->userCommanded(command)) return;
        if (!isEscape) field->userEndedEditing();
    }
    if (isEscape && area && area->isEditable()) {
        // One key is too few to throw a text away.
        panel_.makeFirstResponder(nullptr);
    } else if (isEscape) {
        if (!clickButtonWithKey("\x1B")) userCloses();
    } else if (table && !command) {
        table->keyDown(event);
    } else if (area && area->isEditable()) {
        std::string text = area->string();
        if (typeIntoText(text, *event)) area->userChangedText(text);
    } else if (command) {
        if (command.name() == "insertNewline:") clickButtonWithKey("\r");
    } else if (field && !isControlCharacter(*event)) {
        std::string text = field->stringValue();
        if (typeIntoText(text, *event)) field->userChangedText(text);
    }
}

void HeadlessPanel::endModal() {
    ended_ = true;
    if (!std::exchange(fetching_, false)) return;
    // What ended it was no event, so that the fetch would go on.
    NSEvent::Fields fields;
    fields.type = NSAppKitDefined;
    NSApp().postEventFirst(std::make_shared<NSEvent>(std::move(fields)));
}

void HeadlessPanel::userCloses() {
    endModal();
    if (visible_) panel_.saveFrame();
    orderOut();
    panel_.userClosed();
}

}  // namespace velmora
