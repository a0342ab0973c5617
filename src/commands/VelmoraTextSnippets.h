#pragma once

#include <memory>
#include <string>

#include "definitions/VelmoraCommon.h"

namespace velmora {

/// Named pieces of text, listed in a submenu of the suite's own menu. Choosing one types its text
/// into the view that has the keyboard. In a definition the trigger is the name, the path the text.
class VelmoraTextSnippets : public VelmoraCommon {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// The menu is not owned. Its first two items are fixed; those after them are the component's.
    void initForMenu(const NSMenuRef& menu);

    std::string componentName() override { return "TextSnippets"; }
    Class* uiClass() override;

    /// Lists the definitions in the menu.
    void activateSettings() override;
    void globalsChanged() override { activateSettings(); }

    /// The action of the items: runs the first definition of that name.
    void velmoraPerformMenuAction(const Id& item);

    /// Types the definition's text.
    virtual void runWithSetting(const VelmoraSettingRef& definition);

protected:
    /// Types the text, as one insertion wherever the application can take it.
    static void type(const std::string& text);

private:
    std::weak_ptr<NSMenu> myMenu_;
};

}  // namespace velmora
