#include "Journal/EntryReader.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace orbel {

namespace {

template <class... Functions>
struct Overloaded : Functions... {
    using Functions::operator()...;
};
template <class... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

template <class Value>
bool set(Value* target, const std::optional<Value>& value) {
    if (value)
        *target = *value;
    return value.has_value();
}

constexpr auto refuse = [](auto) { return false; };

constexpr auto isRequired =
    Overloaded{[]<class Value>(std::optional<Value>*) { return false; }, [](auto) { return true; }};

} // namespace

EntryReader::EntryReader()
    : entryMembers_{{{"appVersion", &entry_.appVersion},
                     {"approvedRealPath", &entry_.approvedRealPath},
                     {"bytes", &entry_.bytes},
                     {"id", &entry_.id},
                     {"mode", &entry_.mode},
                     {"module", &entry_.module},
                     {"note", &entry_.note},
                     {"originalParentIdentity", &entry_.originalParentIdentity},
                     {"originalParentRealPath", &entry_.originalParentRealPath},
                     {"originalPath", &entry_.originalPath},
                     {"reason", &entry_.reason},
                     {"refersTo", &entry_.refersTo},
                     {"result", &entry_.result},
                     {"root", &entry_.root},
                     {"sessionID", &entry_.sessionID},
                     {"time", &entry_.time},
                     {"title", &entry_.title},
                     {"trashPath", &entry_.trashPath},
                     {"trashedIdentity", &entry_.trashedIdentity}}},
      identityMembers_{{{"device", &identity_.device},
                        {"inode", &identity_.inode},
                        {"isDirectory", &identity_.isDirectory},
                        {"persistent", &identity_.persistent},
                        {"size", &identity_.size}}},
      persistentMembers_{{{"birthNanos", &persistent_.birthNanos}, {"volume", &persistent_.volume}}} {}

bool EntryReader::beginObject() {
    if (level_ == Level::outside)
        return enter(Level::entry);
    if (!isInObject())
        return false;
    if (isSkipping()) {
        ++skippedDepth_;
        return true;
    }
    if (auto* const* const identity = std::get_if<std::optional<TrashedIdentity>*>(&slot_)) {
        identityTarget_ = *identity;
        identity_.persistent.reset();
        return enter(Level::identity);
    }
    return std::holds_alternative<std::optional<Persistent>*>(slot_) && enter(Level::persistent);
}

bool EntryReader::endObject() {
    if (skippedDepth_ > 0) {
        --skippedDepth_;
        return true;
    }
    if (!hasAllRequired())
        return false;
    switch (level_) {
    case Level::persistent:
        identity_.persistent = persistent_;
        level_ = Level::identity;
        return true;
    case Level::identity:
        *identityTarget_ = identity_;
        level_ = Level::entry;
        return true;
    case Level::entry:
        level_ = Level::ended;
        return true;
    default:
        return false;
    }
}

bool EntryReader::beginArray() {
    if (!isInObject() || !isSkipping())
        return false;
    ++skippedDepth_;
    return true;
}

bool EntryReader::endArray() {
    --skippedDepth_;
    return true;
}

bool EntryReader::name(std::string_view name) {
    if (skippedDepth_ > 0)
        return true;
    const auto all = members();
    const auto member = std::ranges::find(all, name, &Member::name);
    slot_ = member == all.end() ? Slot{} : member->slot;
    slotBit_ = std::uint32_t{1} << (member - all.begin());
    return true;
}

bool EntryReader::text(std::string_view value) {
    return give(Overloaded{
        refuse,
        [&](std::string* target) {
            target->assign(value);
            return true;
        },
        [&](std::optional<std::string>* target) {
            target->emplace(value);
            return true;
        },
        [&](Date* target) { return set(target, parseIso8601(value)); },
        [&](DeletionModule* target) { return set(target, fromRawValue<DeletionModule>(value)); },
        [&](AllowedRoot* target) { return set(target, fromRawValue<AllowedRoot>(value)); },
        [&](JournalEntry::Result* target) { return set(target, fromRawValue<JournalEntry::Result>(value)); },
    });
}

bool EntryReader::number(std::uint64_t value) {
    return give(Overloaded{
        refuse,
        [&](std::uint64_t* target) {
            *target = value;
            return true;
        },
        [&](std::optional<std::uint64_t>* target) {
            *target = value;
            return true;
        },
        [&](std::int64_t* target) {
            *target = static_cast<std::int64_t>(value);
            return std::in_range<std::int64_t>(value);
        },
    });
}

bool EntryReader::negativeNumber(std::int64_t value) {
    return give(Overloaded{
        refuse,
        [&](std::int64_t* target) {
            *target = value;
            return true;
        },
    });
}

bool EntryReader::otherNumber() {
    return give(refuse);
}

bool EntryReader::truth(bool value) {
    return give(Overloaded{
        refuse,
        [&](bool* target) {
            *target = value;
            return true;
        },
    });
}

bool EntryReader::null() {
    return give(Overloaded{
        refuse,
        []<class Value>(std::optional<Value>* target) {
            target->reset();
            return true;
        },
    });
}

std::optional<JournalEntry> EntryReader::take() {
    if (level_ != Level::ended)
        return std::nullopt;
    return std::move(entry_);
}

template <class Store>
bool EntryReader::give(const Store& store) {
    if (!isInObject())
        return false;
    if (isSkipping())
        return true;
    found() |= slotBit_;
    return std::visit(store, slot_);
}

std::span<const EntryReader::Member> EntryReader::members() const {
    switch (level_) {
    case Level::entry:
        return entryMembers_;
    case Level::identity:
        return identityMembers_;
    case Level::persistent:
        return persistentMembers_;
    default:
        return {};
    }
}

bool EntryReader::enter(Level level) {
    level_ = level;
    found() = 0;
    return true;
}

bool EntryReader::hasAllRequired() {
    const auto all = members();
    for (std::size_t i = 0; i < all.size(); ++i)
        if ((found() >> i & 1) == 0 && std::visit(isRequired, all[i].slot))
            return false;
    return true;
}

} // namespace orbel
