#include "platform/qt/QtButton.h"

#include <QApplication>
#include <QIconEngine>
#include <QPaintEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QStyle>
#include <QStyleOption>

#include "platform/qt/QtGuard.h"
#include "platform/qt/QtImages.h"

namespace velmora {

namespace {

/// A rectangle of the widget, in coordinates whose origin is its lower left corner.
NSRect flipped(const QRect& rect, int height) {
    return {
        {static_cast<float>(rect.left()), static_cast<float>(height - rect.top() - rect.height())},
        {static_cast<float>(rect.width()), static_cast<float>(rect.height())}};
}

}  // namespace

/// The button's picture as an icon. The toolkit keeps pixmaps of its own icons in a cache that it
/// shares with all of the host; pictures that are seen once would drive the host's out of it.
class QtButton::Picture final : public QIconEngine {
public:
    explicit Picture(std::weak_ptr<NSButton> button) : button_(std::move(button)) {}

    QIconEngine* clone() const override { return new Picture(button_); }

    /// `size` counts pixels of the display.
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State /*state*/) override {
        const auto button = button_.lock();
        const NSImageRef image = button ? button->image() : nullptr;
        if (!image || image->bitmap().width == 0) return {};
        QPixmap pixmap = pixmapFromImage(*image, qreal(size.width()) / image->bitmap().width);
        pixmap.setDevicePixelRatio(1);
        if (mode != QIcon::Disabled) return pixmap;
        QStyleOption option;
        option.palette = QGuiApplication::palette();
        return QApplication::style()->generatedIconPixmap(mode, pixmap, &option);
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
               QIcon::State state) override {
        const qreal ratio = painter->device()->devicePixelRatioF();
        painter->drawPixmap(rect, pixmap(rect.size() * ratio, mode, state));
    }

private:
    std::weak_ptr<NSButton> button_;
};

QtButton::QtButton(std::shared_ptr<NSButton> button, std::function<bool()> takesInput,
                   QWidget* parent)
    : QPushButton(parent), button_(std::move(button)) {
    // Return belongs to the field that is typed in.
    setAutoDefault(false);
    button_->setPeer(this);
    needsDisplay();
    connect(this, &QPushButton::clicked, this, [this, takesInput = std::move(takesInput)] {
        const auto kept = button_;
        if (!kept || !takesInput()) return;
        guarded("A click on a button", [&] { kept->performClick(nullptr); });
    });
}

QtButton::~QtButton() {
    letGo();
}

void QtButton::letGo() {
    if (button_ && button_->peer() == this) button_->setPeer(nullptr);
    button_ = nullptr;
}

void QtButton::draw() {
    if (painting_) QPushButton::paintEvent(painting_);
}

void QtButton::needsDisplay() {
    const NSCellImagePosition position = button_->imagePosition();
    const QString title = QString::fromStdString(button_->title());
    QString shown = position == NSImageOnly ? QString() : title;
    shown.replace(QLatin1Char('&'), QLatin1String("&&"));
    if (text() != shown) setText(shown);
    if (accessibleName() != title) setAccessibleName(title);
    setEnabled(button_->isEnabled());
    const NSImageRef image = position == NSNoImage ? nullptr : button_->image();
    if (!image) return setIcon(QIcon());
    const NSSize size = button_->imageSize().value_or(image->size());
    const QSize iconSize(qRound(size.width), qRound(size.height));
    if (this->iconSize() != iconSize) setIconSize(iconSize);
    // The one icon shows whatever picture the button has, so a new picture moves nothing.
    if (icon().isNull()) setIcon(QIcon(new Picture(button_)));
    update();
}

void QtButton::paintEvent(QPaintEvent* event) {
    const auto kept = button_;
    if (!kept) return QPushButton::paintEvent(event);
    const QScopedValueRollback<QPaintEvent*> painting(painting_, event);
    guarded("Drawing a button", [&] { kept->drawRect(flipped(event->rect(), height())); });
}

}  // namespace velmora
