#include "platform/qt/panels/QtPanelDialog.h"

#include <QCloseEvent>
#include <QFrame>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QScreen>
#include <QStyle>
#include <QWindow>
#include <algorithm>

#include "platform/qt/base/QtGuard.h"
#include "platform/qt/panels/QtPanel.h"
#include "platform/qt/windows/QtWindows.h"

namespace velmora {

namespace {

bool isInput(QEvent::Type type) {
    switch (type) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::Wheel:
        case QEvent::ContextMenu:
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::ShortcutOverride:
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd:
        case QEvent::TabletPress:
        case QEvent::TabletMove:
        case QEvent::TabletRelease:
        case QEvent::DragEnter:
        case QEvent::Drop: return true;
        default: return false;
    }
}

QPoint inside(QPoint corner, QSize size, const QRect& area) {
    return {std::max(std::min(corner.x(), area.right() + 1 - size.width()), area.left()),
            std::max(std::min(corner.y(), area.bottom() + 1 - size.height()), area.top())};
}

QRect availableAt(QPoint point) {
    const QScreen* screen = QGuiApplication::screenAt(point);
    if (!screen) screen = QGuiApplication::primaryScreen();
    return screen ? screen->availableGeometry() : QRect();
}

}  // namespace

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

void QtPanelDialog::block(QWidget& sheet) {
    // The toolkit's own modality, and the window manager's, would block the host's window as well.
    sheet_ = &sheet;
    winId();
    windowHandle()->installEventFilter(this);
}

bool QtPanelDialog::eventFilter(QObject* watched, QEvent* event) {
    if (!isBlocked()) return QDialog::eventFilter(watched, event);
    const bool leads =
        event->type() == QEvent::MouseButtonPress || event->type() == QEvent::FocusIn;
    if (leads) {
        QMetaObject::invokeMethod(
            sheet_,
            [sheet = sheet_.data()] {
                if (!sheet->isVisible()) return;
                sheet->raise();
                sheet->activateWindow();
            },
            Qt::QueuedConnection);
    }
    return isInput(event->type()) || QDialog::eventFilter(watched, event);
}

void QtPanelDialog::closeEvent(QCloseEvent* event) {
    // A host that closes all windows before it quits is not kept from it.
    if (event->spontaneous() && isBlocked()) return event->ignore();
    QDialog::closeEvent(event);
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

QSize QtPanelDialog::decorations() {
    const QWindow* own = windowHandle();
    if (own && !own->frameMargins().isNull()) margins_ = own->frameMargins();
    const QMargins around = margins_.isNull() && panel_ ? panel_->usualDecorations() : margins_;
    return {around.left() + around.right(), around.top() + around.bottom()};
}

QRect QtPanelDialog::outerFrame() {
    return isVisible() ? frameGeometry() : QRect(pos(), size() + decorations());
}

void QtPanelDialog::moveTo(QPoint corner) {
    // The position of a dialog that has no window yet is that of its frame; a hidden window's is
    // not, whatever it is moved by.
    if (!isVisible() && testAttribute(Qt::WA_WState_Created)) destroy();
    move(corner);
}

void QtPanelDialog::fit(QRect frame) {
    const QRect area = availableAt(frame.center());
    const QSize around = decorations();
    resize((frame.size().boundedTo(area.size()) - around).expandedTo(minimumSizeHint()));
    moveTo(inside(frame.topLeft(), size() + around, area));
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

void QtPanelDialog::setVisible(bool visible) {
    // Qt looks which window is now under the pointer, and may meet the frame of this one, which the
    // window manager is just destroying.
    errors_.run([this, visible] { QDialog::setVisible(visible); });
}

void QtPanelDialog::keyPressEvent(QKeyEvent* event) {
    const bool isEscape = event->matches(QKeySequence::Cancel);
    if (isEscape && panel_ && panel_->clickEscapeButton()) return;
    QDialog::keyPressEvent(event);
}

}  // namespace velmora
