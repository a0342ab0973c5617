#include "platform/qt/input/FetchWait.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QScopedValueRollback>
#include <QThread>
#include <QTimer>
#include <algorithm>

namespace velmora {

namespace {

constexpr Time longest = std::chrono::hours(1);

}  // namespace

Time steadyNow() {
    return std::chrono::steady_clock::now().time_since_epoch();
}

bool FetchWait::wait(Time deadline) {
    QCoreApplication* application = QCoreApplication::instance();
    if (!application || QCoreApplication::closingDown()) return false;
    // Entering a loop throws away a request to quit that has been posted and not yet delivered.
    QCoreApplication::sendPostedEvents(application, QEvent::Quit);

    const Time left = std::clamp(deadline - std::min(deadline, steadyNow()), Time(0), longest);
    QEventLoop loop;
    Frame frame{&loop, QThread::currentThread()->loopLevel() + 1};
    const QScopedValueRollback<Frame*> running(innermost_, &frame);
    QTimer timer;
    timer.setSingleShot(true);
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, &loop, [&frame] {
        frame.woken = true;
        frame.loop->quit();
    });
    timer.start(std::chrono::ceil<std::chrono::milliseconds>(left));
    // Begins and goes on only as long as nobody has asked the application to quit.
    loop.exec();
    return frame.woken;
}

void FetchWait::wake() {
    if (!innermost_) return;
    innermost_->woken = true;
    innermost_->loop->quit();
}

bool FetchWait::isWaiting() const {
    return innermost_ && QThread::currentThread()->loopLevel() == innermost_->level;
}

}  // namespace velmora
