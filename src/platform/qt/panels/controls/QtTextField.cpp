#include "platform/qt/panels/controls/QtTextField.h"

#include <QKeyEvent>
#include <QSignalBlocker>

#include "platform/qt/base/QtGuard.h"

namespace velmora {

namespace {

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

}  // namespace

QtTextField::QtTextField(std::shared_ptr<NSTextField> field, std::function<bool()> takesInput,
                         QWidget* parent)
    : QLineEdit(parent), field_(std::move(field)), takesInput_(std::move(takesInput)) {
    field_->setPeer(this);
    needsDisplay();
    connect(this, &QLineEdit::textChanged, this, [this](const QString& text) {
        const auto kept = field_;
        if (!kept || !takesInput_()) return;
        guarded("Typing in a field", [&] { kept->userChangedText(text.toStdString()); });
    });
    connect(this, &QLineEdit::editingFinished, this, [this] { endEditing(); });
}

QtTextField::~QtTextField() {
    letGo();
}

void QtTextField::letGo() {
    if (field_ && field_->peer() == this) field_->setPeer(nullptr);
    field_ = nullptr;
}

void QtTextField::endEditing() {
    const auto kept = field_;
    if (!kept || !takesInput_()) return;
    guarded("The end of typing in a field", [&] { kept->userEndedEditing(); });
}

void QtTextField::needsDisplay() {
    if (!field_) return;
    const QString shown = QString::fromStdString(field_->stringValue());
    setReadOnly(!field_->isEditable());
    setEnabled(field_->isEnabled());
    if (text() == shown) return;
    const QSignalBlocker silent(this);
    setText(shown);
}

bool QtTextField::takeCommand(int key) {
    const auto kept = field_;
    if (!kept || !takesInput_()) return true;
    bool dealtWith = false;
    guarded("A command in a field", [&] {
        const Selector command = commandOfKey(key);
        dealtWith = command && kept->userCommanded(command);
    });
    return dealtWith;
}

bool QtTextField::event(QEvent* event) {
    const bool forNobody =
        event->type() == QEvent::KeyPress && takeCommand(static_cast<QKeyEvent*>(event)->key());
    return forNobody || QLineEdit::event(event);
}

}  // namespace velmora
