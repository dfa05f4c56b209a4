#pragma once

#include <string>
#include <string_view>

namespace orbel {

// Names from the disk as people are to read them. For showing only: the results no longer name a file.

/// Valid UTF-8 in which nothing is hidden: control characters, direction overrides and marks, and other
/// characters that are not seen but change how the rest reads are written out, as in "photo[U+202E]gpj.exe".
/// What joins or shapes letters stays, because some languages cannot do without.
std::string visibleText(std::string_view bytes);

/// A part of `visibleText`'s result as it stands among other words. Right-to-left letters do not move what is
/// beside them: a name stands between FSI and PDI, what holds slashes between LRI and PDI, with an LRM after
/// each slash, so that the folders of a path keep their order. Text without such letters is as it was. Text
/// that has to be cut short is cut before.
std::string isolatedText(std::string_view visible);

} // namespace orbel
