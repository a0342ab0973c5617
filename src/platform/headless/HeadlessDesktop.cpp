#include "platform/headless/HeadlessDesktop.h"

#include <algorithm>

#include "platform/appkit/NSEvent.h"
#include "platform/appkit/drawing/NSCursor.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "platform/headless/HeadlessSession.h"
#include "platform/headless/PngCodec.h"
#include "platform/headless/input/InputNames.h"
#include "platform/headless/windows/HeadlessText.h"

namespace velmora {

namespace {

Transcript::Kind kindOf(const NSEvent& event) {
    switch (event.type()) {
        case NSMouseMoved:
        case NSLeftMouseDragged:
        case NSRightMouseDragged:
        case NSOtherMouseDragged: return Transcript::Kind::motion;
        case NSFlagsChanged: return Transcript::Kind::flags;
        default: return Transcript::Kind::event;
    }
}

/// The combination with which an item of the system's own comes gives way to the host's items.
bool givesWay(const NSMenuItem& item) {
    return !item.hasGivenKeyEquivalent() && !dynamic_cast<const HeadlessMenuItem*>(&item);
}

enum class Kind { standing, givingWay };

/// The first enabled item of the menu or of those below it that has the key equivalent.
NSMenuItemRef itemWithKey(const NSMenu& menu, const std::string& key, std::uint32_t modifiers,
                          Kind kind) {
    for (const NSMenuItemRef& item : menu.itemArray()) {
        if (const NSMenuRef submenu = item->submenu()) {
            if (NSMenuItemRef found = itemWithKey(*submenu, key, modifiers, kind)) return found;
        } else if (item->isEnabled() && item->keyEquivalent() == key &&
                   item->keyEquivalentModifierMask() == modifiers &&
                   givesWay(*item) == (kind == Kind::givingWay)) {
            return item;
        }
    }
    return nullptr;
}

}  // namespace

HeadlessDesktop::HeadlessDesktop(HeadlessSession& session, const HostDescription& host)
    : session_(session),
      processName_(host.processName),
      languages_(host.languages),
      commandHandler_([this](NSMenuItem& item) { commandRan(item); }) {
    setMenuBar(host.menuBar);
    for (const WindowDescription& window : host.windows) addWindow(window);
}

Time HeadlessDesktop::now() const {
    return session_.clock().now();
}

void HeadlessDesktop::wait(Time deadline) {
    session_.wait(deadline);
}

void HeadlessDesktop::record(Transcript::Kind kind, std::string text) {
    session_.transcript().add(now(), kind, processName_, std::move(text));
}

void HeadlessDesktop::dispatchEvent(const NSEventRef& event) {
    if (givenToPanel(event)) return;
    if (session_.transcript().isOn()) record(kindOf(*event), describeEvent(*event));
    if (event->type() != NSKeyDown || runKeyEquivalent(*event)) return;
    const auto window = keyWindow_.lock();
    HeadlessTextView* focused = window ? window->focusedTextView() : nullptr;
    if (focused) focused->keyDown(*event);
}

bool HeadlessDesktop::givenToPanel(const NSEventRef& event) {
    const bool isKey = event->type() == NSKeyDown || event->type() == NSKeyUp;
    HeadlessPanel* forKeys = panelForKeys();
    if (isKey) {
        if (forKeys && event->type() == NSKeyDown) forKeys->keyDown(event);
        return forKeys != nullptr;
    }
    const auto found = std::find_if(panels_.begin(), panels_.end(), [&](HeadlessPanel* panel) {
        return panel->windowNumber() == event->windowNumber();
    });
    if (found == panels_.end()) return !modal_.empty();
    const bool takesInput = modal_.empty() || *found == forKeys;
    if (takesInput && event->type() == NSOtherMouseDown) (*found)->otherMouseDown(event);
    return true;
}

bool HeadlessDesktop::runKeyEquivalent(const NSEvent& event) {
    if (!menuBar_) return false;
    constexpr std::uint32_t compared =
        NSShiftKeyMask | NSControlKeyMask | NSAlternateKeyMask | NSCommandKeyMask;
    const std::string& key = event.fields().charactersIgnoringModifiers;
    if (key.empty()) return false;
    const std::uint32_t modifiers = event.modifierFlags() & compared;
    NSMenuItemRef item = itemWithKey(*menuBar_, key, modifiers, Kind::standing);
    if (!item) item = itemWithKey(*menuBar_, key, modifiers, Kind::givingWay);
    if (item) item->perform();
    return item != nullptr;
}

void HeadlessDesktop::commandRan(NSMenuItem& item) {
    const NSMenu* outermost = item.menu();
    while (outermost && outermost->supermenu()) outermost = outermost->supermenu();
    const bool inMenuBar = outermost && outermost == menuBar_.get();
    record(Transcript::Kind::command, (inMenuBar ? "" : "Context Menu: ") + pathOfMenuItem(item));
    if (onCommand_) onCommand_(item);
}

void HeadlessDesktop::setMenuBar(const std::optional<std::vector<ItemDescription>>& items) {
    menuBar_ = items ? HeadlessMenu::make({}, *items, commandHandler_) : nullptr;
    NSMenu::noteChange();
    // Its menus are new to those who watch, since no bar held them while they were made.
    const std::shared_ptr<HeadlessMenu> bar = menuBar_;
    for (int i = 0; bar && i < bar->numberOfItems(); ++i) {
        NSNotificationCenter::defaultCenter().postNotification(
            {NSMenuDidAddItemNotification, bar.get(), i});
    }
    if (bar) bar->postAddedLeaves();
}

void HeadlessDesktop::addWindow(const WindowDescription& description) {
    auto window = HeadlessWindow::make(description, nextWindowNumber_, commandHandler_,
                                       [this](HeadlessWindow& key) { becomeKey(key); });
    nextWindowNumber_ += 1 + static_cast<int>(description.drawers.size());
    if (description.key || windows_.empty()) keyWindow_ = window;
    windows_.push_back(std::move(window));
}

void HeadlessDesktop::becomeKey(HeadlessWindow& window) {
    // A modal panel keeps the user from it.
    if (!modal_.empty()) return;
    keyWindow_ = std::static_pointer_cast<HeadlessWindow>(window.shared_from_this());
    keyPanel_ = nullptr;
    record(Transcript::Kind::madeKey, window.title());
}

std::shared_ptr<HeadlessWindow> HeadlessDesktop::windowTitled(const std::string& title) const {
    const auto found = std::find_if(windows_.begin(), windows_.end(),
                                    [&](const auto& window) { return window->title() == title; });
    return found == windows_.end() ? nullptr : *found;
}

void HeadlessDesktop::focusWindow(const std::shared_ptr<HeadlessWindow>& window) {
    const auto found = std::find(windows_.begin(), windows_.end(), window);
    if (found == windows_.end()) return;
    std::rotate(windows_.begin(), found, found + 1);
    keyWindow_ = window;
    if (modal_.empty()) keyPanel_ = nullptr;
}

void HeadlessDesktop::closeWindow(const HeadlessWindow& window) {
    const bool wasKey = keyWindow_.lock().get() == &window;
    std::erase_if(windows_, [&](const auto& w) { return w.get() == &window; });
    if (!wasKey) return;
    keyWindow_.reset();
    if (!windows_.empty()) keyWindow_ = windows_.front();
}

HeadlessTextView* HeadlessDesktop::textViewNamed(const std::string& name) const {
    for (const auto& window : windows_) {
        if (HeadlessTextView* view = window->textViewNamed(name)) return view;
    }
    return nullptr;
}

HeadlessScrollView* HeadlessDesktop::scrollViewNamed(const std::string& name) const {
    for (const auto& window : windows_) {
        if (HeadlessScrollView* view = window->scrollViewNamed(name)) return view;
    }
    return nullptr;
}

bool HeadlessDesktop::focusTextView(const std::string& name) {
    const auto found = std::find_if(windows_.begin(), windows_.end(), [&](const auto& window) {
        return window->textViewNamed(name) != nullptr;
    });
    if (found == windows_.end()) return false;
    const std::shared_ptr<HeadlessWindow> window = *found;
    window->focusTextView(name);
    focusWindow(window);
    return true;
}

std::unique_ptr<PanelPeer> HeadlessDesktop::makePanel(NSPanel& panel) {
    return std::make_unique<HeadlessPanel>(*this, panel);
}

void HeadlessDesktop::showPanel(HeadlessPanel& panel) {
    std::erase(panels_, &panel);
    panels_.push_back(&panel);
    if (keyPanel_ != &panel) panel.setBefore(windowForKeys());
    keyPanel_ = &panel;
}

void HeadlessDesktop::makeKey(HeadlessPanel& panel) {
    keyPanel_ = &panel;
    record(Transcript::Kind::madeKey, panel.title());
}

void HeadlessDesktop::removePanel(HeadlessPanel& panel) {
    std::erase(panels_, &panel);
    if (keyPanel_ != &panel) return;
    const NSWindowRef before = panel.before().lock();
    const auto found = std::find_if(panels_.begin(), panels_.end(), [&](HeadlessPanel* other) {
        return before && other->window() == before;
    });
    const bool wasHosts = dynamic_cast<const HeadlessWindow*>(before.get());
    keyPanel_ = found != panels_.end() ? *found : wasHosts ? nullptr : frontPanel();
}

HeadlessPanel* HeadlessDesktop::modalPanel() const {
    HeadlessPanel* modal = modal_.empty() ? nullptr : modal_.back();
    const bool isShown = std::find(panels_.begin(), panels_.end(), modal) != panels_.end();
    return isShown ? modal : nullptr;
}

HeadlessPanel* HeadlessDesktop::panelForKeys() const {
    HeadlessPanel* modal = modalPanel();
    return modal ? modal : keyPanel_;
}

HeadlessPanel* HeadlessDesktop::frontPanel() const {
    HeadlessPanel* modal = modalPanel();
    return modal || panels_.empty() ? modal : panels_.back();
}

bool HeadlessDesktop::closeModalPanel() {
    if (modal_.empty()) return false;
    modal_.back()->userCloses();
    return true;
}

void HeadlessDesktop::endModal(HeadlessPanel& panel) {
    std::erase(modal_, &panel);
    session_.loopEnded();
}

std::unique_ptr<DrawnWindowPeer> HeadlessDesktop::makeDrawnWindow(NSDrawnWindow& /*window*/) {
    return std::make_unique<HeadlessDrawnWindow>(*this);
}

void HeadlessDesktop::showDrawnWindow(HeadlessDrawnWindow& window) {
    std::erase(drawnWindows_, &window);
    drawnWindows_.push_back(&window);
}

std::vector<NSWindowRef> HeadlessDesktop::orderedWindows() {
    std::vector<NSWindowRef> ordered;
    for (auto panel = panels_.rbegin(); panel != panels_.rend(); ++panel) {
        ordered.push_back((*panel)->window());
    }
    ordered.insert(ordered.end(), windows_.begin(), windows_.end());
    return ordered;
}

NSWindowRef HeadlessDesktop::keyWindow() {
    return active_ ? windowForKeys() : nullptr;
}

NSWindowRef HeadlessDesktop::windowForKeys() const {
    HeadlessPanel* panel = panelForKeys();
    return panel ? panel->window() : keyWindow_.lock();
}

NSPoint HeadlessDesktop::mouseLocation() {
    return session_.user().location();
}

CGMouseDelta HeadlessDesktop::lastMouseDelta() {
    return session_.user().takeDelta();
}

void HeadlessDesktop::associateMouseAndPointer(bool connected) {
    session_.user().associate(connected);
}

void HeadlessDesktop::showCursor(const NSCursor* cursor) {
    showsCursor_ = cursor != nullptr;
    cursor_.reset();
    if (cursor) cursor_ = std::static_pointer_cast<const NSCursor>(cursor->shared_from_this());
    record(Transcript::Kind::cursor, cursor ? "shown" : "given back");
}

std::optional<Bitmap> HeadlessDesktop::decodeImage(std::string_view bytes) {
    return decodePng(bytes);
}

void HeadlessDesktop::openURL(const std::string& address) {
    record(Transcript::Kind::opened, address);
}

void HeadlessDesktop::beep() {
    record(Transcript::Kind::beep, {});
}

std::unique_ptr<NSTask> HeadlessDesktop::launchProcess(
    const std::string& path, const std::vector<std::string>& /*arguments*/) {
    const auto contents = session_.files().memory().scriptContents(path);
    if (!contents || processEnd_.kind == ProcessEnd::Kind::doesNotStart) return nullptr;
    record(Transcript::Kind::started, *contents);
    return std::make_unique<HeadlessTask>(processEnd_);
}

void HeadlessDesktop::log(const std::string& line) {
    record(Transcript::Kind::log, line);
}

void HeadlessDesktop::trace(const std::string& line) {
    if (traceEnabled_) record(Transcript::Kind::trace, line);
}

std::string HeadlessDesktop::homeDirectory() {
    return session_.homeDirectory();
}

std::optional<std::string> HeadlessDesktop::environment(const std::string& name) {
    // A million instructions: whatever is played ends soon.
    if (name == "VELMORA_LUA_LIMIT") return "1";
    return std::nullopt;
}

std::string HeadlessDesktop::resourceDirectory() {
    return session_.resourceDirectory();
}

FileSystem& HeadlessDesktop::files() {
    return session_.files();
}

}  // namespace velmora
