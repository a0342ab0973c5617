#include "replay/ScreenPicture.h"

#include <utility>

#include "platform/appkit/drawing/NSCursor.h"
#include "platform/headless/HeadlessDesktop.h"

namespace velmora {

namespace {

constexpr NSColor background{0.45F, 0.5F, 0.55F, 1};
constexpr NSColor edge{0.3F, 0.3F, 0.3F, 1};
constexpr NSColor titleBar{0.75F, 0.75F, 0.75F, 1};
constexpr NSColor content{0.95F, 0.95F, 0.95F, 1};
constexpr float titleBarHeight = 20;

void drawFrame(Canvas& canvas, NSRect frame) {
    canvas.fill(frame, edge);
    NSRect inside{{frame.origin.x + 1, frame.origin.y + 1},
                  {frame.size.width - 2, frame.size.height - 2}};
    canvas.fill(inside, titleBar);
    inside.size.height -= titleBarHeight;
    canvas.fill(inside, content);
}

}  // namespace

std::optional<Bitmap> ScreenPicture::takeIfNew(HeadlessDesktop& desktop) {
    const std::shared_ptr<const NSCursor> cursor = desktop.shownCursor();
    const bool showsSomething =
        !desktop.drawnWindows().empty() || desktop.frontPanel() != nullptr || cursor != nullptr;
    const bool showedSomething = std::exchange(showedSomething_, showsSomething);
    if (!showsSomething && !showedSomething) return std::nullopt;

    Canvas canvas(HeadlessDesktop::mainScreen.size);
    canvas.fill(HeadlessDesktop::mainScreen, background);
    const std::vector<NSWindowRef> windows = desktop.orderedWindows();
    for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
        drawFrame(canvas, (*window)->frame());
    }
    for (const HeadlessDrawnWindow* window : desktop.drawnWindows()) {
        canvas.play(window->list(), window->frame(), static_cast<double>(window->alphaValue()));
    }
    if (cursor && cursor->image()) {
        const NSPoint at = desktop.mouseLocation();
        canvas.draw(cursor->image()->bitmap(),
                    {at.x - cursor->hotSpot().x, at.y + cursor->hotSpot().y});
    }
    Bitmap picture = canvas.bitmap();
    if (picture == last_) return std::nullopt;
    last_ = picture;
    return picture;
}

}  // namespace velmora
