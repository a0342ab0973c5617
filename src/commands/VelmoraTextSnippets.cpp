#include "commands/VelmoraTextSnippets.h"

#include <string_view>

#include "platform/appkit/NSApplication.h"
#include "platform/foundation/files/Characters.h"
#include "platform/port/Desktop.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

constexpr int fixedItems = 2;

/// The one application whose text views take a character an event.
constexpr std::string_view takesSingleCharacters = "JavaApplicationStub";

void typeKey(const std::string& characters, std::uint16_t keyCode) {
    for (const std::uint32_t type : {NSKeyDown, NSKeyUp}) {
        NSEvent::Fields fields;
        fields.type = type;
        fields.characters = characters;
        fields.charactersIgnoringModifiers = characters;
        fields.keyCode = keyCode;
        NSApp().sendEvent(std::make_shared<NSEvent>(std::move(fields)));
    }
}

/// The virtual key codes of Return, Space and Tab; 0 for all other characters.
std::uint16_t keyCodeFor(std::string_view character) {
    if (character == "\n") return 36;
    if (character == " ") return 49;
    return character == "\t" ? 48 : 0;
}

}  // namespace

Class& VelmoraTextSnippets::classObject() {
    static auto* object =
        &(new Class("VelmoraTextSnippets", &VelmoraCommon::classObject()))
             ->method<&VelmoraTextSnippets::velmoraPerformMenuAction>("velmoraPerformMenuAction:");
    return *object;
}

Class* VelmoraTextSnippets::uiClass() {
    return Class::named("VelmoraTextSnippetsUI");
}

void VelmoraTextSnippets::initForMenu(const NSMenuRef& menu) {
    VelmoraCommon::init();
    myMenu_ = menu;
    activateSettings();
}

void VelmoraTextSnippets::activateSettings() {
    const NSMenuRef menu = myMenu_.lock();
    if (!menu) return;
    while (menu->numberOfItems() > fixedItems) menu->removeItemAtIndex(fixedItems);
    static const Selector action = Selector::named("velmoraPerformMenuAction:");
    for (const VelmoraSettingRef& definition : settings()->array()) {
        NSMenuItemRef item =
            NSMenuItem::initWithTitle_action_keyEquivalent(definition->trigger(), action, "");
        item->setTarget(shared_from_this());
        menu->addItem(std::move(item));
    }
}

void VelmoraTextSnippets::velmoraPerformMenuAction(const Id& item) {
    const auto* chosen = dynamic_cast<const NSMenuItem*>(item.get());
    if (!chosen) return;
    for (const VelmoraSettingRef& definition : settings()->array()) {
        if (definition->trigger() != chosen->title()) continue;
        // The list may change while the definition runs.
        const VelmoraSettingRef kept = definition;
        runWithSetting(kept);
        return;
    }
}

void VelmoraTextSnippets::runWithSetting(const VelmoraSettingRef& definition) {
    type(definition->path());
}

void VelmoraTextSnippets::type(const std::string& text) {
    if (desktop().processName() != takesSingleCharacters) {
        typeKey(text, 0);
        return;
    }
    for (std::string_view rest = text; !rest.empty();) {
        const std::string_view character = rest.substr(0, firstCharacterLength(rest));
        typeKey(std::string(character), keyCodeFor(character));
        rest.remove_prefix(character.size());
    }
}

}  // namespace velmora
