#pragma once

namespace velmora {

/// Sets the flag for the life of the scope.
class Raised {
public:
    explicit Raised(bool& flag) : flag_(flag), before_(flag) { flag_ = true; }
    ~Raised() { flag_ = before_; }
    Raised(const Raised&) = delete;
    Raised& operator=(const Raised&) = delete;

private:
    bool& flag_;
    bool before_;
};

}  // namespace velmora
