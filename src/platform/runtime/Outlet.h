#pragma once

#include <memory>

#include "platform/runtime/Class.h"

namespace velmora {

/// The setter of an outlet, a member of type std::shared_ptr, as an interface file calls it; an
/// object of another type leaves the outlet null.
/// `.method<&Outlet<&Panel::table_>::set>("setTable:")`
template <auto member>
struct Outlet;

template <class Owner, class Object, std::shared_ptr<Object> Owner::*member>
struct Outlet<member> {
    static void set(Owner& owner, const Id& object) {
        owner.*member = std::dynamic_pointer_cast<Object>(object);
    }
};

}  // namespace velmora
