#pragma once

#include "Platform/macOS/SystemLibrary.h"

#include <memory>
#include <string>

/// The part of Core Foundation that several of this folder's sources use, opened by name at run time, with
/// the types as its headers declare them.
namespace orbel::platform::cf {

using Reference = const void*; ///< CFTypeRef and every reference that stands for a class of it
using Boolean = unsigned char;
using Index = long;
using Options = unsigned long;
using TypeID = unsigned long;

/// Where further functions and constants are found.
const SystemLibrary& library();

/// Whether all that the functions below call is there; without it they may not be called.
bool isAvailable();

struct Release {
    void operator()(Reference object) const;
};
/// A reference that its holder owns and has to release.
using Owned = std::unique_ptr<const void, Release>;

/// The URL of a file; null when there can be none.
Owned urlOfFile(const std::string& path);

/// Whether an object is of the class whose own function is given; null is of no class.
bool isOf(Reference object, TypeID (*type)());

} // namespace orbel::platform::cf
