#include "platform/qt/panels/controls/QtTextArea.h"

#include <QApplication>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <QTextDocument>

#include "platform/qt/base/QtFonts.h"
#include "platform/qt/base/QtGuard.h"

namespace velmora {

namespace {

/// In letters and lines.
constexpr int smallestWidth = 36;
constexpr int smallestHeight = 10;
constexpr int usualWidth = 64;
constexpr int usualHeight = 20;
constexpr int tabWidth = 4;

/// All of it as it is: what the toolkit calls plain text has blanks in place of non-breaking ones.
std::string textOf(const QTextDocument& document) {
    QString text = document.toRawText();
    text.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
    text.replace(QChar::LineSeparator, QLatin1Char('\n'));
    return text.toStdString();
}

}  // namespace

QtTextArea::QtTextArea(std::shared_ptr<NSTextView> area, std::function<bool()> takesInput,
                       QWidget* parent)
    : QPlainTextEdit(parent), area_(std::move(area)), takesInput_(std::move(takesInput)) {
    area_->setPeer(this);
    needsDisplay();
    connect(this, &QPlainTextEdit::textChanged, this, [this] { changed(); });
}

QtTextArea::~QtTextArea() {
    letGo();
}

void QtTextArea::letGo() {
    if (area_ && area_->peer() == this) area_->setPeer(nullptr);
    area_ = nullptr;
}

void QtTextArea::changed() {
    const auto kept = area_;
    if (!kept || !takesInput_()) return;
    guarded("Typing in a text area", [&] {
        shown_ = textOf(*document());
        kept->userChangedText(shown_);
    });
}

void QtTextArea::needsDisplay() {
    if (!area_) return;
    setReadOnly(!area_->isEditable());
    setTabChangesFocus(!area_->isEditable());
    setEnabled(area_->isEnabled());
    showFont();
    if (area_->string() == shown_) return;
    shown_ = area_->string();
    const QSignalBlocker silent(this);
    setPlainText(QString::fromStdString(shown_));
}

void QtTextArea::showFont() {
    if (!area_->font()) return;
    const QFont font = qtFont(*area_->font(), QApplication::font(this));
    if (this->font() == font) return;
    setFont(font);
    setTabStopDistance(tabWidth * QFontMetricsF(font).horizontalAdvance(QLatin1Char(' ')));
}

QSize QtTextArea::roomFor(int letters, int lines) const {
    const QFontMetrics metrics = fontMetrics();
    return {metrics.averageCharWidth() * letters, metrics.lineSpacing() * lines};
}

QSize QtTextArea::minimumSizeHint() const {
    return roomFor(smallestWidth, smallestHeight);
}

QSize QtTextArea::sizeHint() const {
    return roomFor(usualWidth, usualHeight);
}

bool QtTextArea::leave(bool forward) {
    // While Tab is the text's own, the widget would not let go.
    const bool before = tabChangesFocus();
    setTabChangesFocus(true);
    const bool left = focusNextPrevChild(forward);
    setTabChangesFocus(before);
    return left;
}

bool QtTextArea::event(QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        const bool leaves = (key->modifiers() & Qt::ControlModifier) != 0;
        // Another Tab than these is the text's own, or already goes where it should.
        if (leaves && key->key() == Qt::Key_Tab) return leave(true);
        if (key->key() == Qt::Key_Backtab) return leave(false);
        // Where there is a text to lose, the panel has only the next one.
        const bool isEscape = key->key() == Qt::Key_Escape && key->modifiers() == Qt::NoModifier;
        if (isEscape && !isReadOnly() && leave(false)) return true;
    }
    return QPlainTextEdit::event(event);
}

}  // namespace velmora
