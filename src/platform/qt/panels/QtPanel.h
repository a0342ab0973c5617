#pragma once

#include <QKeyEvent>
#include <QPointer>
#include <QWindow>
#include <memory>

#include "platform/appkit/panels/NSPanel.h"
#include "platform/qt/panels/QtControls.h"
#include "platform/qt/panels/QtPanelDialog.h"
#include "platform/qt/panels/QtPanelLayout.h"
#include "platform/qt/windows/QtOwnWindow.h"

class QEventLoop;

namespace velmora {

class QtWindows;

/// The window of a panel of ours, in the host's own style. It is none of the host's windows: its
/// menus are not the main menu, and closing it never ends the host.
class QtPanel final : public PanelPeer, public QtOwnWindow {
public:
    QtPanel(QtWindows& windows, NSPanel& panel);
    ~QtPanel() override;
    QtPanel(const QtPanel&) = delete;
    QtPanel& operator=(const QtPanel&) = delete;

    void close() override;
    bool isShownBy(const QWidget& widget) const override;
    NSWindowRef window() override;

    /// Without its drawer. Until the panel has been shown once, its decorations are taken to be
    /// those of the window over which it opens.
    NSRect frame() override;
    void setFrame(NSRect frame) override;
    void setFrameOrigin(NSPoint origin) override;
    /// On the screen of the window that takes the keys.
    void center() override;
    /// The panel comes up in the loop's next pass, or with runModal: it must be known by then
    /// whether it is modal.
    void makeKeyAndOrderFront() override;
    void makeKeyWindow() override;
    void orderOut() override;
    bool isVisible() override { return wanted_; }
    int windowNumber() override { return number_; }
    NSRect drawerFrame() override;
    void contentChanged() override;
    void titleChanged() override;
    void drawerChanged() override;
    void firstResponderChanged() override;
    void beginSheet(NSPanel& parent) override;
    void runModal() override;
    void endModal() override;

    // For the dialog

    /// Not while its session has ended and the loop only has to notice, or while a sheet is open:
    /// what comes then is for nobody.
    bool takesInput() const { return !ended_ && !panel_.attachedSheet(); }
    /// What the window manager adds around the window that has the keys.
    QMargins usualDecorations() const;
    /// Offers a key to the panel's views before the widget with the focus has it; true when one has
    /// used it.
    bool viewsTake(QKeyEvent& event);
    /// The user wants to close it; false when it stays. This may be gone when it returns.
    bool mayBeDismissed();
    /// The user has closed it.
    void dismissed();
    /// False without such a button. This may be gone when it returns.
    bool clickEscapeButton() { return controls_->clickButtonWithKey("\x1B"); }

private:
    /// Anew, too, when the host has deleted it. False when there can be none any more.
    bool hasDialog();
    void makeDialog();
    void focusChanged(const QWidget& now);
    void showLater();
    void show(Qt::WindowModality modality);
    void comeToFront();
    void focusFirst();
    /// Called for a sheet that is about to go: its panel gets the keyboard focus back.
    void leaveParent();
    /// To the panel that is as if the user had closed it.
    void hostDeletedDialog();

    QtWindows* windows_;
    /// Our owner.
    NSPanel& panel_;
    int number_;
    QPointer<QtPanelDialog> dialog_;
    /// The widgets in the dialog.
    std::unique_ptr<QtControls> controls_;
    std::unique_ptr<QtPanelLayout> layout_;
    /// What had the keys before.
    std::weak_ptr<NSWindow> before_;
    /// The panel over which a sheet opens; null for a panel.
    QPointer<QtPanelDialog> parent_;
    QEventLoop* loop_ = nullptr;
    /// Somebody wants to see it.
    bool wanted_ = false;
    bool ended_ = false;
};

}  // namespace velmora
