#include "platform/qt/QtPanelDialog.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QStyle>

#include "platform/qt/QtGuard.h"
#include "platform/qt/QtPanel.h"
#include "platform/qt/QtWindows.h"

namespace velmora {

QtPanelDialog::QtPanelDialog(QtPanel& panel)
    : panel_(&panel), parts_(new QHBoxLayout(this)), body_(new QWidget(this)) {
    QtWindows::markAsOwn(*this);
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                   Qt::WindowCloseButtonHint);
    parts_->setContentsMargins(0, 0, 0, 0);
    parts_->setSpacing(0);
    parts_->addWidget(body_, 1);
}

bool QtPanelDialog::takesInput() const {
    return !panel_ || panel_->takesInput();
}

void QtPanelDialog::showPicture(const QIcon& picture) {
    auto* shown = new QLabel(this);
    const int side = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
    shown->setPixmap(picture.pixmap(side, side));
    const int margin = style()->pixelMetric(QStyle::PM_LayoutLeftMargin, nullptr, this);
    shown->setContentsMargins(margin, margin, 0, 0);
    parts_->insertWidget(0, shown, 0, Qt::AlignTop);
    parts_->setSizeConstraint(QLayout::SetFixedSize);
}

void QtPanelDialog::setDrawer(QWidget& content, QSize size) {
    drawer_ = new QFrame(this);
    drawer_->setFrameShape(QFrame::StyledPanel);
    drawer_->hide();
    auto* layout = new QVBoxLayout(drawer_);
    content.setParent(drawer_);
    content.setMinimumSize(size);
    layout->addWidget(&content);
    layout->addStretch();
    parts_->addWidget(drawer_);
}

void QtPanelDialog::openDrawer(bool open) {
    if (!drawer_ || open == (drawerWidth_ > 0)) return;
    const int bodyWidth = width() - drawerWidth_;
    const int bodyHeight = height();
    drawerWidth_ = open ? drawer_->sizeHint().width() : 0;
    drawer_->setVisible(open);
    parts_->activate();
    resize(bodyWidth + drawerWidth_, bodyHeight);
}

void QtPanelDialog::dropHiddenWindow() {
    if (!isVisible() && testAttribute(Qt::WA_WState_Created)) destroy();
}

void QtPanelDialog::reject() {
    const QPointer<QtPanelDialog> self(this);
    bool stays = false;
    guarded("Leaving a panel", [&] { stays = panel_ && !panel_->mayBeDismissed(); });
    if (stays || !self) return;
    QDialog::reject();
    guarded("Closing a panel", [&] {
        if (self && panel_) panel_->dismissed();
    });
}

void QtPanelDialog::keyPressEvent(QKeyEvent* event) {
    const bool isEscape = event->matches(QKeySequence::Cancel);
    if (isEscape && panel_ && panel_->clickEscapeButton()) return;
    QDialog::keyPressEvent(event);
}

}  // namespace velmora
