#pragma once

namespace velmora {

/// A window of ours, as QtWindows knows it.
class QtOwnWindow {
public:
    /// The application object is about to go, and what hangs on it has to go before. What is asked
    /// from here on does nothing.
    virtual void close() = 0;

protected:
    ~QtOwnWindow() = default;
};

}  // namespace velmora
