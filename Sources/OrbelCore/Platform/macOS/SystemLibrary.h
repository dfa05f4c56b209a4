#pragma once

#include <dlfcn.h>

namespace orbel::platform {

/// A library of the system that is opened by name at run time: the program then links without the system's
/// development kit and starts where the library is missing. Never closed again, because frameworks do not
/// survive being unloaded.
class SystemLibrary {
public:
    /// Opens the library at `path`; when that fails, find() gives nothing.
    explicit SystemLibrary(const char* path) : handle_(::dlopen(path, RTLD_LAZY | RTLD_LOCAL)) {}

    /// The function or constant of that name, null when there is none. The caller vouches for its type: every
    /// function is called through a pointer of exactly its declared type.
    template <class Type>
    Type* find(const char* name) const {
        return handle_ == nullptr ? nullptr : reinterpret_cast<Type*>(::dlsym(handle_, name));
    }

private:
    void* handle_;
};

} // namespace orbel::platform
