#pragma once

#include <QAction>
#include <QKeySequence>
#include <QMenuBar>
#include <QPointer>
#include <unordered_map>
#include <vector>

#include "platform/foundation/Time.h"
#include "platform/qt/QtKeys.h"

class QShortcutEvent;

namespace velmora {

/// The shortcuts of the host's actions as key equivalents of menu items, read and written. Of an
/// action's shortcuts the first is the one that its item shows; the others stay the host's. What
/// was written stands in the action only as long as the host does not look: while a window closes,
/// its actions have the host's own shortcuts.
class QtShortcuts {
public:
    /// What was written last, if it stands there or waits for its window to be used again; else
    /// what the host has given the action.
    KeyEquivalent read(const QAction& action);

    enum class Outcome {
        done,
        /// The host has put its own back at once: whoever has read the action is to read it again.
        contested,
        /// The host has put its own back again and again, and is left alone for a while.
        leftAlone,
    };

    /// The action stands in that bar, or in a menu below it. A key that the toolkit does not know
    /// is not written.
    Outcome write(QAction& action, const KeyEquivalent& equivalent, QMenuBar* bar);

    /// The action that is being written; null most of the time. Its changes are no news.
    const QAction* written() const { return written_; }

    /// The host may save its shortcuts now: it gets its own back, also of what is written from here
    /// on. The window has a menu bar; null stands for all windows.
    void giveBack(const QWidget* window);

    /// A user acts in the window, which has a menu bar: it was not closed after all, and what was
    /// written is in force.
    void takeAgain(const QWidget& window);
    bool hasGivenBack() const { return quitting_ || !closed_.empty(); }

    /// Of several owners of one combination the toolkit runs none; runs ours, if the active window
    /// has one. True when there was one: the event is done with.
    bool settle(const QShortcutEvent& event);

private:
    /// What an action shows: its shortcuts and, where that names one too, its text.
    struct Look {
        QList<QKeySequence> shortcuts;
        QString text;
    };
    struct Record {
        QPointer<QAction> action;
        QPointer<QMenuBar> bar;
        KeyEquivalent equivalent;
        /// The first shortcut is the one for the equivalent, unless that is none.
        Look ours;
        Look hosts;
        bool givenBack = false;
        /// How often in a row the host has put its own back.
        int lost = 0;
        Time lastLost{};
        /// It did so at once, the last time.
        bool contested = false;
    };
    Record* find(const QAction& action);
    bool isTooOften(Record& record);
    bool isGivenBack(const QMenuBar* bar) const;
    void show(QAction& action, const Look& from, const Look& to);
    std::vector<QPointer<QAction>> actionsOf(const QWidget* window, bool givenBack);
    void removeDeleted();

    std::unordered_map<const QAction*, Record> records_;
    const QAction* written_ = nullptr;
    /// The windows that were closed and not used since.
    std::vector<QPointer<const QWidget>> closed_;
    bool quitting_ = false;
};

}  // namespace velmora
