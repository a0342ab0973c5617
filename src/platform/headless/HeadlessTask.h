#pragma once

#include "platform/foundation/scripts/NSTask.h"

namespace velmora {

/// What becomes of a process that a host starts.
struct ProcessEnd {
    enum class Kind { ends, goesOn, doesNotStart };
    Kind kind = Kind::ends;
    int status = 0;
};

/// A process that only seems to run. Waiting for it takes no time.
class HeadlessTask final : public NSTask {
public:
    explicit HeadlessTask(const ProcessEnd& end) : end_(end) {}

    void waitUntilExit() override { running_ = end_.kind == ProcessEnd::Kind::goesOn; }
    bool isRunning() const override { return running_; }
    int terminationStatus() const override { return end_.status; }

private:
    ProcessEnd end_;
    bool running_ = true;
};

}  // namespace velmora
