#include "platform/appkit/panels/InterfaceFile.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <sstream>
#include <vector>

#include "platform/appkit/NSEvent.h"
#include "platform/appkit/NSMenu.h"
#include "platform/appkit/controls/NSTableColumn.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

/// The name of an outlet's setter: "vmMenu" gives "setVmMenu:".
Selector setterFor(std::string outlet) {
    if (!outlet.empty() && outlet[0] >= 'a' && outlet[0] <= 'z') {
        outlet[0] = static_cast<char>(outlet[0] - 'a' + 'A');
    }
    return Selector::named("set" + outlet + ":");
}

/// The mask for names with blanks between them; nothing when one of them is unknown.
std::optional<std::uint32_t> modifierMask(const std::string& names) {
    static constexpr std::pair<std::string_view, std::uint32_t> known[] = {
        {"command", NSCommandKeyMask},
        {"control", NSControlKeyMask},
        {"option", NSAlternateKeyMask},
        {"shift", NSShiftKeyMask},
    };
    std::uint32_t mask = 0;
    std::istringstream words(names);
    for (std::string word; words >> word;) {
        const auto* const found =
            std::find_if(std::begin(known), std::end(known),
                         [&](const auto& entry) { return entry.first == word; });
        if (found == std::end(known)) return {};
        mask |= found->second;
    }
    return mask;
}

}  // namespace

InterfaceFile::InterfaceFile(NSDictionary contents, Localize localize)
    : contents_(std::move(contents)), localize_(std::move(localize)) {}

bool InterfaceFile::load(const Id& owner, Error& error) {
    owner_ = owner;
    try {
        makeObjects();
        connectOutlets();
    } catch (const InterfaceError& wrong) {
        error = wrong;
        return false;
    }
    awake();
    return true;
}

void InterfaceFile::makeObjects() {
    const PropertyList* objects = contents_.objectForKey("objects");
    if (!objects || !objects->dictionary()) throw InterfaceError{"objects", "no dictionary"};
    for (const auto& [name, description] : objects->dictionary()->entries()) {
        objectNamed(name, "objects." + name);
    }
}

void InterfaceFile::awake() {
    static const Selector awakeFromNib = Selector::named("awakeFromNib");
    for (const auto& [name, object] : objects_) {
        if (object->respondsToSelector(awakeFromNib)) message<void()>(*object, awakeFromNib);
    }
}

const Id& InterfaceFile::objectNamed(const std::string& name, const std::string& place) {
    if (const auto made = objects_.find(name); made != objects_.end()) {
        if (!made->second) throw InterfaceError{"objects." + name, "it holds itself"};
        return made->second;
    }
    const PropertyList* value = contents_.objectForKey("objects")->dictionary()->objectForKey(name);
    if (!value) throw InterfaceError{place, "no such object '" + name + "'"};
    InterfaceDescription description(value, "objects." + name);
    objects_[name] = nullptr;
    Id made = makeObject(description, name);
    description.end();
    return objects_[name] = std::move(made);
}

Id InterfaceFile::makeObject(InterfaceDescription& description, const std::string& name) {
    const std::string kind = description.text("class");
    if (kind == "NSMenu") return makeMenu(description);
    if (kind == "NSPanel") return makePanel(description);
    if (kind == "NSTableColumn") return makeColumn(description);
    if (kind == "NSDrawer") return makeDrawer(description);
    return makeControl(description, name);
}

std::string InterfaceFile::title(InterfaceDescription& description, std::string_view key) {
    return localize_(description.text(key));
}

Selector InterfaceFile::actionOf(InterfaceDescription& description, Id& target) {
    const Selector action = Selector::named(description.text("action"));
    target = owner_;
    const bool toOwner = !description.has("target");
    if (!toOwner) target = objectNamed(description.text("target"), description.place() + ".target");
    if (action && !target->respondsToSelector(action)) {
        description.fail("action", std::string(toOwner ? "the owner" : "the target") + " has no '" +
                                       action.name() + "'");
    }
    return action;
}

Id InterfaceFile::ownerFor(InterfaceDescription& description, std::string_view key) {
    if (!description.has(key)) return nullptr;
    if (description.text(key) != "owner") description.fail(key, "only the owner can be it");
    return owner_;
}

NSMenuRef InterfaceFile::makeMenu(InterfaceDescription& description) {
    auto menu = std::make_shared<NSMenu>(title(description));
    int index = 0;
    for (const PropertyList& item : description.array("items")) {
        InterfaceDescription one(&item,
                                 description.place() + ".items[" + std::to_string(index++) + "]");
        menu->addItem(makeItem(one));
        one.end();
    }
    return menu;
}

NSMenuItemRef InterfaceFile::makeItem(InterfaceDescription& description) {
    if (description.flag("separator", false)) return NSMenuItem::separatorItem();
    if (!description.has("title")) description.fail("title", "no text");
    Id target;
    const Selector action = actionOf(description, target);
    NSMenuItemRef item = NSMenuItem::initWithTitle_action_keyEquivalent(
        title(description), action, description.text("keyEquivalent"));
    item->setTarget(target);
    const std::optional<std::uint32_t> mask = modifierMask(description.text("modifiers"));
    if (!mask) description.fail("modifiers", "an unknown modifier");
    if (!item->keyEquivalent().empty()) item->setKeyEquivalentModifierMask(*mask);
    if (description.has("submenu")) {
        item->setSubmenu(std::dynamic_pointer_cast<NSMenu>(
            objectNamed(description.text("submenu"), description.place() + ".submenu")));
        if (!item->submenu()) description.fail("submenu", "no menu");
    }
    return item;
}

void InterfaceFile::connectOutlets() {
    const PropertyList* value = contents_.objectForKey("outlets");
    if (!value) return;
    if (!value->dictionary()) throw InterfaceError{"outlets", "no dictionary"};
    std::vector<std::pair<Selector, Id>> connections;
    for (const auto& [outlet, name] : value->dictionary()->entries()) {
        const std::string place = "outlets." + outlet;
        const Selector setter = setterFor(outlet);
        if (!owner_->respondsToSelector(setter)) {
            throw InterfaceError{place, "the owner has no such outlet"};
        }
        const auto object = name.string() ? objects_.find(*name.string()) : objects_.end();
        if (object == objects_.end()) throw InterfaceError{place, "no such object"};
        connections.emplace_back(setter, object->second);
    }
    for (const auto& [setter, object] : connections) {
        message<void(const Id&)>(*owner_, setter, object);
    }
}

}  // namespace velmora
