#include "Delete/Advice.h"

#include "Delete/FileManagerWords.h"

#include <algorithm>
#include <array>

namespace orbel {

namespace {

struct Rule {
    std::string_view beginning; ///< of the reason
    std::string_view advice;    ///< "{fileManager}" stands for what the platform calls it; empty for none
};

constexpr std::string_view onPictures =
    "Your pictures stay: most are nowhere else. Move those that you do not need to another folder in "
    "{fileManager}; from there they can go to the Trash.";

/// The first that fits counts.
constexpr auto rules = std::to_array<Rule>({
    {"Too close to the home folder", "Move it into a folder first; from there it can go to the Trash."},
    {"On another volume", "The Trash lies on the volume of the home folder. Remove it in {fileManager}."},
    {"Contains another volume", "Unmount that volume, or remove that subvolume with its own tool, first."},
    {"Left out of measuring", "Measure it first, without leaving it out."},
    {"Holds a folder left out of measuring", "Measure it first, without leaving that out."},
    {"Holds a file left out of measuring", "Measure it first, without leaving that out."},
    {"Is a symbolic link", "Remove the link in {fileManager}; what it leads to is an item of its own."},
    {"Already gone", "Measure again to bring the list up to date."},
    {"Outside the home folder", "Only what lies in the home folder can be moved from here."},
    {"Inside ", "Remove it in the program that it belongs to."},
    {"Contains protected data", "Tick what you do not need in it one by one."},
    {"In use", "Close it there first."},
    {"Holds a version-control folder", "Look at what it holds: it may be work that is nowhere else."},
    {"The copy you are keeping changed or is gone", "Search for duplicates again."},
    {"Its name is not valid text", "Rename it in {fileManager} first."},
    {"A folder above it may not be entered", "Change the rights of that folder first."},
    {"Could not write the journal", "Make room on the disk, or clear the journal's place, and try again."},
    {"The home folder belongs to another user", "Start it as that user, without sudo."},
    {"Protected: system location", "The system's package manager removes what it has installed."},
    {"Protected: ~/Pictures", onPictures},
    {"Protected: your pictures", onPictures},
    {"Protected: part of ", "Remove it with the program that keeps it."},
    {"Protected by ", {}},
    {"Protected", "It stays on purpose. If you are sure, remove it in {fileManager}."},
});

} // namespace

std::optional<std::string> adviceOn(std::string_view reason) {
    const auto found =
        std::ranges::find_if(rules, [&](const Rule& rule) { return reason.starts_with(rule.beginning); });
    if (found == rules.end() || found->advice.empty())
        return std::nullopt;
    return withFileManager(found->advice);
}

} // namespace orbel
