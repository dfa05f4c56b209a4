#include "Support/MovedGroup.h"

#include "Journal/IntentSettling.h"
#include "Support/TrashHome.h"
#include "Util/ReadFile.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace orbel::test {

namespace fs = std::filesystem;
using Result = JournalEntry::Result;

namespace {

std::string nameOf(int item) {
    return "item-" + std::to_string(item);
}

std::string contentOf(int item) {
    return "What must never be lost, " + std::to_string(item);
}

bool isWholeInfo(const std::optional<std::string>& info) {
    return info && info->ends_with("\n") && info->contains("DeletionDate=");
}

/// How many lines tell this result of the item whose place this is.
auto linesOf(const std::vector<JournalEntry>& entries, const std::string& place, Result result) {
    return std::ranges::count_if(entries, [&](const JournalEntry& entry) {
        return entry.originalPath == place && entry.result == result;
    });
}

} // namespace

MovedGroup::MovedGroup(std::string home, Move move) : home_(std::move(home)), move_(move) {}

std::string MovedGroup::place(int item) const {
    return home_ + "/docs/" + nameOf(item);
}

std::string MovedGroup::storedName(int item) const {
    for (const auto& name : contentsOfTrash(trash()))
        if (name.starts_with("files/") && readFile(trash() + "/" + name) == contentOf(item))
            return name.substr(6);
    return "";
}

bool MovedGroup::isMoved(int item) const {
    return move_ == Move::toTrash ? !storedName(item).empty() : fs::exists(place(item));
}

void MovedGroup::prepare() const {
    fs::create_directories(home_ + "/docs");
    for (int item = 0; item < size; ++item)
        if (!(std::ofstream(place(item)) << contentOf(item)).flush())
            throw std::runtime_error("cannot write " + place(item));
    if (move_ == Move::toTrash)
        return;
    const auto run = RunningProgram(movesToTrash()).finish();
    if (std::ranges::count(told(run.output), "done", [](const auto& line) { return line.second; }) != size)
        throw std::runtime_error("cannot move the items to the Trash: " + run.output + run.errors);
}

ProgramStart MovedGroup::movesToTrash() const {
    ProgramStart start{.words = {ORBEL_MOVE_ITEMS, "trash", home_}, .environment = environmentOf(home_)};
    for (int item = 0; item < size; ++item)
        start.words.push_back(place(item));
    return start;
}

ProgramStart MovedGroup::start(std::vector<std::string> tracer) const {
    auto start = movesToTrash();
    if (move_ == Move::back)
        start.words = {ORBEL_MOVE_ITEMS, "put-back", home_};
    start.words.insert(start.words.begin(), tracer.begin(), tracer.end());
    return start;
}

int MovedGroup::moved() const {
    int count = 0;
    for (int item = 0; item < size; ++item)
        count += isMoved(item) ? 1 : 0;
    return count;
}

std::map<std::string, std::string> MovedGroup::told(const std::string& output) {
    std::map<std::string, std::string> outcomes;
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);) {
        const auto space = line.find(' ');
        const auto outcome = line.substr(0, space);
        if (outcome != "stopped:")
            outcomes[line.substr(space + 1, line.find(':') - space - 1)] = outcome;
    }
    return outcomes;
}

std::vector<std::string> MovedGroup::untruths(const std::string& output) const {
    std::vector<std::string> found;
    const auto outcomes = told(output);
    const bool isStopped = output.contains("stopped: ");
    // Without a journal that can be read there is nothing to put back, nor anything to tell.
    const bool mayBeUntold = isStopped || (move_ == Move::back && outcomes.empty());
    const auto entries = JournalStore(journalPath()).entries();
    for (int item = 0; item < size; ++item) {
        const auto outcome = outcomes.contains(place(item)) ? outcomes.at(place(item)) : "untold";
        if (isMoved(item) != (outcome == "done" || outcome == "unrecorded"))
            found.push_back(nameOf(item) + (isMoved(item) ? " was moved, but is " : " was not moved, but is ")
                            + outcome);
        if (outcome == "untold" && !mayBeUntold)
            found.push_back(nameOf(item) + " is untold");
        if (outcome == "unrecorded" && move_ == Move::toTrash && !isStopped)
            found.push_back(nameOf(item) + " is unrecorded, and the run went on");
        if (outcome == "done"
            && linesOf(entries, place(item), move_ == Move::toTrash ? Result::trashed : Result::restored)
                   != 1)
            found.push_back(nameOf(item) + " is done, but has no line");
    }
    return found;
}

std::vector<std::string> MovedGroup::tornInfoFiles() const {
    std::vector<std::string> torn;
    for (const auto& name : contentsOfTrash(trash()))
        if (name.starts_with("info/") && !isWholeInfo(readFile(trash() + "/" + name)))
            torn.push_back(name);
    return torn;
}

std::vector<std::string> MovedGroup::faultsOnceSettled() const {
    std::vector<std::string> found;
    const auto require = [&found](bool isTrue, const std::string& otherwise) {
        if (!isTrue)
            found.push_back(otherwise);
    };
    JournalStore journal(journalPath());
    const auto settlement = settleIntents(journal);
    for (const auto& doubt : settlement.doubts)
        found.push_back("doubt: " + doubt.words);
    for (const auto& failure : settlement.failures)
        found.push_back("failure: " + failure);
    require(settleIntents(journal) == Settlement(), "settling is not over");

    const auto entries = journal.read();
    if (!entries)
        return {"the journal cannot be read: " + entries.error().words};
    const auto restorable = journal.restorable();
    std::vector<std::string> inTrash;
    for (int item = 0; item < size; ++item) {
        const bool isInPlace = readFile(place(item)) == contentOf(item);
        const auto stored = storedName(item);
        require(isInPlace == stored.empty(), nameOf(item) + " is not at exactly one place, whole");
        require(linesOf(restorable, place(item), Result::trashed) == (isInPlace ? 0 : 1),
                nameOf(item) + (isInPlace ? " is in place, but restorable" : " is not restorable"));
        require(linesOf(*entries, place(item), Result::trashed)
                    == (move_ == Move::back || !isInPlace ? 1 : 0),
                nameOf(item) + " has a wrong number of `trashed` lines");
        require(linesOf(*entries, place(item), Result::restored)
                    == (move_ == Move::back && isInPlace ? 1 : 0),
                nameOf(item) + " has a wrong number of `restored` lines");
        if (!isInPlace)
            inTrash.insert(inTrash.end(), {"files/" + stored, "info/" + stored + ".trashinfo"});
    }
    std::ranges::sort(inTrash);
    require(contentsOfTrash(trash()) == inTrash,
            "the Trash holds something else, or an item without its info file");
    require(tornInfoFiles().empty(), "an info file is torn");
    return found;
}

} // namespace orbel::test
