#include "platform/runtime/ProcessWide.h"

namespace velmora {

namespace {

std::vector<ProcessWideBase*>& all() {
    static auto* values = new std::vector<ProcessWideBase*>();
    return *values;
}

}  // namespace

ProcessWideBase::ProcessWideBase() {
    all().push_back(this);
}

ProcessImage::ProcessImage() = default;

ProcessImage::~ProcessImage() {
    // What the image holds may refer to globals of its own process while it is taken down.
    if (!current_ && !values_.empty()) {
        exchange();
        std::vector<std::shared_ptr<void>> others = std::move(values_);
        values_.clear();
        for (std::size_t i = others.size(); i-- > 0;) {
            std::shared_ptr<void> empty = all()[i]->makeInitial();
            all()[i]->exchangeWith(empty.get());
        }
        for (std::size_t i = 0; i < others.size(); ++i) all()[i]->exchangeWith(others[i].get());
    }
}

void ProcessImage::exchange() {
    current_ = !current_;
    // Values of classes that came into use since then join the image here.
    while (values_.size() < all().size()) values_.push_back(all()[values_.size()]->makeInitial());
    for (std::size_t i = 0; i < values_.size(); ++i) all()[i]->exchangeWith(values_[i].get());
}

}  // namespace velmora
