#pragma once

#include <QKeyEvent>
#include <QObject>
#include <cstdint>
#include <vector>

#include "platform/appkit/NSMenu.h"

class QShortcutEvent;

namespace velmora {

class QtMenuBars;

/// The keys of the main menu's items, as the layer knows them. The toolkit knows nothing of a key
/// equivalent that an item was given: the host's actions keep their own shortcuts. So a key is
/// offered to the items before the toolkit looks through its shortcuts, and the combination of
/// which an item was deprived is kept from them.
///
/// A key runs an item as a shortcut of the toolkit would: while the item is enabled, in the window
/// whose main menu holds it (and that window's tool windows) unless the action is for the whole
/// application, and again when the key repeats if the action allows that.
class QtMenuKeys {
public:
    explicit QtMenuKeys(QtMenuBars& menuBars) : menuBars_(menuBars) {}

    enum class Answer {
        notOurs,
        /// An item has it. The host is to have neither this event nor the press that follows.
        taken,
        /// No shortcut is to have it: the press that follows is the keyboard focus's.
        plainKey,
    };

    /// A key that has been pressed, before the host's widgets and shortcuts have it.
    Answer offer(QKeyEvent& shortcutOverride);

    /// A press that no shortcut of the host has taken: for the keys with which items of ours come.
    /// True when one has it.
    bool offerLeftOver(QKeyEvent& press);

    /// Whether the shortcut that the toolkit has found is one of which its action's item was
    /// deprived. Several keys in a row get this far.
    bool isDeprived(const QObject& receiver, const QShortcutEvent& event);

private:
    /// An item whose key is not the toolkit's business: one that was given a key equivalent, or
    /// one of ours.
    struct Holder {
        NSMenuItemRef item;
        /// The key with its modifiers as the toolkit writes them; 0 for none.
        int key;
        bool givesWay;
    };
    enum class Claim { given, givingWay };
    void collectHolders();
    void collectHolders(const NSMenu& menu);
    const Holder* holderOf(int key, Claim claim) const;
    bool isDeprived(int key) const;
    NSMenuItemRef otherItemWith(int key, const NSMenu& menu) const;
    bool isInForce(const NSMenuItem& item) const;
    Answer run(const Holder& holder, QKeyEvent& event);
    Answer run(const NSMenuItemRef& item);

    QtMenuBars& menuBars_;
    /// The main menu's holders, in the order of its items, and the state of the menus for which
    /// they were collected.
    std::vector<Holder> holders_;
    const NSMenu* menu_ = nullptr;
    std::uint64_t generation_ = 0;
};

}  // namespace velmora
