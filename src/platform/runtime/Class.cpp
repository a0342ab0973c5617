#include "platform/runtime/Class.h"

#include <algorithm>
#include <cassert>
#include <map>

#include "platform/runtime/NSLog.h"

namespace velmora {

namespace {

std::map<std::string, Class*, std::less<>>& classes() {
    static auto* all = new std::map<std::string, Class*, std::less<>>();
    return *all;
}

std::vector<void (*)()>& loadHooks() {
    static auto* all = new std::vector<void (*)()>();
    return *all;
}

/// Grows with every change of any method list, which makes all cached look-ups stale.
std::size_t generation = 1;

}  // namespace

Class& NSObject::classObject() {
    static auto* object = new Class("NSObject", nullptr);
    return *object;
}

bool NSObject::respondsToSelector(Selector selector) const {
    return isa().class_getInstanceMethod(selector) != nullptr;
}

Class::Class(std::string name, Class* superclass)
    : name_(std::move(name)),
      superclass_(superclass),
      metaclass_(new Class(MetaclassTag(), name_, superclass ? superclass->metaclass_ : nullptr)) {
    classes()[name_] = this;
}

Class::Class(MetaclassTag, std::string name, Class* superclass)
    : name_(std::move(name)), superclass_(superclass), metaclass_(this) {}

Class* Class::named(std::string_view name) {
    const auto found = classes().find(name);
    return found == classes().end() ? nullptr : found->second;
}

void Class::define(Method method) {
    std::erase_if(definition_, [&](const Method& m) { return m.selector == method.selector; });
    definition_.push_back(method);
    if (table_->filled) class_addMethods({method});
}

Class::MethodTable& Class::table() {
    MethodTable& table = *table_;
    if (!table.filled) {
        table.filled = true;
        for (const Method& method : definition_) {
            table.methods.push_back(std::make_unique<Method>(method));
        }
    }
    return table;
}

const Method* Class::class_getInstanceMethod(Selector selector) {
    if (!selector) return nullptr;
    CacheEntry& entry = table_->cache[(selector.hash() >> 5U) % table_->cache.size()];
    if (entry.selector == selector && entry.generation == generation) return entry.method;
    const Method* found = find(selector);
    CacheEntry& refreshed = table_->cache[(selector.hash() >> 5U) % table_->cache.size()];
    refreshed = {selector, found, generation};
    return found;
}

const Method* Class::find(Selector selector) {
    for (Class* c = this; c; c = c->superclass_) {
        for (const auto& method : c->table().methods) {
            if (method->selector == selector) return method.get();
        }
    }
    return nullptr;
}

void Class::class_removeMethods(const std::vector<Method>& methods) {
    ++generation;
    std::erase_if(table().methods, [&](const std::unique_ptr<Method>& own) {
        return std::any_of(methods.begin(), methods.end(),
                           [&](const Method& m) { return m.selector == own->selector; });
    });
}

void Class::class_addMethods(const std::vector<Method>& methods) {
    ++generation;
    MethodTable& own = table();
    std::vector<std::unique_ptr<Method>> added;
    added.reserve(methods.size());
    for (const Method& method : methods) added.push_back(std::make_unique<Method>(method));
    own.methods.insert(own.methods.begin(), std::make_move_iterator(added.begin()),
                       std::make_move_iterator(added.end()));
}

Category::Category(Class& extended, const std::vector<Method>& methods) {
    for (const Method& method : methods) extended.define(method);
}

LoadHook::LoadHook(void (*hook)()) {
    loadHooks().push_back(hook);
}

void LoadHook::runAll() {
    for (void (*hook)() : loadHooks()) hook();
}

void detail::reportUnknownMessage(const NSObject& receiver, Selector selector,
                                  const Method* found) {
    // A method of another type is a mistake of ours, which a debug build does not let pass.
    assert(!found);
    NSLog(receiver.isa().name() + (found ? " has another type of '" : " does not respond to '") +
          selector.name() + "'");
}

}  // namespace velmora
