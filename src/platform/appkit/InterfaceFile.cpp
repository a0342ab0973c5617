#include "platform/appkit/InterfaceFile.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <vector>

#include "platform/appkit/NSButton.h"
#include "platform/appkit/NSEvent.h"
#include "platform/appkit/NSMenu.h"
#include "platform/appkit/NSPanel.h"
#include "platform/foundation/NSBundle.h"
#include "platform/foundation/NSLog.h"
#include "platform/foundation/PropertyListFile.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

constexpr double largestImage = 1024;

const std::string* stringFor(const NSDictionary& dictionary, std::string_view key) {
    const PropertyList* value = dictionary.objectForKey(key);
    return value ? value->string() : nullptr;
}

std::string textFor(const NSDictionary& dictionary, std::string_view key) {
    const std::string* text = stringFor(dictionary, key);
    return text ? *text : std::string();
}

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

bool fail(InterfaceFile::Error& error, std::string place, std::string reason) {
    error = {std::move(place), std::move(reason)};
    return false;
}

}  // namespace

InterfaceFile::InterfaceFile(NSDictionary contents, Localize localize)
    : contents_(std::move(contents)), localize_(std::move(localize)) {}

bool InterfaceFile::load(const Id& owner, Error& error) {
    owner_ = owner;
    const PropertyList* objects = contents_.objectForKey("objects");
    if (!objects || !objects->dictionary()) return fail(error, "objects", "no dictionary");
    for (const auto& [name, description] : objects->dictionary()->entries()) {
        if (!makeObject(name, error)) return false;
    }
    if (!connectOutlets(error)) return false;
    awake();
    return true;
}

void InterfaceFile::awake() {
    static const Selector awakeFromNib = Selector::named("awakeFromNib");
    for (const auto& [name, object] : objects_) {
        if (object->respondsToSelector(awakeFromNib)) message<void()>(*object, awakeFromNib);
    }
}

bool InterfaceFile::makeObject(const std::string& name, Error& error) {
    if (const auto made = objects_.find(name); made != objects_.end()) {
        if (made->second) return true;
        return fail(error, "objects." + name, "it holds itself");
    }
    const std::string place = "objects." + name;
    const PropertyList* value = contents_.objectForKey("objects")->dictionary()->objectForKey(name);
    const NSDictionary* description = value ? value->dictionary() : nullptr;
    if (!description) return fail(error, place, "no such object");
    objects_[name] = nullptr;
    const std::string className = textFor(*description, "class");
    Id made;
    if (className == "NSMenu") {
        made = makeMenu(*description, place, error);
    } else if (className == "NSPanel") {
        made = makePanel(*description, place, error);
    } else if (className == "NSTextField") {
        made = std::make_shared<NSTextField>();
    } else {
        made = makeButton(*description, place, error);
    }
    objects_[name] = made;
    return made != nullptr;
}

std::optional<Selector> InterfaceFile::actionFor(const NSDictionary& description,
                                                 const std::string& place, Error& error) {
    const Selector action = Selector::named(textFor(description, "action"));
    if (!action || owner_->respondsToSelector(action)) return action;
    fail(error, place + ".action", "the owner has no '" + action.name() + "'");
    return std::nullopt;
}

NSButtonRef InterfaceFile::makeButton(const NSDictionary& description, const std::string& place,
                                      Error& error) {
    const std::string className = textFor(description, "class");
    Class* named = Class::named(className);
    auto button = std::dynamic_pointer_cast<NSButton>(named ? named->alloc() : nullptr);
    if (!button) {
        fail(error, place + ".class", "unknown class '" + className + "'");
        return nullptr;
    }
    const std::optional<Selector> action = actionFor(description, place, error);
    if (!action) return nullptr;
    button->setTitle(localize_(textFor(description, "title")));
    button->setAction(*action);
    button->setTarget(owner_);
    const PropertyList* imageOnly = description.objectForKey("imageOnly");
    if (imageOnly && imageOnly->boolValue().value_or(false)) button->setImagePosition(NSImageOnly);
    if (const PropertyList* size = description.objectForKey("imageSize")) {
        const std::optional<double> points = size->doubleValue();
        if (!points || !(*points >= 1 && *points <= largestImage)) {
            fail(error, place + ".imageSize", "no number from 1 to 1024");
            return nullptr;
        }
        button->setImageSize({static_cast<float>(*points), static_cast<float>(*points)});
    }
    return button;
}

NSPanelRef InterfaceFile::makePanel(const NSDictionary& description, const std::string& place,
                                    Error& error) {
    const PropertyList* rows = description.objectForKey("rows");
    if (!rows || !rows->array()) {
        fail(error, place + ".rows", "no array");
        return nullptr;
    }
    std::vector<NSPanel::Row> made;
    for (std::size_t i = 0; i < rows->array()->size(); ++i) {
        const std::string rowPlace = place + ".rows[" + std::to_string(i) + "]";
        const NSArray* cells = (*rows->array())[i].array();
        if (!cells) {
            fail(error, rowPlace, "no array");
            return nullptr;
        }
        made.emplace_back();
        for (const PropertyList& cell : *cells) {
            const PropertyList* label =
                cell.dictionary() ? cell.dictionary()->objectForKey("label") : nullptr;
            if (label && label->string()) {
                made.back().emplace_back(NSPanel::Label{localize_(*label->string())});
                continue;
            }
            if (!cell.string()) {
                fail(error, rowPlace, "a cell that is neither a name nor a label");
                return nullptr;
            }
            if (!makeObject(*cell.string(), error)) return nullptr;
            const Id& object = objects_[*cell.string()];
            if (auto field = std::dynamic_pointer_cast<NSTextField>(object)) {
                made.back().emplace_back(std::move(field));
            } else if (auto control = std::dynamic_pointer_cast<NSControl>(object)) {
                made.back().emplace_back(std::move(control));
            } else {
                fail(error, rowPlace, "'" + *cell.string() + "' is no field and no button");
                return nullptr;
            }
        }
    }
    return std::make_shared<NSPanel>(localize_(textFor(description, "title")), std::move(made));
}

NSMenuRef InterfaceFile::makeMenu(const NSDictionary& description, const std::string& place,
                                  Error& error) {
    auto menu = std::make_shared<NSMenu>(localize_(textFor(description, "title")));
    const PropertyList* items = description.objectForKey("items");
    if (!items || !items->array()) {
        fail(error, place + ".items", "no array");
        return nullptr;
    }
    int index = 0;
    for (const PropertyList& item : *items->array()) {
        const std::string itemPlace = place + ".items[" + std::to_string(index++) + "]";
        if (!item.dictionary()) {
            fail(error, itemPlace, "no dictionary");
            return nullptr;
        }
        NSMenuItemRef made = makeItem(*item.dictionary(), itemPlace, error);
        if (!made) return nullptr;
        menu->addItem(std::move(made));
    }
    return menu;
}

NSMenuItemRef InterfaceFile::makeItem(const NSDictionary& description, const std::string& place,
                                      Error& error) {
    if (const PropertyList* separator = description.objectForKey("separator")) {
        if (separator->boolValue().value_or(false)) return NSMenuItem::separatorItem();
    }
    const std::string* title = stringFor(description, "title");
    if (!title) {
        fail(error, place + ".title", "no text");
        return nullptr;
    }
    const std::optional<Selector> action = actionFor(description, place, error);
    if (!action) return nullptr;
    NSMenuItemRef item = NSMenuItem::initWithTitle_action_keyEquivalent(
        localize_(*title), *action, textFor(description, "keyEquivalent"));
    item->setTarget(owner_);
    if (!item->keyEquivalent().empty()) {
        const std::optional<std::uint32_t> mask = modifierMask(textFor(description, "modifiers"));
        if (!mask) {
            fail(error, place + ".modifiers", "an unknown modifier");
            return nullptr;
        }
        item->setKeyEquivalentModifierMask(*mask);
    }
    if (const std::string* submenu = stringFor(description, "submenu")) {
        if (!makeObject(*submenu, error)) return nullptr;
        item->setSubmenu(std::dynamic_pointer_cast<NSMenu>(objects_[*submenu]));
    }
    return item;
}

bool InterfaceFile::connectOutlets(Error& error) {
    const PropertyList* value = contents_.objectForKey("outlets");
    if (!value) return true;
    if (!value->dictionary()) return fail(error, "outlets", "no dictionary");
    std::vector<std::pair<Selector, Id>> connections;
    for (const auto& [outlet, name] : value->dictionary()->entries()) {
        const std::string place = "outlets." + outlet;
        const Selector setter = setterFor(outlet);
        if (!owner_->respondsToSelector(setter)) {
            return fail(error, place, "the owner has no such outlet");
        }
        const auto object = name.string() ? objects_.find(*name.string()) : objects_.end();
        if (object == objects_.end()) return fail(error, place, "no such object");
        connections.emplace_back(setter, object->second);
    }
    for (const auto& [setter, object] : connections) {
        message<void(const Id&)>(*owner_, setter, object);
    }
    return true;
}

bool NSBundle::loadNibNamed_owner(const std::string& name, const Id& owner) const {
    const std::string file = "interface/" + name + ".plist";
    const auto report = [&file](const std::string& what) {
        NSLog("Interface file '" + file + "': " + what);
        return false;
    };
    const std::optional<std::string> path = pathForResource_ofType(file, "");
    if (!path) return report("it is missing");
    std::optional<NSDictionary> contents = dictionaryWithContentsOfFile(resourceFiles(), *path);
    if (!contents) return report("it cannot be read");
    InterfaceFile interface(std::move(*contents), [this](const std::string& english) {
        return localizedStringForKey_value_table(english);
    });
    InterfaceFile::Error error;
    if (!interface.load(owner, error)) return report(error.place + ": " + error.reason);
    return true;
}

}  // namespace velmora
