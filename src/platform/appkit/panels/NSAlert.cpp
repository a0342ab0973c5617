#include "platform/appkit/panels/NSAlert.h"

#include <optional>
#include <utility>

#include "platform/appkit/NSApplication.h"
#include "platform/appkit/controls/NSButton.h"
#include "platform/appkit/panels/NSPanel.h"
#include "platform/foundation/NSBundle.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "platform/foundation/NSRunLoop.h"
#include "platform/runtime/Class.h"

namespace velmora {

namespace {

struct Texts {
    std::string title;
    std::string message;
    std::string defaultButton;
    std::string alternateButton;
    std::string otherButton;
    NSAlertStyle style = NSWarningAlertStyle;
    std::string spokenMessage = {};
};

/// An alert while it is open: its panel, and what is to become of the answer.
class Alert final : public NSObject {
public:
    static Class& classObject() {
        static auto* object = &(new Class("NSAlertPanel", &NSObject::classObject()))
                                   ->method<&Alert::pressed>("pressed:")
                                   .method<&Alert::windowWillClose>("windowWillClose:");
        return *object;
    }
    Class& isa() const override { return classObject(); }

    void makePanel(Texts texts) {
        if (texts.title.empty()) texts.title = localized("Alert");
        if (texts.defaultButton.empty()) texts.defaultButton = localized("OK");
        closedMeans_ =
            texts.alternateButton.empty() ? NSAlertDefaultReturn : NSAlertAlternateReturn;
        NSPanel::Row buttons;
        addButton(buttons, texts.otherButton, NSAlertOtherReturn);
        addButton(buttons, texts.alternateButton, NSAlertAlternateReturn);
        addButton(buttons, texts.defaultButton, NSAlertDefaultReturn);
        std::string said = texts.message.empty() ? texts.title : std::move(texts.message);
        panel_ = std::make_shared<NSPanel>(
            std::move(texts.title),
            std::vector<NSPanel::Row>{
                {NSPanel::Label{std::move(said), std::move(texts.spokenMessage)}},
                std::move(buttons)});
        panel_->setAlertStyle(texts.style);
        panel_->setDelegate(shared_from_this());
    }

    NSPanel& panel() { return *panel_; }

    int runModal() {
        panel_->center();
        panel_->makeKeyAndOrderFront();
        isModal_ = true;
        NSApp().runModalForWindow(*panel_);
        panel_->orderOut();
        return answer_.value_or(closedMeans_);
    }

    void beginSheet(NSPanel& parent, const Id& delegate, Selector didEnd, PropertyList context) {
        parent_ = std::static_pointer_cast<NSPanel>(parent.shared_from_this());
        delegate_ = delegate;
        didEnd_ = didEnd;
        context_ = std::move(context);
        panel_->center();
        panel_->peer().beginSheet(parent);
    }

private:
    void addButton(NSPanel::Row& row, const std::string& title, int answer) {
        if (title.empty()) return;
        const auto button = std::make_shared<NSButton>();
        button->setTitle(title);
        button->setTag(answer);
        button->setTarget(shared_from_this());
        button->setAction(Selector::named("pressed:"));
        if (answer == NSAlertDefaultReturn) button->setKeyEquivalent("\r");
        if (answer == NSAlertAlternateReturn) button->setKeyEquivalent("\x1B");
        row.emplace_back(NSControlRef(button));
    }

    void pressed(const Id& sender) {
        if (const auto* button = dynamic_cast<const NSButton*>(sender.get())) end(button->tag());
    }

    void windowWillClose(const NSNotification& /*notification*/) { end(closedMeans_); }

    void end(int answer) {
        if (answer_) return;
        answer_ = answer;
        if (isModal_) return NSApp().stopModal();
        const Id kept = shared_from_this();
        panel_->orderOut();
        if (const NSPanelRef parent = parent_.lock()) {
            // The sheet's button may be in the middle of its click.
            NSRunLoop::currentRunLoop().keepUntilNextPass(kept);
            parent->setAttachedSheet(nullptr);
            parent->makeKeyWindow();
        }
        const Id delegate = delegate_.lock();
        if (!delegate || !delegate->respondsToSelector(didEnd_)) return;
        message<void(NSPanel&, int, const PropertyList&)>(*delegate, didEnd_, *panel_, answer,
                                                          context_);
    }

    NSPanelRef panel_;
    std::weak_ptr<NSPanel> parent_;
    std::weak_ptr<NSObject> delegate_;
    Selector didEnd_;
    PropertyList context_;
    std::optional<int> answer_;
    int closedMeans_ = NSAlertDefaultReturn;
    bool isModal_ = false;
};

}  // namespace

int NSRunAlertPanel(const std::string& title, const std::string& message,
                    const std::string& defaultButton, const std::string& alternateButton,
                    const std::string& otherButton) {
    const auto alert = std::make_shared<Alert>();
    alert->makePanel({title, message, defaultButton, alternateButton, otherButton});
    return alert->runModal();
}

int NSRunInformationalAlertPanel(const std::string& title, const std::string& message,
                                 const std::string& defaultButton,
                                 const std::string& alternateButton,
                                 const std::string& otherButton) {
    const auto alert = std::make_shared<Alert>();
    alert->makePanel(
        {title, message, defaultButton, alternateButton, otherButton, NSInformationalAlertStyle});
    return alert->runModal();
}

void NSBeginAlertSheet(const std::string& title, const std::string& defaultButton,
                       const std::string& alternateButton, const std::string& otherButton,
                       NSPanel& panel, const Id& delegate, Selector didEndSelector,
                       const PropertyList& contextInfo, const std::string& message,
                       const std::string& spokenMessage) {
    if (panel.attachedSheet()) return;
    const auto alert = std::make_shared<Alert>();
    alert->makePanel({title, message, defaultButton, alternateButton, otherButton,
                      NSWarningAlertStyle, spokenMessage});
    panel.setAttachedSheet(alert);
    alert->beginSheet(panel, delegate, didEndSelector, contextInfo);
}

}  // namespace velmora
