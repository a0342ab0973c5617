#pragma once

#include <QDialog>
#include <QPointer>

#include "platform/qt/base/X11ErrorFilter.h"

class QFrame;
class QHBoxLayout;
class QIcon;

namespace velmora {

class QtPanel;

/// The dialog that shows a panel: a picture where it is an alert, the panel's rows, and its drawer
/// at the right.
class QtPanelDialog final : public QDialog {
public:
    explicit QtPanelDialog(QtPanel& panel);

    /// Null once the panel is gone.
    QtPanel* panel() const { return panel_; }
    void forgetPanel() { panel_ = nullptr; }

    bool takesInput() const;
    /// What the user does here leads to the sheet, as long as that shows.
    void block(QWidget& sheet);
    void unblock() { sheet_ = nullptr; }

    /// Where the panel's rows are.
    QWidget& body() { return *body_; }
    /// The picture of the desktop's own alerts.
    void showPicture(const QIcon& picture);
    /// The drawer, closed, with its content so large.
    void setDrawer(QWidget& content, QSize size);
    bool hasDrawer() const { return drawer_; }
    /// The body keeps its size.
    void openDrawer(bool open);
    /// What an open drawer takes of the dialog's width.
    int drawerWidth() const { return drawerWidth_; }

    /// With its drawer and its decorations: until it has been shown once, these are taken to be the
    /// usual ones.
    QRect outerFrame();
    void moveTo(QPoint corner);
    /// As near to the frame as the screen and what is shown allow.
    void fit(QRect frame);

    /// What no button takes of Escape, or the button of the title bar.
    void reject() override;

    void setVisible(bool visible) override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    /// Sees the events of the dialog's window.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QSize decorations();
    bool isBlocked() const { return sheet_ && sheet_->isVisible(); }

    QtPanel* panel_;
    QPointer<QWidget> sheet_;
    QHBoxLayout* parts_;
    QWidget* body_;
    QFrame* drawer_ = nullptr;
    int drawerWidth_ = 0;
    /// What the window manager adds around it, once that is known.
    QMargins margins_;
    X11ErrorFilter errors_;
};

}  // namespace velmora
