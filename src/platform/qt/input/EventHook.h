#pragma once

#include <QObject>
#include <QPointF>
#include <QTimer>
#include <functional>
#include <optional>
#include <vector>

#include "platform/port/Time.h"
#include "platform/qt/base/QtEvent.h"
#include "platform/qt/input/EventTranslator.h"
#include "platform/qt/input/FetchWait.h"
#include "platform/qt/input/HeldInput.h"
#include "platform/qt/input/HostQueue.h"
#include "platform/qt/menus/QtMenuPicks.h"
#include "platform/qt/panels/QtPanelKeys.h"

namespace velmora {

class QtMenuBars;
class QtWindows;

/// Where the host's events pass us, before the host's own code has them. Input of the host's
/// windows goes through the layer, and what is passed on goes back to the host; everything else is
/// only looked at. There is one a process, on the thread of the user interface.
class EventHook final : public QObject {
public:
    EventHook(QtMenuBars& menuBars, QtWindows& windows);
    ~EventHook() override;

    /// Until input is taken: called when something has come that may be the first window or menu
    /// bar.
    void watchForMenuBar(std::function<void()> mayHaveCome);

    /// Called when the host blocks a window inside a fetch or gets input in a loop of its own
    /// there, as for a dialog: the pointer and its cursor are to be the host's. When it says that
    /// somebody had the pointer, what they wait for ends with the loop.
    void watchForHostLoops(std::function<bool()> began) { hostLoopBegan_ = std::move(began); }

    /// From here on input goes through the layer.
    void takeInput();

    /// From here on nothing is looked at any more, and every event is left to Qt.
    void retire() { retired_ = true; }

    /// As Desktop::dispatchEvent: at once by leaving the event to Qt, if it is the one that the
    /// hook was called with and nothing came between; else in its turn.
    void dispatch(const QtEvent& event);

    /// Whether the toolkit is in the middle of an event that it has given us.
    bool isDelivering() const { return delivery_ != nullptr || offering_; }

    /// As Desktop::wait.
    void wait(Time deadline);

    /// Lets a wait return. False when none runs, or the host has begun a loop inside it.
    bool endWait();

    /// Where the pointer is, on the whole screen. For who deals with a press of a button: where
    /// that was, until something is waited for, and where the release was, once it has come; the
    /// host may have been busy, and the pointer may have gone on.
    QPointF pointerLocation() const;

    /// As above for a press or a release; nothing for any other event.
    std::optional<QPointF> pressLocation() const;

private:
    enum class Outcome { Passed, Kept };

    /// An event for as long as the hook's own call lasts.
    struct Delivery {
        const QtEvent& event;
        /// The host can have the event by leaving it to Qt.
        bool open = true;
        bool passed = false;
        Delivery* outer = nullptr;
        std::optional<QPointF> pointer;
        bool released = false;
    };

    /// What became of an event to which another one of Qt's belongs: a shortcut override, which the
    /// key press follows; a press that is followed by a double click.
    struct Decision {
        quint64 timestamp;
        int code;
        Outcome outcome;
    };

    static bool callback(void** data);
    bool eventFilter(QObject* receiver, QEvent* event) override;
    Outcome look(QObject* receiver, QEvent* event);
    Outcome input(QWindow& window, QEvent& event);
    /// Alt was held for an event that the host does not get: letting it go shall not open the menu
    /// bar.
    void tellOfUseOfAlt();
    Outcome mouse(QWindow& window, QMouseEvent& event);
    Outcome keyDown(QWindow& window, QKeyEvent& event);
    Outcome offerToMenus(QKeyEvent& shortcutOverride, Outcome outcome);
    Outcome take(const QtEventRef& event);
    void noteRelease(const QtEvent& event);
    bool endsPressInDelivery(const QtEvent& event) const;
    void closeDeliveries();
    void hostLoopBegins();
    bool letHostGoOn(Time deadline);
    void deliverLeftOvers();

    static std::optional<Outcome> outcomeOf(std::optional<Decision>& decision, quint64 timestamp,
                                            int code);

    QtMenuBars& menuBars_;
    Qt::HANDLE thread_;
    bool registered_ = false;
    bool takesInput_ = false;
    bool retired_ = false;
    std::function<void()> menuBarMayHaveCome_;
    std::function<bool()> hostLoopBegan_;

    EventTranslator translator_;
    QtPanelKeys panelKeys_;
    HostQueue queue_;
    HeldInput held_;
    FetchWait wait_;
    QtMenuPicks picks_;
    QTimer leftOvers_;
    Delivery* delivery_ = nullptr;
    /// What a fetch is to have that waits under a loop of the host's own.
    std::vector<NSEventRef> forFetch_;
    bool offering_ = false;
    std::optional<Decision> press_;
    std::optional<Decision> override_;
};

}  // namespace velmora
