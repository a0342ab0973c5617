#pragma once

#include "panels/VelmoraCommonUI.h"
#include "platform/appkit/controls/NSTextView.h"

namespace velmora {

/// The panel of the text snippets: a table of names beside the text of the selected one.
class VelmoraTextSnippetsUI : public VelmoraCommonUI {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    void initWithSettings_delegate(const std::shared_ptr<VelmoraSettings>& settings,
                                   const std::shared_ptr<VelmoraCommon>& delegate) override;

    /// Every new row has a name.
    void addDefinition(const Id& sender) override;

    /// Shows the selected row's text; without one, what is shown stays.
    void tableViewSelectionDidChange(const NSNotification& notification);
    /// Puts the text into the selected row.
    void textDidChange(const NSNotification& notification);

private:
    std::shared_ptr<NSTextView> textArea_;
    /// The definition whose text it is.
    std::weak_ptr<VelmoraSetting> shown_;
};

}  // namespace velmora
