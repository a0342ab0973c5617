#include "definitions/VelmoraSetting.h"

#include "definitions/VelmoraUtils.h"
#include "platform/appkit/NSMenuItem.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

const std::string& orEmpty(const std::optional<std::string>& field) {
    static const std::string empty;
    return field ? *field : empty;
}

}  // namespace

Class& VelmoraSetting::classObject() {
    static auto* object = new Class("VelmoraSetting", &NSObject::classObject());
    return *object;
}

VelmoraSettingRef VelmoraSetting::newSetting() {
    auto setting = std::make_shared<VelmoraSetting>();
    setting->init();
    return setting;
}

VelmoraSettingRef VelmoraSetting::newWithDictionary_forceGlobal(NSDictionary dictionary,
                                                                bool forceGlobal) {
    auto setting = std::make_shared<VelmoraSetting>();
    setting->initWithDictionary_forceGlobal(std::move(dictionary), forceGlobal);
    return setting;
}

void VelmoraSetting::init() {
    path_.reset();
    trigger_.reset();
    selector_.reset();
    isGlobal_ = false;
}

void VelmoraSetting::initWithDictionary_forceGlobal(NSDictionary dictionary, bool forceGlobal) {
    init();
    const auto take = [&dictionary](const char* key, std::optional<std::string>& field) {
        PropertyList* value = dictionary.objectForKey(key);
        if (std::string* text = value ? value->string() : nullptr) field = std::move(*text);
    };
    if (const PropertyList* flag = dictionary.objectForKey("isGlobal")) {
        isGlobal_ = flag->boolValue().value_or(false);
    }
    take("Path", path_);
    take("Trigger", trigger_);
    take("Selector", selector_);
    if (forceGlobal) isGlobal_ = true;
}

VelmoraSettingRef VelmoraSetting::copyWithZone() const {
    return newWithDictionary_forceGlobal(dictionary(), false);
}

NSDictionary VelmoraSetting::dictionary() const {
    NSDictionary dictionary;
    dictionary.reserve(4);
    dictionary.append("Path", path());
    dictionary.append("Trigger", trigger());
    dictionary.append("Selector", selector());
    dictionary.append("isGlobal", isGlobal_);
    return dictionary;
}

std::optional<PropertyList> VelmoraSetting::objectForKey(std::string_view key) const {
    if (key == "Path") return path();
    if (key == "Trigger") return trigger();
    if (key == "Selector") return selector();
    if (key == "isGlobal") return isGlobal_;
    return std::nullopt;
}

bool VelmoraSetting::setObject_forKey(const PropertyList* value, std::string_view key) {
    if (key == "isGlobal") return setIsGlobal(value && value->boolValue().value_or(false));
    std::optional<std::string>* field = fieldForKey(key);
    if (!field) return false;
    const std::string* text = value ? value->string() : nullptr;
    return replace(*field, text ? std::optional(*text) : std::nullopt);
}

bool VelmoraSetting::setObject_forKey(const Id& menuItem, std::string_view key) {
    if (!menuItem) return setObject_forKey(static_cast<const PropertyList*>(nullptr), key);
    return key == "Path" && setPath(menuItem);
}

const std::string& VelmoraSetting::path() const {
    return orEmpty(path_);
}

const std::string& VelmoraSetting::trigger() const {
    return orEmpty(trigger_);
}

const std::string& VelmoraSetting::selector() const {
    return orEmpty(selector_);
}

bool VelmoraSetting::setPath(std::optional<std::string> path) {
    return replace(path_, std::move(path));
}

bool VelmoraSetting::setPath(const Id& menuItem) {
    const auto* item = dynamic_cast<const NSMenuItem*>(menuItem.get());
    const auto* represented =
        item ? dynamic_cast<const NSMenuItem*>(item->representedObject().get()) : nullptr;
    if (!represented) return replace(path_, std::nullopt);
    if (!item->menu()) return false;
    const bool pathTouched = replace(path_, VelmoraUtils::menuItemPathFor(*item));
    const bool selectorTouched = replace(selector_, NSStringFromSelector(represented->action()));
    return pathTouched || selectorTouched;
}

bool VelmoraSetting::setTrigger(std::optional<std::string> trigger) {
    return replace(trigger_, std::move(trigger));
}

bool VelmoraSetting::setSelector(std::optional<std::string> selector) {
    return replace(selector_, std::move(selector));
}

bool VelmoraSetting::setIsGlobal(bool isGlobal) {
    if (isGlobal_ == isGlobal) return false;
    isGlobal_ = isGlobal;
    return true;
}

bool VelmoraSetting::isEqualTo(const VelmoraSetting& other) const {
    return path() == other.path() && trigger() == other.trigger() && selector() == other.selector();
}

bool VelmoraSetting::replace(std::optional<std::string>& field, std::optional<std::string> value) {
    if (field && value && *field == *value) return false;
    field = std::move(value);
    return isGlobal_;
}

std::optional<std::string>* VelmoraSetting::fieldForKey(std::string_view key) {
    if (key == "Path") return &path_;
    if (key == "Trigger") return &trigger_;
    if (key == "Selector") return &selector_;
    return nullptr;
}

}  // namespace velmora
