#include "platform/qt/panels/controls/QtCellIcon.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QStyle>
#include <QStyleOption>

#include "platform/appkit/controls/NSButtonCell.h"
#include "platform/qt/base/QtImages.h"

namespace velmora {

namespace {

NSImageRef imageOf(const NSCell& cell) {
    const auto* button = dynamic_cast<const NSButtonCell*>(&cell);
    return button ? button->shownImage() : cell.image();
}

/// The toolkit keeps pixmaps of its own icons in a cache that it shares with all of the host;
/// pictures that are seen once would drive the host's out of it.
class CellIcon final : public QIconEngine {
public:
    explicit CellIcon(std::weak_ptr<NSCell> cell) : cell_(std::move(cell)) {}

    QIconEngine* clone() const override { return new CellIcon(cell_); }

    /// `size` counts pixels of the display.
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State /*state*/) override {
        const auto cell = cell_.lock();
        const NSImageRef image = cell ? imageOf(*cell) : nullptr;
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
    std::weak_ptr<NSCell> cell_;
};

}  // namespace

QIcon cellIcon(const NSCellRef& cell) {
    return QIcon(new CellIcon(cell));
}

QSize cellIconSize(const NSCell& cell) {
    const NSImageRef image = imageOf(cell);
    const NSSize size = cell.imageSize().value_or(image ? image->size() : NSSize());
    return {qRound(size.width), qRound(size.height)};
}

}  // namespace velmora
