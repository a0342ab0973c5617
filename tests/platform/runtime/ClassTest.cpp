#include "platform/runtime/Class.h"

#include <gmock/gmock.h>

#include "platform/runtime/ProcessWide.h"
#include "support/HeadlessHost.h"

namespace velmora {
namespace {

using testing::ElementsAre;

class Animal : public NSObject {
public:
    static Class& classObject() {
        static auto* object = &(new Class("ClassTestAnimal", &NSObject::classObject()))
                                   ->method<&Animal::speak>("speak")
                                   .method<&Animal::add>("add:to:")
                                   .classMethod<&Animal::count>("count");
        return *object;
    }
    Class& isa() const override { return classObject(); }
    std::string speak() { return "..."; }
    int add(int a, int b) { return a + b; }
    static int count() { return 7; }
};

class Dog final : public Animal {
public:
    static Class& classObject() {
        static auto* object = &(new Class("ClassTestDog", &Animal::classObject()))
                                   ->makes<Dog>()
                                   .method<&Dog::bark>("bark");
        return *object;
    }
    Class& isa() const override { return classObject(); }
    std::string bark() { return "wau"; }
};

Selector named(const char* name) {
    return Selector::named(name);
}

std::string say(NSObject& animal, const char* selector) {
    return message<std::string()>(animal, named(selector));
}

/// What exchanging two methods comes to: both become the class's own, with each other's
/// implementation.
void exchange(Class& c, Selector a, Selector b) {
    std::vector<Method> methods = {*c.class_getInstanceMethod(a), *c.class_getInstanceMethod(b)};
    c.class_removeMethods(methods);
    std::swap(methods[0].implementation, methods[1].implementation);
    c.class_addMethods(methods);
}

TEST(ClassTest, AMessageFindsOwnAndInheritedMethodsAndCarriesItsArguments) {
    const HeadlessHost host;
    Dog dog;
    EXPECT_EQ(say(dog, "speak"), "...");
    EXPECT_EQ(say(dog, "bark"), "wau");
    EXPECT_EQ((message<int(int, int)>(dog, named("add:to:"), 2, 3)), 5);
    EXPECT_TRUE(dog.respondsToSelector(named("speak")));
    EXPECT_FALSE(dog.respondsToSelector(named("fly")));
    EXPECT_FALSE(dog.respondsToSelector(Selector()));
    EXPECT_EQ(message<int()>(Dog::classObject(), named("count")), 7) << "a class message";
}

TEST(ClassTest, AMessageWithoutAMethodIsALineInTheLogAndADefaultResult) {
    const HeadlessHost host;
    Dog dog;
    EXPECT_EQ(say(dog, "fly"), "");
    EXPECT_THAT(host.log(), ElementsAre("ClassTestDog does not respond to 'fly'"));
}

TEST(ClassTest, ExchangingSwapsWhatTwoNamesRunAndTwiceUndoesIt) {
    const HeadlessHost host;
    Dog dog;
    Animal animal;
    EXPECT_EQ(say(dog, "speak"), "...") << "the look-up is cached before the exchange";
    exchange(Dog::classObject(), named("speak"), named("bark"));
    EXPECT_EQ(say(dog, "speak"), "wau");
    EXPECT_EQ(say(dog, "bark"), "...");
    EXPECT_EQ(say(animal, "speak"), "...") << "the inherited method's class keeps it";
    exchange(Dog::classObject(), named("speak"), named("bark"));
    EXPECT_EQ(say(dog, "speak"), "...");
    EXPECT_EQ(say(dog, "bark"), "wau");
}

TEST(ClassTest, RemovingAnOwnMethodUncoversTheInheritedOne) {
    const HeadlessHost host;
    Dog dog;
    Class& c = Dog::classObject();
    const Method bark = *c.class_getInstanceMethod(named("bark"));
    Method speak = bark;
    speak.selector = named("speak");
    c.class_addMethods({speak});
    EXPECT_EQ(say(dog, "speak"), "wau");
    c.class_removeMethods({speak, bark});
    EXPECT_EQ(say(dog, "speak"), "...");
    EXPECT_FALSE(dog.respondsToSelector(named("bark")));
    c.class_removeMethods({speak});
    EXPECT_EQ(say(dog, "speak"), "...") << "an inherited method cannot be removed from below";
}

TEST(ClassTest, MethodListsBelongToAProcess) {
    Dog dog;
    {
        const HeadlessHost host;
        exchange(Dog::classObject(), named("speak"), named("bark"));
        EXPECT_EQ(say(dog, "bark"), "...");
        ProcessImage other;
        {
            const ProcessImage::Scope scope(other);
            EXPECT_EQ(say(dog, "bark"), "wau");
        }
        EXPECT_EQ(say(dog, "bark"), "...");
    }
    EXPECT_EQ(say(dog, "bark"), "wau");
}

TEST(ClassTest, AnObjectCanBeMadeByItsClassesName) {
    Dog::classObject();
    EXPECT_EQ(Class::named("ClassTestDog"), &Dog::classObject());
    EXPECT_EQ(Class::named("ClassTestCat"), nullptr);
    const Id made = Class::named("ClassTestDog")->alloc();
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(&made->isa(), &Dog::classObject());
    EXPECT_EQ(Animal::classObject().alloc(), nullptr) << "a class that does not say how";
}

#ifndef NDEBUG
TEST(ClassDeathTest, AMessageOfAnotherTypeThanTheMethodsStopsADebugBuild) {
    Dog dog;
    EXPECT_DEATH((message<int(int)>(dog, named("bark"), 1)), "");
}
#else
TEST(ClassTest, AMessageOfAnotherTypeThanTheMethodsRunsNothing) {
    const HeadlessHost host;
    Dog dog;
    EXPECT_EQ((message<int(int)>(dog, named("bark"), 1)), 0);
    EXPECT_THAT(host.log(), ElementsAre("ClassTestDog has another type of 'bark'"));
}
#endif

}  // namespace
}  // namespace velmora
