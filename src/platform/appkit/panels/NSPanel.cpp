#include "platform/appkit/panels/NSPanel.h"

#include <algorithm>

#include "platform/appkit/panels/PanelFrames.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "platform/foundation/files/Characters.h"
#include "platform/port/Desktop.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

constexpr std::string_view windowWillClose = "NSWindowWillCloseNotification";

}  // namespace

Class& NSPanel::classObject() {
    static auto* object = new Class("NSPanel", &NSWindow::classObject());
    return *object;
}

NSPanel::NSPanel(std::string title, std::vector<Row> rows)
    : title_(std::move(title)),
      content_(std::make_shared<NSContentView>(
          *this, [this] { contentChanged(); }, std::move(rows))) {}

NSPanel::~NSPanel() {
    if (drawer_) drawer_->setPanel(nullptr);
    content_->close();
}

void NSPanel::contentChanged() {
    if (peer_) peer_->contentChanged();
}

PanelPeer& NSPanel::peer() {
    if (!peer_) peer_ = desktop().makePanel(*this);
    return *peer_;
}

NSRect NSPanel::frame() {
    return peer().frame();
}

void NSPanel::setFrameOrigin(NSPoint origin) {
    peer().setFrameOrigin(origin);
}

void NSPanel::center() {
    peer().center();
}

void NSPanel::makeKeyAndOrderFront() {
    peer().makeKeyAndOrderFront();
}

void NSPanel::orderOut() {
    if (!peer_ || !isVisible()) return;
    saveFrame();
    peer_->orderOut();
}

void NSPanel::setTitle(std::string title) {
    title_ = std::move(title);
    if (peer_) peer_->titleChanged();
}

NSControlRef NSPanel::controlNamed(const std::string& name) const {
    if (drawer_ && drawer_->content()->name() == name) return drawer_->content();
    for (const NSControlRef& control : controls()) {
        if (control->name() == name) return control;
    }
    return nullptr;
}

void NSPanel::setDrawer(const NSContentDrawerRef& drawer) {
    if (drawer_) drawer_->setPanel(nullptr);
    drawer_ = drawer;
    if (drawer_) drawer_->setPanel(this);
    drawerChanged();
}

void NSPanel::drawerChanged() {
    if (peer_) peer_->drawerChanged();
}

void NSPanel::performClose(const Id& /*sender*/) {
    close();
}

void NSPanel::close() {
    if (!isVisible()) return;
    const auto kept = shared_from_this();
    orderOut();
    userClosed();
}

void NSPanel::userClosed() {
    const auto kept = shared_from_this();
    attachedSheet_ = nullptr;
    static const Selector selector = Selector::named("windowWillClose:");
    const Id delegate = delegate_.lock();
    if (!delegate || !delegate->respondsToSelector(selector)) return;
    const NSNotification notification{windowWillClose, this, std::nullopt};
    message<void(const NSNotification&)>(*delegate, selector, notification);
}

void NSPanel::setFrameFile(const std::string& path) {
    PanelFrames::setFile(path);
}

void NSPanel::setFrameAutosaveName(const std::string& name) {
    frameAutosaveName_ = name;
    if (const std::optional<NSRect> frame = PanelFrames::frameOf(name)) peer().setFrame(*frame);
}

void NSPanel::saveFrame() {
    if (!frameAutosaveName_.empty()) PanelFrames::setFrame(frameAutosaveName_, frame());
}

bool NSPanel::holds(const NSControl& control) const {
    const std::vector<NSControlRef> all = controls();
    return (drawer_ && drawer_->content().get() == &control) ||
           std::any_of(all.begin(), all.end(),
                       [&](const NSControlRef& one) { return one.get() == &control; });
}

bool NSPanel::makeFirstResponder(const NSResponderRef& responder) {
    const auto control = std::dynamic_pointer_cast<NSControl>(responder);
    if (responder && !(control && control->acceptsFirstResponder() && holds(*control)))
        return false;
    firstResponder_ = control;
    if (peer_) peer_->firstResponderChanged();
    return true;
}

void NSPanel::makeKeyWindow() {
    peer().makeKeyWindow();
}

bool NSPanel::isVisible() {
    return peer().isVisible();
}

bool NSPanel::userPressedKey(const NSEventRef& event) {
    constexpr char32_t firstFunctionKey = 0xF704;
    constexpr char32_t lastFunctionKey = 0xF726;
    const char32_t key = firstCharacter(event->fields().charactersIgnoringModifiers);
    const bool isFunctionKey = key >= firstFunctionKey && key <= lastFunctionKey;
    const bool isOffered = isFunctionKey || (event->modifierFlags() & NSCommandKeyMask) != 0;
    const auto kept = shared_from_this();
    return isOffered && content_->performKeyEquivalent(event);
}

int NSPanel::windowNumber() {
    return peer().windowNumber();
}

std::vector<std::shared_ptr<NSDrawer>> NSPanel::drawers() {
    if (!drawer_ || !drawer_->isOpen() || !isVisible()) return {};
    return {drawer_};
}

}  // namespace velmora
