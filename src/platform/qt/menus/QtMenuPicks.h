#pragma once

#include <QEvent>
#include <QMenu>
#include <QPoint>
#include <QPointer>

class QKeyEvent;
class QMouseEvent;

namespace velmora {

/// The items that a person picks in the host's own context menus. A pick is offered to the layer as
/// a message of a menu, `performActionForItemAtIndex:`, which others may have taken over; where
/// that comes to the menu's own implementation, the host acts as it does without us. Otherwise the
/// menu closes without having been told of the pick.
///
/// A context menu is any menu that neither a menu bar nor a button has opened: those stand under no
/// stroke. Menus of ours are none, nor is one that is opened unseen for a gesture.
class QtMenuPicks {
public:
    /// For each event of a widget, before the widget has it. True: it has made a pick, which
    /// somebody has taken; the widget is not to have it.
    bool take(QObject& receiver, const QEvent& event) {
        switch (event.type()) {
            case QEvent::Show:
            case QEvent::MouseButtonPress:
            case QEvent::MouseButtonDblClick:
            case QEvent::MouseMove:
            case QEvent::MouseButtonRelease:
            case QEvent::KeyPress: break;
            default: return false;
        }
        auto* menu = qobject_cast<QMenu*>(&receiver);
        return menu && look(*menu, event);
    }

private:
    bool look(QMenu& menu, const QEvent& event);
    void noteMotion(const QMenu& menu, const QMouseEvent& event);
    bool takeRelease(QMenu& menu, const QMouseEvent& event);

    // What a QMenu knows of the mouse and does not tell: the menu in which a button went down or
    // was dragged, and whether the pointer has moved since the last one opened.
    QPointer<const QMenu> pressed_;
    QPointer<const QMenu> opened_;
    QPoint openedAt_;
    int motions_ = 0;
};

}  // namespace velmora
