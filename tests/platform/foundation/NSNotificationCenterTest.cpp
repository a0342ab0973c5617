#include "platform/foundation/NSNotificationCenter.h"

#include <gmock/gmock.h>

#include <functional>

#include "platform/runtime/Class.h"
#include "support/HeadlessHost.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Observer final : public NSObject {
public:
    static Class& classObject() {
        static auto* object = &(new Class("NotificationTestObserver", &NSObject::classObject()))
                                   ->method<&Observer::told>("told:");
        return *object;
    }
    Class& isa() const override { return classObject(); }

    Observer(std::string name, std::vector<std::string>& told)
        : name_(std::move(name)), told_(told) {}

    void told(const NSNotification& notification) {
        told_.push_back(name_ + ' ' + std::string(notification.name));
        if (whenTold) whenTold();
    }
    std::function<void()> whenTold;

private:
    std::string name_;
    std::vector<std::string>& told_;
};

class NSNotificationCenterTest : public testing::Test {
protected:
    std::shared_ptr<Observer> observer(const std::string& name) {
        return std::make_shared<Observer>(name, told);
    }
    void add(const std::shared_ptr<Observer>& observer, std::string_view name,
             NSObject* object = nullptr) {
        center.addObserver_selector_name_object(observer, Selector::named("told:"), name, object);
    }

    HeadlessHost host;
    NSNotificationCenter center;
    std::vector<std::string> told;
};

TEST_F(NSNotificationCenterTest, ObserversAreToldInTheOrderInWhichTheyRegistered) {
    const auto first = observer("first");
    const auto second = observer("second");
    add(first, "Opened");
    add(second, "Opened");
    add(first, "Closed");
    center.postNotification({"Opened", nullptr, std::nullopt});
    center.postNotification({"Closed", nullptr, std::nullopt});
    center.postNotification({"Moved", nullptr, std::nullopt});
    EXPECT_THAT(told, ElementsAre("first Opened", "second Opened", "first Closed"));
}

TEST_F(NSNotificationCenterTest, AnObserverOfOneObjectHearsOfNoOther) {
    const auto one = observer("one");
    NSObject watched;
    NSObject other;
    add(one, "Opened", &watched);
    center.postNotification({"Opened", &other, std::nullopt});
    center.postNotification({"Opened", nullptr, std::nullopt});
    EXPECT_THAT(told, IsEmpty());
    center.postNotification({"Opened", &watched, std::nullopt});
    EXPECT_THAT(told, ElementsAre("one Opened"));
}

TEST_F(NSNotificationCenterTest, ObserversMayComeAndGoWhileTheyAreTold) {
    const auto first = observer("first");
    const auto newcomer = observer("newcomer");
    auto leaver = observer("leaver");
    add(first, "Opened");
    add(leaver, "Opened");
    first->whenTold = [&] {
        add(newcomer, "Opened");
        leaver.reset();
    };
    center.postNotification({"Opened", nullptr, std::nullopt});
    EXPECT_THAT(told, ElementsAre("first Opened"));
    first->whenTold = nullptr;
    center.removeObserver(*first);
    center.postNotification({"Opened", nullptr, std::nullopt});
    EXPECT_THAT(told, ElementsAre("first Opened", "newcomer Opened"));
}

}  // namespace
}  // namespace velmora
