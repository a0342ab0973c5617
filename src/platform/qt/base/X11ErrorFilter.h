#pragma once

#include <QAbstractNativeEventFilter>
#include <cstdint>
#include <functional>

namespace velmora {

/// Keeps the toolkit from telling of errors that the X server answers to requests of one piece of
/// work, such as questions for windows of the window manager, which may be gone by then.
class X11ErrorFilter final : public QAbstractNativeEventFilter {
public:
    X11ErrorFilter() = default;
    ~X11ErrorFilter() override;
    X11ErrorFilter(const X11ErrorFilter&) = delete;
    X11ErrorFilter& operator=(const X11ErrorFilter&) = delete;

    /// Only does the work on any other display.
    void run(const std::function<void()>& work);

#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    bool nativeEventFilter(const QByteArray& type, void* event, qintptr* result) override;
#else
    bool nativeEventFilter(const QByteArray& type, void* event, long* result) override;
#endif

private:
    bool filter(const QByteArray& type, const void* event);

    /// The numbers of the connection's requests before and after the work.
    std::uint32_t first_ = 0;
    std::uint32_t last_ = 0;
};

}  // namespace velmora
