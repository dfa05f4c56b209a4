#pragma once

#include "Journal/JournalEntry.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <variant>

namespace orbel {

/// Builds one entry from the parts of a JSON object in the order they come. Each call tells whether this can
/// still become an entry; after a false the reader is of no more use. What it is told must be well-formed
/// JSON.
class EntryReader {
public:
    EntryReader();
    EntryReader(const EntryReader&) = delete;
    EntryReader& operator=(const EntryReader&) = delete;

    bool beginObject();
    bool endObject();
    bool beginArray();
    bool endArray();
    bool name(std::string_view name); ///< of the member whose value comes next
    bool text(std::string_view value);
    bool number(std::uint64_t value);
    bool negativeNumber(std::int64_t value);
    bool otherNumber(); ///< one that is not whole, or has more than 64 bits
    bool truth(bool value);
    bool null();

    /// The entry, once its object has ended.
    std::optional<JournalEntry> take();

private:
    using Persistent = platform::PersistentIdentity;

    /// Where the value of a member belongs; its type says what the value must be. What is not optional is
    /// required.
    using Slot =
        std::variant<std::monostate, std::string*, std::optional<std::string>*, Date*, DeletionModule*,
                     AllowedRoot*, JournalEntry::Result*, std::uint64_t*, std::optional<std::uint64_t>*,
                     std::int64_t*, bool*, std::optional<TrashedIdentity>*, std::optional<Persistent>*>;
    struct Member {
        std::string_view name;
        Slot slot;
    };

    /// The object whose members come.
    enum class Level : std::uint8_t { outside, entry, identity, persistent, ended };

    /// Gives the value to the member it belongs to. `store` is called with the member's slot and tells
    /// whether such a value fits.
    template <class Store>
    bool give(const Store& store);

    std::span<const Member> members() const;
    std::uint32_t& found() { return found_[static_cast<std::size_t>(level_)]; }
    bool isInObject() const { return level_ != Level::outside && level_ != Level::ended; }
    bool isSkipping() const { return skippedDepth_ > 0 || std::holds_alternative<std::monostate>(slot_); }
    bool enter(Level level);
    bool hasAllRequired();

    JournalEntry entry_;
    TrashedIdentity identity_;
    std::optional<TrashedIdentity>* identityTarget_ = nullptr; ///< the member that identity_ is read for
    Persistent persistent_;
    std::array<Member, 19> entryMembers_;
    std::array<Member, 5> identityMembers_;
    std::array<Member, 2> persistentMembers_;

    Level level_ = Level::outside;
    std::array<std::uint32_t, 5> found_{}; ///< by level, one bit per member that has its value
    Slot slot_;                            ///< of the member whose value comes; none for an unknown one
    std::uint32_t slotBit_ = 0;
    std::size_t skippedDepth_ = 0; ///< how many objects and arrays inside an unknown member are open
};

} // namespace orbel
