#pragma once

#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "platform/runtime/NSObject.h"
#include "platform/runtime/ProcessWide.h"
#include "platform/runtime/Selector.h"

namespace velmora {

/// Identifies a C++ function type, receiver left out.
using Signature = const void*;

template <class Function>
Signature signatureOf() {
    static const char identity = 0;
    return &identity;
}

/// A method: what it answers to, the type of its arguments and result, and what runs. The
/// implementation is a function whose first parameter is the receiver, NSObject&.
struct Method {
    using Implementation = void (*)();

    Selector selector;
    Signature signature = nullptr;
    Implementation implementation = nullptr;
};

namespace detail {

template <auto function>
struct MethodThunk;

template <class Receiver, class R, class... A, R (Receiver::*function)(A...)>
struct MethodThunk<function> {
    static R call(NSObject& self, A... arguments) {
        return (static_cast<Receiver&>(self).*function)(static_cast<A&&>(arguments)...);
    }
    static Signature signature() { return signatureOf<R(A...)>(); }
};

template <class Receiver, class R, class... A, R (Receiver::*function)(A...) const>
struct MethodThunk<function> {
    static R call(NSObject& self, A... arguments) {
        return (static_cast<const Receiver&>(self).*function)(static_cast<A&&>(arguments)...);
    }
    static Signature signature() { return signatureOf<R(A...)>(); }
};

template <class Receiver, class R, class... A, R (*function)(Receiver&, A...)>
struct MethodThunk<function> {
    static R call(NSObject& self, A... arguments) {
        return function(static_cast<Receiver&>(self), static_cast<A&&>(arguments)...);
    }
    static Signature signature() { return signatureOf<R(A...)>(); }
};

/// A class message: the receiver is the class object, which the function has no use for.
template <auto function>
struct ClassMethodThunk;

template <class R, class... A, R (*function)(A...)>
struct ClassMethodThunk<function> {
    static R call(NSObject&, A... arguments) { return function(static_cast<A&&>(arguments)...); }
    static Signature signature() { return signatureOf<R(A...)>(); }
};

}  // namespace detail

/// The method named `function`: a member function, or a free function with the receiver first.
template <auto function>
Method methodFor(std::string_view selector) {
    using Thunk = detail::MethodThunk<function>;
    return {Selector::named(selector), Thunk::signature(),
            reinterpret_cast<Method::Implementation>(&Thunk::call)};
}

/// A class object: a name, a superclass and a list of methods that can be changed while the process
/// runs. It is an object itself, whose methods are the class messages. Lives for ever.
class Class final : public NSObject {
public:
    Class(std::string name, Class* superclass);

    /// The class of that name, or null.
    static Class* named(std::string_view name);

    Class& isa() const override { return *metaclass_; }

    /// The class object as a receiver that can be held like any other.
    const Id& asObject() const { return self_; }

    const std::string& name() const { return name_; }
    Class* superclass() const { return superclass_; }

    /// A new object of the class, for classes that say how one is made; otherwise null.
    Id alloc() const { return maker_ ? maker_() : nullptr; }

    /// Says how an object of the class is made.
    template <class Object>
    Class& makes() {
        maker_ = [] { return Id(std::make_shared<Object>()); };
        return *this;
    }

    /// Define a method or a class message, when the class is set up. The last definition of a
    /// selector counts.
    template <auto function>
    Class& method(std::string_view selector) {
        define(methodFor<function>(selector));
        return *this;
    }
    template <auto function>
    Class& classMethod(std::string_view selector) {
        using Thunk = detail::ClassMethodThunk<function>;
        metaclass_->define({Selector::named(selector), Thunk::signature(),
                            reinterpret_cast<Method::Implementation>(&Thunk::call)});
        return *this;
    }

    /// The method that instances run for the selector, own or inherited, or null. The pointer is
    /// good until a method list changes.
    const Method* class_getInstanceMethod(Selector selector);

    /// Take the class's own methods of these selectors away; inherited ones stay.
    void class_removeMethods(const std::vector<Method>& methods);

    /// Add methods to the class's own, in front of those it has.
    void class_addMethods(const std::vector<Method>& methods);

private:
    struct CacheEntry {
        Selector selector;
        const Method* method = nullptr;
        std::size_t generation = 0;
    };
    /// The methods of the class in one process.
    struct MethodTable {
        bool filled = false;
        std::vector<std::unique_ptr<Method>> methods;
        std::array<CacheEntry, 32> cache;
    };
    friend class Category;
    struct MetaclassTag {};
    Class(MetaclassTag, std::string name, Class* superclass);

    void define(Method method);
    MethodTable& table();
    const Method* find(Selector selector);

    Id self_{this, [](NSObject*) {}};
    std::string name_;
    Class* superclass_;
    Class* metaclass_;
    Id (*maker_)() = nullptr;
    std::vector<Method> definition_;
    ProcessWide<MethodTable> table_;
};

/// Adds category methods to a class when the program is loaded:
/// `const Category category{NSMenu::classObject(), {methodFor<&f>("f:")}};`
class Category {
public:
    Category(Class& extended, const std::vector<Method>& methods);
};

/// Runs a function once the program is loaded into a host, before the host finishes launching.
class LoadHook {
public:
    explicit LoadHook(void (*hook)());

    /// Called by the desktop, once a process.
    static void runAll();
};

namespace detail {

void reportUnknownMessage(const NSObject& receiver, Selector selector, const Method* found);

}  // namespace detail

/// Sends a message: runs the method that the receiver has for the selector now. Function is the
/// message's type without the receiver and must be the method's own; a receiver without such a
/// method is a line in the log and a default result.
/// `message<void(const Id&)>(target, action, sender)`
template <class Function>
struct Message;

template <class R, class... A>
struct Message<R(A...)> {
    static R send(NSObject& receiver, Selector selector, A... arguments) {
        const Method* method = receiver.isa().class_getInstanceMethod(selector);
        if (!method || method->signature != signatureOf<R(A...)>()) {
            detail::reportUnknownMessage(receiver, selector, method);
            return R();
        }
        using Implementation = R (*)(NSObject&, A...);
        return reinterpret_cast<Implementation>(method->implementation)(
            receiver, static_cast<A&&>(arguments)...);
    }
};

template <class Function, class... A>
decltype(auto) message(NSObject& receiver, Selector selector, A&&... arguments) {
    return Message<Function>::send(receiver, selector, std::forward<A>(arguments)...);
}

/// The type of an action: it takes its sender.
using Action = void(const Id&);

}  // namespace velmora
