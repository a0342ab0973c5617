#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace velmora {

/// What ProcessWide values have in common: a place in the list of them all.
class ProcessWideBase {
public:
    ProcessWideBase(const ProcessWideBase&) = delete;
    ProcessWideBase& operator=(const ProcessWideBase&) = delete;

protected:
    ProcessWideBase();
    virtual ~ProcessWideBase() = default;

private:
    friend class ProcessImage;
    virtual std::shared_ptr<void> makeInitial() const = 0;
    virtual void exchangeWith(void* stored) = 0;
};

/// A value of which each host process has one: a global. A plain variable to those who use it; what
/// it adds is that a ProcessImage can put it aside, so that one test can hold several hosts. It is
/// never destroyed: what it holds lives until the process ends, and a host that is leaving has
/// taken down by then what the value's destructor would ask for.
template <class T>
class ProcessWide final : public ProcessWideBase {
public:
    ProcessWide() : makeValue_([] { return T(); }), value_() {}
    explicit ProcessWide(T initial)
        : makeValue_([initial] { return initial; }), value_(std::move(initial)) {}

    // Not defaulted, since a union with such a member has no destructor of its own.
    ~ProcessWide() override {}  // NOLINT(modernize-use-equals-default)

    ProcessWide& operator=(T value) {
        value_ = std::move(value);
        return *this;
    }

    operator T&() { return value_; }
    operator const T&() const { return value_; }
    T& operator*() { return value_; }
    const T& operator*() const { return value_; }
    auto operator->() {
        if constexpr (requires(T & v) { v.operator->(); }) {
            return value_.operator->();
        } else if constexpr (std::is_pointer_v<T>) {
            return value_;
        } else {
            return &value_;
        }
    }

    template <class Index>
    auto& operator[](Index index) {
        return value_[index];
    }

private:
    std::shared_ptr<void> makeInitial() const override { return std::make_shared<T>(makeValue_()); }
    void exchangeWith(void* stored) override { std::swap(value_, *static_cast<T*>(stored)); }

    std::function<T()> makeValue_;
    union {
        T value_;
    };
};

/// The process-wide values of one process that is not the current one. A new image holds the values
/// with which every process starts.
class ProcessImage {
public:
    ProcessImage();
    ~ProcessImage();
    ProcessImage(const ProcessImage&) = delete;
    ProcessImage& operator=(const ProcessImage&) = delete;

    /// Puts the image's values in place and keeps those that stood there. Doing it again undoes it.
    void exchange();

    /// Makes the image current for the life of the scope.
    class Scope {
    public:
        explicit Scope(ProcessImage& image) : image_(image) { image_.exchange(); }
        ~Scope() { image_.exchange(); }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        ProcessImage& image_;
    };

private:
    std::vector<std::shared_ptr<void>> values_;
    bool current_ = false;
};

}  // namespace velmora
