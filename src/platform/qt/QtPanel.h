#pragma once

#include <QDialog>
#include <QLineEdit>
#include <QPointer>
#include <memory>

#include "platform/appkit/NSPanel.h"
#include "platform/qt/QtOwnWindow.h"
#include "platform/qt/QtWindow.h"

class QEventLoop;
class QGridLayout;

namespace velmora {

class QtButton;
class QtWindows;

/// The window of a panel of ours, in the host's own style. It is none of the host's windows: it has
/// no part in their order and in which of them is key, and closing it never ends the host.
class QtPanel final : public PanelPeer, public QtOwnWindow {
public:
    QtPanel(QtWindows& windows, NSPanel& panel);
    ~QtPanel() override;
    QtPanel(const QtPanel&) = delete;
    QtPanel& operator=(const QtPanel&) = delete;

    void close() override;

    /// Until the panel has been shown once, its decorations are taken to be those of the window
    /// over which it opens.
    NSRect frame() override;
    void setFrameOrigin(NSPoint origin) override;
    /// On the screen of the window that takes the keys.
    void center() override;
    /// The panel comes up in the loop's next pass, or with runModal: it must be known by then
    /// whether it is modal.
    void makeKeyAndOrderFront() override;
    void makeKeyWindow() override;
    void orderOut() override;
    bool isVisible() override { return wanted_; }
    void contentChanged() override;
    void runModal() override;
    void endModal() override;

private:
    class Dialog;

    /// Anew, too, when the host has deleted it. False when there can be none any more.
    bool hasDialog();
    void makeDialog();
    /// Those of the panel that are not shown yet.
    void addRows();
    void addRow(QGridLayout& grid, const NSPanel::Row& cells, int row);
    QWidget* makeControl(const NSControlRef& control);
    QLineEdit* makeField(const std::shared_ptr<NSTextField>& field, const QString& label);
    void show(Qt::WindowModality modality);
    void dismissed();
    QMargins decorations();

    QtWindows* windows_;
    /// Our owner.
    NSPanel& panel_;
    QPointer<Dialog> dialog_;
    std::vector<std::shared_ptr<NSTextField>> fields_;
    QPointer<QLineEdit> firstField_;
    std::vector<QPointer<QtButton>> buttons_;
    std::size_t shownRows_ = 0;
    /// What the window manager adds around the dialog, once that is known.
    QMargins margins_;
    /// The host's window that had the keys before.
    std::weak_ptr<QtWindow> before_;
    QEventLoop* loop_ = nullptr;
    /// Somebody wants to see it.
    bool wanted_ = false;
    /// The session was ended, and the loop only has to notice: what comes in the same pass is for
    /// nobody.
    bool ended_ = false;
};

}  // namespace velmora
