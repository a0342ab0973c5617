#include "platform/qt/QtPanel.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QGridLayout>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QScopedValueRollback>
#include <QScreen>
#include <algorithm>

#include "platform/qt/QtButton.h"
#include "platform/qt/QtCoordinates.h"
#include "platform/qt/QtGuard.h"
#include "platform/qt/QtWindows.h"

namespace velmora {

namespace {

/// How many letters a field has room for.
constexpr int fieldLength = 28;

Selector commandOfKey(int key) {
    switch (key) {
        case Qt::Key_Escape: return Selector::named("cancel:");
        case Qt::Key_Return:
        case Qt::Key_Enter: return Selector::named("insertNewline:");
        case Qt::Key_Tab: return Selector::named("insertTab:");
        case Qt::Key_Backtab: return Selector::named("insertBacktab:");
        default: return {};
    }
}

/// Offers the keys that are commands to the field's delegate before the widget acts on them.
class FieldCommands final : public QObject {
public:
    FieldCommands(QLineEdit& edit, std::shared_ptr<NSTextField> field,
                  std::function<bool()> takesInput)
        : QObject(&edit), field_(std::move(field)), takesInput_(std::move(takesInput)) {
        edit.installEventFilter(this);
    }

private:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() != QEvent::KeyPress) return false;
        if (!takesInput_()) return true;
        bool dealtWith = false;
        guarded("A command in a field", [&] {
            const Selector command = commandOfKey(static_cast<QKeyEvent*>(event)->key());
            dealtWith = command && field_->userCommanded(command);
        });
        return dealtWith;
    }

    std::shared_ptr<NSTextField> field_;
    std::function<bool()> takesInput_;
};

}  // namespace

class QtPanel::Dialog final : public QDialog {
public:
    explicit Dialog(QtPanel& panel) : panel_(&panel) {}

    /// Null once the panel is gone.
    QtPanel* panel() const { return panel_; }
    void forgetPanel() { panel_ = nullptr; }

    bool takesInput() const { return !panel_ || !panel_->ended_; }

    /// The position of a dialog that has no window yet is that of its frame; a hidden window's is
    /// not, whatever it is moved by.
    void dropHiddenWindow() {
        if (!isVisible() && testAttribute(Qt::WA_WState_Created)) destroy();
    }

    /// Escape, or the button of the title bar.
    void reject() override {
        QDialog::reject();
        guarded("Closing a panel", [this] {
            if (panel_) panel_->dismissed();
        });
    }

private:
    QtPanel* panel_;
};

QtPanel::QtPanel(QtWindows& windows, NSPanel& panel) : windows_(&windows), panel_(panel) {
    windows.addOwn(*this);
    makeDialog();
}

QtPanel::~QtPanel() {
    if (windows_) windows_->removeOwn(*this);
    for (const auto& field : fields_) field->setShowText(nullptr);
    if (!dialog_) return;
    for (const auto& button : buttons_) {
        if (button) button->letGo();
    }
    dialog_->forgetPanel();
    dialog_->hide();
    // Something in it may be in the middle of telling us.
    dialog_->deleteLater();
}

void QtPanel::close() {
    windows_ = nullptr;
    wanted_ = false;
    if (!dialog_) return;
    dialog_->forgetPanel();
    delete dialog_.data();
}

bool QtPanel::hasDialog() {
    if (!dialog_ && windows_) makeDialog();
    return !dialog_.isNull();
}

void QtPanel::makeDialog() {
    fields_.clear();
    dialog_ = new Dialog(*this);
    QtWindows::markAsOwn(*dialog_);
    dialog_->setAttribute(Qt::WA_QuitOnClose, false);
    dialog_->setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                            Qt::WindowCloseButtonHint);
    dialog_->setWindowTitle(QString::fromStdString(panel_.title()));
    new QGridLayout(dialog_);
    shownRows_ = 0;
    buttons_.clear();
    addRows();
}

void QtPanel::addRows() {
    auto& grid = static_cast<QGridLayout&>(*dialog_->layout());
    for (; shownRows_ < panel_.rows().size(); ++shownRows_) {
        addRow(grid, panel_.rows()[shownRows_], static_cast<int>(shownRows_));
    }
    dialog_->adjustSize();
}

void QtPanel::contentChanged() {
    if (!dialog_) return;
    const std::vector<NSControlRef> shown = panel_.controls();
    std::erase_if(buttons_, [&](const QPointer<QtButton>& button) {
        if (button && std::find(shown.begin(), shown.end(), button->button()) != shown.end()) {
            return false;
        }
        if (button) {
            button->letGo();
            button->hide();
            // It may be in the middle of its click.
            button->deleteLater();
        }
        return true;
    });
    addRows();
}

void QtPanel::addRow(QGridLayout& grid, const NSPanel::Row& cells, int row) {
    QLabel* label = nullptr;
    int column = 0;
    for (const NSPanel::Cell& cell : cells) {
        if (const auto* shown = std::get_if<NSPanel::Label>(&cell)) {
            QString text = QString::fromStdString(shown->text);
            // A label that belongs to a field would underline a letter otherwise.
            label = new QLabel(text.replace(QLatin1Char('&'), QLatin1String("&&")), dialog_);
            label->setTextFormat(Qt::PlainText);
            grid.addWidget(label, row, column++);
            continue;
        }
        const auto* control = std::get_if<NSControlRef>(&cell);
        if (!control) continue;
        const auto field = std::dynamic_pointer_cast<NSTextField>(*control);
        if (!field) {
            if (QWidget* widget = makeControl(*control)) grid.addWidget(widget, row, column++);
            continue;
        }
        QLineEdit* edit = makeField(field, label ? label->text() : dialog_->windowTitle());
        if (label) label->setBuddy(edit);
        grid.addWidget(edit, row, column++);
    }
}

QWidget* QtPanel::makeControl(const NSControlRef& control) {
    auto button = std::dynamic_pointer_cast<NSButton>(control);
    if (!button) return nullptr;
    const auto takesInput = [dialog = dialog_.data()] { return dialog->takesInput(); };
    auto* widget = new QtButton(std::move(button), takesInput, dialog_);
    buttons_.emplace_back(widget);
    return widget;
}

QLineEdit* QtPanel::makeField(const std::shared_ptr<NSTextField>& field, const QString& label) {
    auto* edit = new QLineEdit(QString::fromStdString(field->stringValue()), dialog_);
    QString name = label;
    name.replace(QLatin1String("&&"), QLatin1String("&"));
    if (name.endsWith(QLatin1Char(':'))) name.chop(1);
    edit->setAccessibleName(name);
    edit->setMinimumWidth(edit->fontMetrics().averageCharWidth() * fieldLength);
    const auto takesInput = [dialog = dialog_.data()] { return dialog->takesInput(); };
    new FieldCommands(*edit, field, takesInput);
    QObject::connect(edit, &QLineEdit::textChanged, edit, [field, takesInput](const QString& text) {
        if (!takesInput()) return;
        guarded("Typing in a field", [&] { field->userChangedText(text.toStdString()); });
    });
    field->setShowText([shown = QPointer<QLineEdit>(edit)](const std::string& text) {
        if (shown) shown->setText(QString::fromStdString(text));
    });
    if (!firstField_) firstField_ = edit;
    fields_.push_back(field);
    return edit;
}

QMargins QtPanel::decorations() {
    const QWindow* own = dialog_->windowHandle();
    if (own && !own->frameMargins().isNull()) margins_ = own->frameMargins();
    if (!margins_.isNull()) return margins_;
    const auto key =
        windows_ ? std::dynamic_pointer_cast<QtWindow>(windows_->keyWindow()) : nullptr;
    const QWindow* around = key ? key->handle() : nullptr;
    return around ? around->frameMargins() : QMargins();
}

NSRect QtPanel::frame() {
    if (!dialog_) return {};
    if (dialog_->isVisible()) return screenRect(dialog_->frameGeometry());
    const QMargins margins = decorations();
    const QSize size(dialog_->width() + margins.left() + margins.right(),
                     dialog_->height() + margins.top() + margins.bottom());
    return screenRect(QRect(dialog_->pos(), size));
}

void QtPanel::setFrameOrigin(NSPoint origin) {
    if (!hasDialog()) return;
    const NSPoint upperLeft{origin.x, origin.y + frame().size.height};
    dialog_->dropHiddenWindow();
    dialog_->move(globalPoint(upperLeft).toPoint());
}

void QtPanel::center() {
    if (!hasDialog()) return;
    const QWindow* focus = QGuiApplication::focusWindow();
    const QScreen* screen = focus ? focus->screen() : QGuiApplication::primaryScreen();
    if (!screen) return;
    const NSRect available = screenRect(screen->availableGeometry());
    const NSSize size = frame().size;
    setFrameOrigin({available.origin.x + (available.size.width - size.width) / 2,
                    available.origin.y + (available.size.height - size.height) / 2});
}

void QtPanel::makeKeyAndOrderFront() {
    if (!hasDialog()) return;
    wanted_ = true;
    if (dialog_->isVisible()) {
        makeKeyWindow();
        return;
    }
    QMetaObject::invokeMethod(
        dialog_,
        [dialog = dialog_.data()] {
            guarded("Showing a panel", [dialog] {
                QtPanel* panel = dialog->panel();
                if (panel && panel->wanted_) panel->show(Qt::NonModal);
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
    before_ = std::dynamic_pointer_cast<QtWindow>(windows_->keyWindow());
    dialog_->setWindowModality(modality);
    // Where the window manager keeps it above the window that it belongs to, and gives it the keys.
    dialog_->winId();
    const auto before = before_.lock();
    dialog_->windowHandle()->setTransientParent(before ? before->handle() : nullptr);
    dialog_->show();
    makeKeyWindow();
}

void QtPanel::makeKeyWindow() {
    if (!dialog_ || !dialog_->isVisible()) return;
    dialog_->raise();
    dialog_->activateWindow();
    if (!firstField_) return;
    firstField_->setFocus();
    firstField_->selectAll();
}

void QtPanel::orderOut() {
    wanted_ = false;
    if (!dialog_ || !dialog_->isVisible()) return;
    const bool hadKeys = dialog_->isActiveWindow();
    dialog_->hide();
    const auto before = before_.lock();
    // A command that comes next waits until the window has the keys again.
    if (hadKeys && before && windows_) windows_->makeKey(*before);
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

void QtPanel::dismissed() {
    wanted_ = false;
    endModal();
    // By what this tells, the panel and this may go.
    panel_.userClosed();
}

}  // namespace velmora
