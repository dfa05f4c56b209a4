#include "Platform/SystemTrash.h"

#include "Platform/FileStatus.h"
#include "Platform/macOS/AutoreleasePool.h"
#include "Platform/macOS/SystemLibrary.h"

namespace orbel::platform {

namespace {

using Object = void*;
using Truth = signed char; // BOOL: 0 or 1 in one byte on every processor

/// The Objective-C runtime with the framework that holds the file manager.
class Foundation {
public:
    bool isComplete() const { return classNamed_ != nullptr && selector_ != nullptr && send_ != nullptr; }

    Object classNamed(const char* name) const { return classNamed_(name); }

    /// Sends a message. The caller vouches for the types: they must be those of the method, to the letter. A
    /// message to a null object gives null.
    template <class Result, class... Arguments>
    Result send(Object object, const char* message, Arguments... arguments) const {
        using Method = Result(Object, Object, Arguments...);
        return reinterpret_cast<Method*>(send_)(object, selector_(message), arguments...);
    }

private:
    SystemLibrary framework_{"/System/Library/Frameworks/Foundation.framework/Foundation"};
    SystemLibrary runtime_{"/usr/lib/libobjc.A.dylib"};
    Object (*classNamed_)(const char*) = runtime_.find<Object(const char*)>("objc_getClass");
    Object (*selector_)(const char*) = runtime_.find<Object(const char*)>("sel_registerName");
    void (*send_)() = runtime_.find<void()>("objc_msgSend");
};

const Foundation& foundation() {
    static const Foundation opened;
    return opened;
}

std::string descriptionOf(const Foundation& system, Object error) {
    const auto words = system.send<Object>(error, "localizedDescription");
    const auto* const text = system.send<const char*>(words, "UTF8String");
    return text != nullptr && text[0] != '\0' ? text : "The system gave no reason";
}

std::expected<std::string, std::string> trashItem(const std::string& path) {
    const auto& system = foundation();
    if (!system.isComplete())
        return std::unexpected("The system's Trash cannot be reached");
    const AutoreleasePool pool;
    const auto status = fileStatus(path);
    const Truth isDirectory = status && status->type == FileType::directory ? 1 : 0;
    const auto url =
        system.send<Object>(system.classNamed("NSURL"),
                            "fileURLWithFileSystemRepresentation:isDirectory:relativeToURL:", path.c_str(),
                            isDirectory, Object{});
    const auto manager = system.send<Object>(system.classNamed("NSFileManager"), "defaultManager");
    if (url == nullptr || manager == nullptr)
        return std::unexpected("The system's Trash cannot be reached");
    Object resultingUrl = nullptr;
    Object error = nullptr;
    if (system.send<Truth>(manager, "trashItemAtURL:resultingItemURL:error:", url, &resultingUrl, &error)
        == 0)
        return std::unexpected(descriptionOf(system, error));
    const auto* const result = system.send<const char*>(resultingUrl, "fileSystemRepresentation");
    if (result == nullptr)
        return std::unexpected("The system did not report where the item went");
    return result;
}

} // namespace

SystemTrash systemTrash() {
    return trashItem;
}

} // namespace orbel::platform
