#include "platform/qt/QtDrawnWindow.h"

#include <QApplication>
#include <QBitmap>
#include <QPainter>

#include "platform/qt/QtCoordinates.h"
#include "platform/qt/QtDrawing.h"
#include "platform/qt/QtGuard.h"
#include "platform/qt/QtWindows.h"

namespace velmora {

namespace {

bool windowsCanBePlaced() {
    return !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

}  // namespace

class QtDrawnWindow::Canvas final : public QWidget {
public:
    Canvas(QtDrawnWindow& owner, QWidget* around, bool shaped)
        : QWidget(around), owner_(owner), shaped_(shaped) {
        QtWindows::markAsOwn(*this);
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setAttribute(Qt::WA_NoSystemBackground);
        setFocusPolicy(Qt::NoFocus);
        if (around) return;
        Qt::WindowFlags flags = Qt::Tool | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus |
                                Qt::WindowTransparentForInput | Qt::NoDropShadowWindowHint |
                                Qt::BypassWindowManagerHint;
        if (owner.staysOnTop_) flags |= Qt::WindowStaysOnTopHint;
        setWindowFlags(flags);
        setAttribute(Qt::WA_ShowWithoutActivating);
        setAttribute(Qt::WA_QuitOnClose, false);
        if (!shaped) setAttribute(Qt::WA_TranslucentBackground);
    }

    bool isShaped() const { return shaped_; }

    void drawn() {
        if (shaped_) shape();
        update();
    }

private:
    void paintEvent(QPaintEvent* /*event*/) override {
        guarded("Drawing a window of ours", [this] {
            QPainter painter(this);
            painter.setRenderHint(QPainter::Antialiasing, !shaped_);
            if (parentWidget()) painter.setOpacity(static_cast<double>(owner_.alpha_));
            paint(painter);
        });
    }

    void paint(QPainter& painter) {
        const QPointF lowerLeft = globalPoint(owner_.frame_.origin) - mapToGlobal(QPoint(0, 0));
        painter.setTransform(QTransform(1, 0, 0, -1, lowerLeft.x(), lowerLeft.y()), true);
        // The window is cleared already, and in the host's own window nothing is to be cleared.
        DisplayList strokes;
        for (const auto& operation : owner_.list_) {
            if (std::holds_alternative<StrokeOperation>(operation)) strokes.push_back(operation);
        }
        play(strokes, painter);
    }

    void shape() {
        QImage picture(size() * devicePixelRatioF(), QImage::Format_ARGB32_Premultiplied);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.scale(devicePixelRatioF(), devicePixelRatioF());
        paint(painter);
        painter.end();
        QPixmap mask = QPixmap::fromImage(picture.scaled(size()));
        setMask(mask.mask());
    }

    QtDrawnWindow& owner_;
    bool shaped_;
};

QtDrawnWindow::QtDrawnWindow(bool staysOnTop) : staysOnTop_(staysOnTop) {}

QtDrawnWindow::~QtDrawnWindow() {
    if (QCoreApplication::instance()) delete canvas_.data();
}

QtDrawnWindow::Canvas* QtDrawnWindow::canvas() {
    if (!QCoreApplication::instance() || QCoreApplication::closingDown()) return nullptr;
    if (canvas_) return canvas_;
    if (windowsCanBePlaced()) {
        const bool translucent =
            QGuiApplication::platformName() != QLatin1String("xcb") || server_.hasCompositor();
        canvas_ = new Canvas(*this, nullptr, !translucent);
    } else if (QWidget* around = QApplication::activeWindow()) {
        canvas_ = new Canvas(*this, around, false);
    }
    return canvas_;
}

void QtDrawnWindow::place() {
    if (!canvas_) return;
    const NSRect frame = frame_;
    const QPointF upperLeft = globalPoint({frame.origin.x, frame.origin.y + frame.size.height});
    const QRect area = QRectF(upperLeft, QSizeF(static_cast<double>(frame.size.width),
                                                static_cast<double>(frame.size.height)))
                           .toAlignedRect();
    const QWidget* around = canvas_->parentWidget();
    canvas_->setGeometry(around ? QRect(around->mapFromGlobal(area.topLeft()), area.size()) : area);
}

void QtDrawnWindow::setFrame(NSRect frame) {
    frame_ = frame;
    place();
}

void QtDrawnWindow::setAlphaValue(float alpha) {
    alpha_ = alpha;
    if (!canvas_) return;
    if (canvas_->parentWidget()) {
        canvas_->update();
    } else {
        canvas_->setWindowOpacity(static_cast<double>(alpha));
    }
}

void QtDrawnWindow::orderFront() {
    // A compositing manager may have come or gone, and another window of the host be active.
    delete canvas_.data();
    if (!canvas()) return;
    place();
    setAlphaValue(alpha_);
    canvas_->drawn();
    canvas_->show();
    canvas_->raise();
}

void QtDrawnWindow::orderOut() {
    if (canvas_) canvas_->hide();
}

void QtDrawnWindow::show(DisplayList list) {
    list_ = std::move(list);
    if (canvas_) canvas_->drawn();
}

}  // namespace velmora
