#include "platform/qt/panels/QtPanel.h"

#include <QApplication>
#include <QEventLoop>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScopedValueRollback>
#include <QScreen>
#include <QStyle>
#include <algorithm>

#include "platform/qt/base/QtCoordinates.h"
#include "platform/qt/base/QtGuard.h"
#include "platform/qt/panels/controls/QtControlEvents.h"
#include "platform/qt/windows/QtWindows.h"

namespace velmora {

QtPanel::QtPanel(QtWindows& windows, NSPanel& panel)
    : windows_(&windows), panel_(panel), number_(windows.takeNumber()) {
    windows.addOwn(*this);
    makeDialog();
}

QtPanel::~QtPanel() {
    if (windows_) windows_->removeOwn(*this);
    controls_.reset();
    if (!dialog_) return;
    dialog_->forgetPanel();
    dialog_->hide();
    // Something in it may be in the middle of telling us.
    dialog_->deleteLater();
}

void QtPanel::close() {
    if (dialog_ && dialog_->isVisible()) {
        guarded("Keeping a panel's place", [this] { panel_.saveFrame(); });
    }
    windows_ = nullptr;
    wanted_ = false;
    controls_.reset();
    if (!dialog_) return;
    dialog_->forgetPanel();
    delete dialog_.data();
}

bool QtPanel::isShownBy(const QWidget& widget) const {
    return dialog_ == &widget;
}

NSWindowRef QtPanel::window() {
    return std::static_pointer_cast<NSWindow>(panel_.weak_from_this().lock());
}

// What it holds

bool QtPanel::hasDialog() {
    if (!dialog_ && windows_) makeDialog();
    return !dialog_.isNull();
}

void QtPanel::makeDialog() {
    dialog_ = new QtPanelDialog(*this);
    const QPointer<QtPanelDialog> dialog = dialog_;
    controls_ = std::make_unique<QtControls>([dialog] { return dialog && dialog->takesInput(); });
    layout_ = std::make_unique<QtPanelLayout>(*controls_, dialog_->body());
    titleChanged();
    if (const auto style = panel_.alertStyle()) {
        const bool warns = *style == NSWarningAlertStyle;
        dialog_->showPicture(QApplication::style()->standardIcon(
            warns ? QStyle::SP_MessageBoxWarning : QStyle::SP_MessageBoxInformation));
    }
    layout_->arrange(panel_.rows(), QString::fromStdString(panel_.title()));
    dialog_->resize(dialog_->sizeHint());
    // The panel owns this.
    QObject::connect(
        dialog_, &QObject::destroyed, qApp,
        [this, owner = panel_.weak_from_this()] {
            if (const auto kept = owner.lock()) {
                guarded("Losing a panel's window", [this] { hostDeletedDialog(); });
            }
        },
        Qt::QueuedConnection);
    drawerChanged();
    QObject::connect(qApp, &QApplication::focusChanged, dialog_,
                     [dialog](const QWidget* /*before*/, const QWidget* now) {
                         QtPanel* panel = dialog->panel();
                         if (panel && now && dialog->isAncestorOf(now)) panel->focusChanged(*now);
                     });
}

void QtPanel::contentChanged() {
    if (!dialog_) return;
    std::vector<NSControlRef> shown = panel_.controls();
    if (panel_.drawer()) shown.push_back(panel_.drawer()->content());
    controls_->keepOnly(shown);
    layout_->arrange(panel_.rows(), QString::fromStdString(panel_.title()));
    dialog_->resize(dialog_->size().expandedTo(dialog_->sizeHint()));
}

void QtPanel::titleChanged() {
    if (dialog_) dialog_->setWindowTitle(QString::fromStdString(panel_.title()));
}

void QtPanel::drawerChanged() {
    const NSContentDrawerRef& drawer = panel_.drawer();
    if (!dialog_ || !drawer) return;
    if (!dialog_->hasDrawer()) {
        const NSSize size = drawer->contentSize();
        dialog_->setDrawer(*controls_->widgetOf(drawer->content(), *dialog_),
                           {qRound(size.width), qRound(size.height)});
    }
    dialog_->openDrawer(drawer->isOpen());
    // A place that nobody has chosen is the window manager's to choose.
    if (dialog_->isVisible() || dialog_->testAttribute(Qt::WA_Moved))
        dialog_->fit(dialog_->outerFrame());
}

void QtPanel::firstResponderChanged() {
    if (!dialog_) return;
    const auto control = std::dynamic_pointer_cast<NSControl>(panel_.firstResponder());
    QWidget* widget = control ? controls_->existingWidgetOf(control) : nullptr;
    if (widget) {
        widget->setFocus();
    } else if (QWidget* before = dialog_->focusWidget()) {
        before->clearFocus();
    }
}

void QtPanel::focusChanged(const QWidget& now) {
    if (const NSControlRef control = controls_->controlOf(&now)) panel_.userFocused(control);
}

void QtPanel::focusFirst() {
    QWidget* first = controls_->firstForKeys();
    if (!first) return;
    first->setFocus();
    if (auto* field = qobject_cast<QLineEdit*>(first)) field->selectAll();
}

bool QtPanel::viewsTake(QKeyEvent& event) {
    if (!dialog_ || !takesInput()) return false;
    // Held keys of editing, such as Ctrl+Left, go on in a text.
    const QWidget* focus = dialog_->focusWidget();
    const bool isText =
        qobject_cast<const QLineEdit*>(focus) || qobject_cast<const QPlainTextEdit*>(focus);
    if (isText && event.isAutoRepeat()) return false;
    const NSEventRef key = keyEventFor(event);
    return key && panel_.userPressedKey(key);
}

// Where it is

QMargins QtPanel::usualDecorations() const {
    const QWindow* key = windows_ ? windows_->keyHandle() : nullptr;
    return key ? key->frameMargins() : QMargins();
}

NSRect QtPanel::frame() {
    if (!dialog_) return {};
    const QRect outer = dialog_->outerFrame();
    return screenRect(outer.adjusted(0, 0, -dialog_->drawerWidth(), 0));
}

NSRect QtPanel::drawerFrame() {
    if (!dialog_) return {};
    const QRect outer = dialog_->outerFrame();
    return screenRect(outer.adjusted(outer.width() - dialog_->drawerWidth(), 0, 0, 0));
}

void QtPanel::setFrame(NSRect frame) {
    if (!hasDialog()) return;
    const QPoint corner =
        globalPoint({frame.origin.x, frame.origin.y + frame.size.height}).toPoint();
    const QSize body(qRound(frame.size.width), qRound(frame.size.height));
    dialog_->fit({corner, body + QSize(dialog_->drawerWidth(), 0)});
}

void QtPanel::setFrameOrigin(NSPoint origin) {
    if (!hasDialog()) return;
    dialog_->moveTo(globalPoint({origin.x, origin.y + frame().size.height}).toPoint());
}

void QtPanel::center() {
    if (!hasDialog()) return;
    const QWindow* focus = QGuiApplication::focusWindow();
    const QScreen* screen = focus ? focus->screen() : QGuiApplication::primaryScreen();
    if (!screen) return;
    QRect frame = dialog_->outerFrame();
    frame.moveCenter(screen->availableGeometry().center());
    dialog_->moveTo(frame.topLeft());
}

// Showing and hiding

void QtPanel::makeKeyAndOrderFront() {
    if (!hasDialog()) return;
    wanted_ = true;
    if (dialog_->isVisible()) {
        comeToFront();
    } else {
        showLater();
    }
}

void QtPanel::beginSheet(NSPanel& parent) {
    if (!hasDialog()) return;
    const auto* below = dynamic_cast<QtPanel*>(&parent.peer());
    parent_ = below ? below->dialog_ : nullptr;
    if (parent_) {
        QRect frame = dialog_->outerFrame();
        frame.moveCenter(parent_->frameGeometry().center());
        dialog_->fit(frame);
    }
    makeKeyAndOrderFront();
}

void QtPanel::showLater() {
    QMetaObject::invokeMethod(
        dialog_,
        [dialog = dialog_.data()] {
            guarded("Showing a panel", [dialog] {
                QtPanel* panel = dialog->panel();
                if (!panel || !panel->wanted_) return;
                panel->show(Qt::NonModal);
            });
        },
        Qt::QueuedConnection);
}

void QtPanel::show(Qt::WindowModality modality) {
    ended_ = false;
    if (dialog_->isVisible()) {
        if (modality == Qt::NonModal || dialog_->windowModality() == modality) return;
        dialog_->hide();
    }
    dialog_->setWindowModality(modality);
    dialog_->winId();
    QWindow* own = dialog_->windowHandle();
    QWindow* below = windows_->keyHandle();
    if (below != own) before_ = windows_->keyWindow();
    if (parent_) below = parent_->windowHandle();
    // Where the window manager keeps it above the window that it belongs to, and gives it the keys.
    if (below != own) own->setTransientParent(below);
    if (parent_) parent_->block(*dialog_);
    dialog_->show();
    focusFirst();
    comeToFront();
}

void QtPanel::leaveParent() {
    if (!parent_) return;
    parent_->unblock();
    // Before the sheet goes: the window manager would choose another one then.
    if (dialog_->isActiveWindow()) parent_->activateWindow();
    parent_ = nullptr;
}

void QtPanel::comeToFront() {
    dialog_->raise();
    dialog_->activateWindow();
}

void QtPanel::makeKeyWindow() {
    if (dialog_ && dialog_->isVisible() && windows_) windows_->makeKey(*dialog_->windowHandle());
}

void QtPanel::orderOut() {
    wanted_ = false;
    if (!dialog_ || !dialog_->isVisible()) return;
    QtControls::endEditing(*dialog_);
    if (!dialog_) return;
    const bool hadKeys = dialog_->isActiveWindow();
    leaveParent();
    dialog_->hide();
    const auto before = before_.lock();
    // A command that comes next waits until the window has the keys again.
    if (hadKeys && before && windows_) before->makeKeyWindow();
}

bool QtPanel::mayBeDismissed() {
    const auto kept = panel_.shared_from_this();
    QtControls::endEditing(*dialog_);
    // What that has told somebody may have closed it.
    if (!dialog_ || !dialog_->isVisible()) return false;
    panel_.saveFrame();
    leaveParent();
    return true;
}

void QtPanel::dismissed() {
    wanted_ = false;
    endModal();
    // By what this tells, the panel and this may go.
    panel_.userClosed();
}

void QtPanel::hostDeletedDialog() {
    if (!dialog_ && wanted_ && windows_) dismissed();
}

void QtPanel::runModal() {
    QCoreApplication* application = QCoreApplication::instance();
    if (!application || QCoreApplication::closingDown() || !hasDialog()) return;
    // Entering a loop throws away a request to quit that has been posted and not yet delivered.
    QCoreApplication::sendPostedEvents(application, QEvent::Quit);
    QEventLoop loop;
    const QScopedValueRollback<QEventLoop*> running(loop_, &loop);
    QObject::connect(dialog_, &QObject::destroyed, &loop, &QEventLoop::quit);
    wanted_ = true;
    show(Qt::ApplicationModal);
    loop.exec(QEventLoop::DialogExec);
}

void QtPanel::endModal() {
    if (!loop_) return;
    ended_ = true;
    loop_->quit();
}

}  // namespace velmora
