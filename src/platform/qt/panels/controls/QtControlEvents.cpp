#include "platform/qt/panels/controls/QtControlEvents.h"

#include <QWidget>
#include <bit>

#include "platform/qt/base/ModifierKeys.h"
#include "platform/qt/base/QtCoordinates.h"
#include "platform/qt/base/QtKeys.h"

namespace velmora {

NSEventRef keyEventFor(QKeyEvent& event) {
    auto made = std::make_shared<QtControlEvent>(fieldsForKey(event), event);
    const bool isNone = ModifierKeys::isModifierKey(event.key()) ||
                        made->fields().charactersIgnoringModifiers.empty();
    return isNone ? nullptr : made;
}

NSEventRef pressEventFor(QMouseEvent& event, const QWidget& widget) {
    NSEvent::Fields fields;
    fields.buttonNumber = std::countr_zero(static_cast<unsigned>(event.button()));
    fields.type = event.button() == Qt::LeftButton    ? NSLeftMouseDown
                  : event.button() == Qt::RightButton ? NSRightMouseDown
                                                      : NSOtherMouseDown;
    fields.location = screenPoint(widget.mapToGlobal(event.pos()));
    fields.modifierFlags = flagsForModifiers(event.modifiers());
    fields.timestamp = static_cast<double>(event.timestamp()) / 1000;
    fields.clickCount = event.type() == QEvent::MouseButtonDblClick ? 2 : 1;
    fields.pressure = 1;
    return std::make_shared<QtControlEvent>(std::move(fields), event);
}

}  // namespace velmora
