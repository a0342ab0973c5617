#include "platform/qt/input/EventHook.h"

#include <QApplication>
#include <QCursor>
#include <QMenu>
#include <QMenuBar>
#include <QScopedValueRollback>
#include <QShortcutEvent>
#include <QThread>

#include "platform/appkit/NSApplication.h"
#include "platform/qt/base/QtGuard.h"
#include "platform/qt/input/X11PressedWindow.h"
#include "platform/qt/menus/QtMenuBars.h"

namespace velmora {

namespace {

EventHook* installed = nullptr;

bool mayBringMenuBar(const QObject* receiver, const QEvent* event) {
    if (event->type() == QEvent::Show) return receiver->isWidgetType();
    return event->type() == QEvent::ActionAdded && qobject_cast<const QMenuBar*>(receiver);
}

/// What ends every loop that waits for the end of a stroke or a scrolling, without anything being
/// run: a key.
NSEventRef fetchEnd() {
    NSEvent::Fields fields;
    fields.type = NSKeyUp;
    return std::make_shared<NSEvent>(std::move(fields));
}

/// An open menu has the keys; who waits for the end of a stroke has them before.
bool belongsToOpenMenu(const QKeyEvent& event) {
    return !ModifierKeys::isModifierKey(event.key()) && !NSApp().isFetching() &&
           qobject_cast<const QMenu*>(QApplication::activePopupWidget());
}

}  // namespace

EventHook::EventHook(QtMenuBars& menuBars, QtWindows& windows)
    : menuBars_(menuBars),
      thread_(QThread::currentThreadId()),
      translator_(windows),
      queue_(panelKeys_),
      held_(translator_) {
    leftOvers_.setSingleShot(true);
    connect(&leftOvers_, &QTimer::timeout, this, [this] { deliverLeftOvers(); });
    installed = this;
    registered_ = QInternal::registerCallback(QInternal::EventNotifyCallback, &callback);
    if (!registered_) qApp->installEventFilter(this);
}

EventHook::~EventHook() {
    if (registered_) QInternal::unregisterCallback(QInternal::EventNotifyCallback, &callback);
    installed = nullptr;
}

void EventHook::watchForMenuBar(std::function<void()> mayHaveCome) {
    menuBarMayHaveCome_ = std::move(mayHaveCome);
}

void EventHook::takeInput() {
    menuBarMayHaveCome_ = nullptr;
    takesInput_ = true;
}

// Qt hands over the receiver, the event and a place for the result. True: the event is done with.
bool EventHook::callback(void** data) {
    auto* receiver = static_cast<QObject*>(data[0]);
    auto* event = static_cast<QEvent*>(data[1]);
    if (!installed || installed->look(receiver, event) == Outcome::Passed) return false;
    *static_cast<bool*>(data[2]) = true;
    return true;
}

bool EventHook::eventFilter(QObject* receiver, QEvent* event) {
    return look(receiver, event) == Outcome::Kept;
}

EventHook::Outcome EventHook::look(QObject* receiver, QEvent* event) {
    if (retired_ || QThread::currentThreadId() != thread_) return Outcome::Passed;
    Outcome outcome = Outcome::Passed;
    guarded("EventHook", [&] {
        menuBars_.noticeEvent(receiver, event);
        forgetPressedWindow(*receiver, *event);
        if (takesInput_) {
            if (event->type() == QEvent::WindowBlocked && NSApp().isFetching()) {
                hostLoopBegins();
            } else if (event->type() == QEvent::Shortcut) {
                const auto& shortcut = static_cast<const QShortcutEvent&>(*event);
                if (menuBars_.keys().isDeprived(*receiver, shortcut)) {
                    outcome = Outcome::Kept;
                    tellOfUseOfAlt();
                }
            } else if (receiver->isWindowType() && event->spontaneous()) {
                outcome = input(static_cast<QWindow&>(*receiver), *event);
            } else if (receiver->isWidgetType() && picks_.take(*receiver, *event)) {
                event->accept();
                outcome = Outcome::Kept;
            }
        } else if (menuBarMayHaveCome_ && mayBringMenuBar(receiver, event)) {
            menuBarMayHaveCome_();
        }
        if (outcome == Outcome::Passed && QtPanelKeys::isKey(*event) &&
            panelKeys_.deliver(*receiver, *event)) {
            outcome = Outcome::Kept;
        }
    });
    return outcome;
}

EventHook::Outcome EventHook::input(QWindow& window, QEvent& event) {
    Outcome outcome = Outcome::Passed;
    switch (event.type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
            if (queue_.sends(&event)) return Outcome::Passed;
            outcome = mouse(window, static_cast<QMouseEvent&>(event));
            break;
        case QEvent::ShortcutOverride:
        case QEvent::KeyPress: outcome = keyDown(window, static_cast<QKeyEvent&>(event)); break;
        case QEvent::KeyRelease:
            if (queue_.sends(&event)) return Outcome::Passed;
            outcome = take(translator_.keyEvent(window, static_cast<QKeyEvent&>(event)));
            break;
        default: return Outcome::Passed;
    }
    // An override that nobody accepts goes on to the host's shortcuts; another event may be turned
    // into one of a touch screen.
    if (outcome == Outcome::Kept) {
        event.accept();
        if (static_cast<const QInputEvent&>(event).modifiers() & Qt::AltModifier) tellOfUseOfAlt();
    }
    return outcome;
}

void EventHook::tellOfUseOfAlt() {
    // Once Alt has gone down, a menu bar watches all events of the application, whatever their
    // receiver. This kind tells it that something else has happened, and tells others nothing.
    QEvent event(QEvent::ActivationChange);
    QCoreApplication::sendEvent(this, &event);
}

EventHook::Outcome EventHook::mouse(QWindow& window, QMouseEvent& event) {
    if (event.type() == QEvent::MouseButtonDblClick) {
        return outcomeOf(press_, event.timestamp(), event.button()).value_or(Outcome::Passed);
    }
    if (event.type() == QEvent::MouseButtonRelease) noteReleaseForTrace();
    const quint64 timestamp = event.timestamp();
    const auto button = static_cast<int>(event.button());
    const bool pressed = event.type() == QEvent::MouseButtonPress;
    const Outcome outcome = take(translator_.mouseEvent(window, event));
    if (pressed) press_ = Decision{timestamp, button, outcome};
    return outcome;
}

EventHook::Outcome EventHook::keyDown(QWindow& window, QKeyEvent& event) {
    const bool sentAnew = queue_.sends(&event);
    if (belongsToOpenMenu(event)) return Outcome::Passed;
    const bool isPress = event.type() == QEvent::KeyPress;
    std::optional<Outcome> outcome;
    if (isPress) outcome = outcomeOf(override_, event.timestamp(), event.key());
    if (!outcome && sentAnew) outcome = Outcome::Passed;
    if (!outcome) outcome = take(translator_.keyEvent(window, event));
    if (*outcome == Outcome::Kept && isPress) return Outcome::Kept;
    const QScopedValueRollback<bool> offering(offering_, true);
    if (isPress) {
        return menuBars_.keys().offerLeftOver(event) ? Outcome::Kept : Outcome::Passed;
    }
    return offerToMenus(event, *outcome);
}

/// What the host is to have goes to the menus' key equivalents first.
EventHook::Outcome EventHook::offerToMenus(QKeyEvent& shortcutOverride, Outcome outcome) {
    using Answer = QtMenuKeys::Answer;
    const Decision decision{shortcutOverride.timestamp(), shortcutOverride.key(), outcome};
    Answer answer = Answer::notOurs;
    if (outcome == Outcome::Passed) answer = menuBars_.keys().offer(shortcutOverride);
    override_ = decision;
    if (answer == Answer::taken) {
        override_->outcome = Outcome::Kept;
        queue_.keyWasTaken();
    }
    // An override that is kept is accepted, which keeps it from the shortcuts too.
    return answer == Answer::notOurs ? outcome : Outcome::Kept;
}

std::optional<EventHook::Outcome> EventHook::outcomeOf(std::optional<Decision>& decision,
                                                       quint64 timestamp, int code) {
    if (!decision || decision->timestamp != timestamp || decision->code != code) return {};
    const Outcome outcome = decision->outcome;
    decision.reset();
    return outcome;
}

EventHook::Outcome EventHook::take(const QtEventRef& event) {
    const std::vector<QtEventRef> lost = held_.note(event);
    noteRelease(*event);
    if (NSApp().isFetching()) {
        if (wait_.isWaiting()) {
            for (const QtEventRef& release : lost) NSApp().postEvent(release);
            NSApp().postEvent(event);
            wait_.wake();
            return Outcome::Kept;
        }
        hostLoopBegins();
        if (endsPressInDelivery(*event)) {
            forFetch_.push_back(event);
            return Outcome::Kept;
        }
    }
    Delivery delivery{*event, queue_.isEmpty(), false, delivery_, {}, false};
    if (const QtMouse* mouse = event->original().mouse();
        mouse && mouse->type == QEvent::MouseButtonPress) {
        delivery.pointer = mouse->global;
    }
    const QScopedValueRollback<Delivery*> delivering(delivery_, &delivery);
    NSApp().postEvent(event);
    NSApp().deliverEvents();
    return delivery.passed ? Outcome::Passed : Outcome::Kept;
}

void EventHook::noteRelease(const QtEvent& event) {
    const QtMouse* mouse = event.original().mouse();
    if (!delivery_ || !mouse || mouse->type != QEvent::MouseButtonRelease) return;
    const QtMouse* press = delivery_->event.original().mouse();
    if (!press || press->button != mouse->button) return;
    delivery_->pointer = mouse->global;
    delivery_->released = true;
}

std::optional<QPointF> EventHook::pressLocation() const {
    return delivery_ ? delivery_->pointer : std::nullopt;
}

QPointF EventHook::pointerLocation() const {
    return pressLocation().value_or(QCursor::pos());
}

bool EventHook::endsPressInDelivery(const QtEvent& event) const {
    const QtMouse* mouse = event.original().mouse();
    if (!mouse || mouse->type != QEvent::MouseButtonRelease) return false;
    for (const Delivery* delivery = delivery_; delivery; delivery = delivery->outer) {
        const QtMouse* press = delivery->event.original().mouse();
        if (press && press->type == QEvent::MouseButtonPress && press->button == mouse->button) {
            return !delivery->passed;
        }
    }
    return false;
}

void EventHook::dispatch(const QtEvent& event) {
    if (delivery_ && delivery_->open && delivery_->event.isSameEvent(event) && queue_.isEmpty()) {
        delivery_->passed = true;
    } else {
        queue_.append(event);
    }
}

void EventHook::closeDeliveries() {
    for (Delivery* delivery = delivery_; delivery; delivery = delivery->outer) {
        delivery->open = false;
        if (!delivery->passed) continue;
        // Qt would have it only after everything that comes now.
        delivery->passed = false;
        queue_.append(delivery->event);
    }
}

void EventHook::hostLoopBegins() {
    // Nothing else may come that ends a tracking; it is for the fetch that waits under the loop.
    if (hostLoopBegan_ && hostLoopBegan_()) forFetch_.push_back(fetchEnd());
}

void EventHook::wait(Time deadline) {
    closeDeliveries();
    if (delivery_ && !delivery_->released) delivery_->pointer.reset();
    for (NSEventRef& event : std::exchange(forFetch_, {})) NSApp().postEvent(std::move(event));
    for (NSEventRef& event : held_.released(steadyNow())) NSApp().postEvent(std::move(event));
    if (!NSApp().hasEvents() && !letHostGoOn(deadline)) NSApp().postEvent(fetchEnd());
    if (NSApp().hasEvents()) leftOvers_.start(0);
}

bool EventHook::letHostGoOn(Time deadline) {
    if (!held_.isEmpty()) deadline = std::min(deadline, steadyNow() + HeldInput::lookInterval);
    bool hostGoesOn = false;
    guarded("A wait for events", [&] { hostGoesOn = wait_.wait(deadline); });
    return hostGoesOn;
}

bool EventHook::endWait() {
    if (!wait_.isWaiting()) return false;
    wait_.wake();
    return true;
}

void EventHook::deliverLeftOvers() {
    // Whoever fetches has them soon. Else nobody has taken them.
    if (!NSApp().isFetching()) guarded("EventHook", [] { NSApp().deliverEvents(); });
}

}  // namespace velmora
