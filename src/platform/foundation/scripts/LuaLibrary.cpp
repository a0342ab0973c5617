#include "platform/foundation/scripts/LuaLibrary.h"

#include <dlfcn.h>

namespace velmora {

namespace {

constexpr const char* libraryName = "liblua5.4.so.0";

#if defined(__SANITIZE_ADDRESS__)
constexpr int bindingOfItsOwn = 0;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr int bindingOfItsOwn = 0;
#else
constexpr int bindingOfItsOwn = RTLD_DEEPBIND;
#endif
#else
/// A host may itself export functions of these names, of another version. (The address sanitizer
/// refuses such a library.)
constexpr int bindingOfItsOwn = RTLD_DEEPBIND;
#endif

template <class Function>
bool find(void* handle, const char* name, Function*& function) {
    function = reinterpret_cast<Function*>(::dlsym(handle, name));
    return function != nullptr;
}

bool findAll(void* handle, LuaLibrary& library) {
    bool found = true;
#define VELMORA_LUA_FIND(name) found = find(handle, #name, library.name) && found;
    VELMORA_LUA_FUNCTIONS(VELMORA_LUA_FIND)
#undef VELMORA_LUA_FIND
    return found;
}

}  // namespace

const LuaLibrary* LuaLibrary::load(std::string& problem) {
    static LuaLibrary library;
    static bool loaded = false;
    if (loaded) return &library;
    void* handle = ::dlopen(libraryName, RTLD_NOW | RTLD_LOCAL | bindingOfItsOwn);
    if (!handle) {
        const char* reason = ::dlerror();
        problem = std::string("Lua 5.4 cannot be loaded: ") + (reason ? reason : libraryName);
        return nullptr;
    }
    loaded = findAll(handle, library);
    if (loaded) return &library;
    problem = std::string("Lua 5.4 cannot be loaded: ") + libraryName + " lacks functions";
    ::dlclose(handle);
    return nullptr;
}

}  // namespace velmora
