#pragma once

#include <QDialog>

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

    /// The position of a dialog that has no window yet is that of its frame; a hidden window's is
    /// not, whatever it is moved by.
    void dropHiddenWindow();

    /// What no button takes of Escape, or the button of the title bar.
    void reject() override;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QtPanel* panel_;
    QHBoxLayout* parts_;
    QWidget* body_;
    QFrame* drawer_ = nullptr;
    int drawerWidth_ = 0;
};

}  // namespace velmora
