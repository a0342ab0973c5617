#pragma once

#include <memory>

class QWidget;

namespace velmora {

class NSWindow;

/// A window of ours, as QtWindows knows it.
class QtOwnWindow {
public:
    /// The application object is about to go, and what hangs on it has to go before. What is asked
    /// from here on does nothing.
    virtual void close() = 0;

    /// Whether this is the top-level widget on the screen of one of NSApplication's windows.
    virtual bool isShownBy(const QWidget& /*widget*/) const { return false; }
    /// That window; null while it is going.
    virtual std::shared_ptr<NSWindow> window() { return nullptr; }

protected:
    ~QtOwnWindow() = default;
};

}  // namespace velmora
