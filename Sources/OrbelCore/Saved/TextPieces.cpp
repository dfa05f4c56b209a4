#include "Saved/TextPieces.h"

#include "Util/ReadAt.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <new>
#include <span>

#define ZLIB_CONST
#include <zlib.h>
#include <zstd.h>

namespace orbel {

namespace {

using Piece = std::expected<std::string_view, std::string>;

constexpr std::size_t pieceBytes = 64 * 1024;
constexpr std::uint64_t largestFile = 8ULL * 1024 * 1024 * 1024;

Piece failed(std::string_view words) {
    return std::unexpected(std::string(words));
}

class FilePieces : public TextPieces {
public:
    explicit FilePieces(FileDescriptor file) : file_(std::move(file)) {}

    Piece next() override {
        const auto count = readAt(file_.get(), buffer_, bytes_);
        if (!count)
            return failed("The file could not be read");
        bytes_ += *count;
        if (bytes_ > largestFile)
            return failed("The file is too large to be read");
        return std::string_view(buffer_.data(), *count);
    }

private:
    FileDescriptor file_;
    std::array<char, pieceBytes> buffer_{};
    std::uint64_t bytes_ = 0;
};

class MemoryPieces : public TextPieces {
public:
    explicit MemoryPieces(std::string_view bytes) : rest_(bytes) {}

    Piece next() override {
        const auto piece = rest_.substr(0, pieceBytes);
        rest_.remove_prefix(piece.size());
        return piece;
    }

private:
    std::string_view rest_;
};

/// Takes one compressed form apart.
class Unpacker {
public:
    enum class State : std::uint8_t { between, inside, damaged }; ///< of the frames, one after another

    Unpacker() = default;
    Unpacker(const Unpacker&) = delete;
    Unpacker& operator=(const Unpacker&) = delete;
    virtual ~Unpacker() = default;

    /// Takes bytes from the front of `from` and appends to `into` as long as both have room. Whether the
    /// bytes so far may be the end.
    virtual State unpack(std::string_view& from, std::span<char>& into) = 0;
};

class GzipUnpacker : public Unpacker {
public:
    GzipUnpacker() {
        constexpr int gzipOnly = 16;
        if (inflateInit2(&stream_, MAX_WBITS + gzipOnly) != Z_OK)
            throw std::bad_alloc();
    }
    GzipUnpacker(const GzipUnpacker&) = delete;
    GzipUnpacker& operator=(const GzipUnpacker&) = delete;
    ~GzipUnpacker() override { inflateEnd(&stream_); }

    State unpack(std::string_view& from, std::span<char>& into) override {
        // Several files that were put together are one.
        if (isBetween_ && inflateReset(&stream_) != Z_OK)
            return State::damaged;
        stream_.next_in = reinterpret_cast<const Bytef*>(from.data());
        stream_.avail_in = static_cast<uInt>(from.size());
        stream_.next_out = reinterpret_cast<Bytef*>(into.data());
        stream_.avail_out = static_cast<uInt>(into.size());
        const int result = inflate(&stream_, Z_NO_FLUSH);
        from.remove_prefix(from.size() - stream_.avail_in);
        into = into.last(stream_.avail_out);
        isBetween_ = result == Z_STREAM_END;
        if (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR)
            return State::damaged;
        return isBetween_ ? State::between : State::inside;
    }

private:
    z_stream stream_{};
    bool isBetween_ = false;
};

class ZstdUnpacker : public Unpacker {
public:
    ZstdUnpacker() : context_(ZSTD_createDCtx()) {
        if (!context_)
            throw std::bad_alloc();
    }

    State unpack(std::string_view& from, std::span<char>& into) override {
        ZSTD_inBuffer input{.src = from.data(), .size = from.size(), .pos = 0};
        ZSTD_outBuffer output{.dst = into.data(), .size = into.size(), .pos = 0};
        const auto result = ZSTD_decompressStream(context_.get(), &output, &input);
        from.remove_prefix(input.pos);
        into = into.subspan(output.pos);
        if (ZSTD_isError(result) != 0)
            return State::damaged;
        return result == 0 ? State::between : State::inside;
    }

private:
    struct FreeContext {
        void operator()(ZSTD_DCtx* context) const { ZSTD_freeDCtx(context); }
    };
    std::unique_ptr<ZSTD_DCtx, FreeContext> context_;
};

std::unique_ptr<Unpacker> unpackerOf(std::string_view beginning) {
    if (beginning.starts_with("\x1F\x8B"))
        return std::make_unique<GzipUnpacker>();
    if (beginning.starts_with("\x28\xB5\x2F\xFD"))
        return std::make_unique<ZstdUnpacker>();
    return nullptr;
}

class UnpackedPieces : public TextPieces {
public:
    explicit UnpackedPieces(std::unique_ptr<TextPieces> raw) : raw_(std::move(raw)) {}

    Piece next() override {
        if (!hasBegun_) {
            const auto first = takeRaw();
            if (!first)
                return first;
            unpacker_ = unpackerOf(*first);
            hasBegun_ = true;
            if (!unpacker_)
                return first;
        }
        return unpacker_ ? unpackedPiece() : raw_->next();
    }

private:
    Piece takeRaw() {
        auto piece = raw_->next();
        if (piece) {
            rest_ = *piece;
            packedBytes_ += rest_.size();
        }
        return piece;
    }

    /// What was unpacked before something failed is still given.
    Piece unpackedPiece() {
        std::span<char> room(buffer_);
        while (failure_.empty() && !room.empty() && !isAtEnd())
            unpackInto(room);
        const auto size = buffer_.size() - room.size();
        if (!failure_.empty() && size == 0)
            return std::unexpected(failure_);
        return std::string_view(buffer_.data(), size);
    }

    bool isAtEnd() {
        if (rest_.empty())
            if (const auto more = takeRaw(); !more)
                failure_ = more.error();
        return rest_.empty() && state_ == Unpacker::State::between;
    }

    void unpackInto(std::span<char>& room) {
        constexpr std::uint64_t fewBytes = 256ULL * 1024 * 1024;
        constexpr std::uint64_t mostPerByte = 64;
        const bool isLast = rest_.empty();
        const auto before = room.size();
        state_ = unpacker_->unpack(rest_, room);
        unpackedBytes_ += before - room.size();
        if (state_ == Unpacker::State::damaged)
            failure_ = "The compressed file is damaged";
        else if (isLast && room.size() == before)
            failure_ = "The compressed file ends too early";
        else if (unpackedBytes_ > std::max(fewBytes, packedBytes_ * mostPerByte))
            failure_ = "The compressed file holds more than can be true of a scan";
    }

    std::unique_ptr<TextPieces> raw_;
    std::unique_ptr<Unpacker> unpacker_;
    bool hasBegun_ = false;
    Unpacker::State state_ = Unpacker::State::inside;
    std::string_view rest_; ///< of the compressed bytes that were read
    std::string failure_;   ///< empty while nothing has failed
    std::uint64_t packedBytes_ = 0;
    std::uint64_t unpackedBytes_ = 0;
    std::array<char, pieceBytes> buffer_{};
};

} // namespace

std::unique_ptr<TextPieces> textPieces(FileDescriptor file) {
    return std::make_unique<UnpackedPieces>(std::make_unique<FilePieces>(std::move(file)));
}

std::unique_ptr<TextPieces> textPieces(std::string_view bytes) {
    return std::make_unique<UnpackedPieces>(std::make_unique<MemoryPieces>(bytes));
}

} // namespace orbel
