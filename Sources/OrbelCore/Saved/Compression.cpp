#include "Saved/Compression.h"

#include <memory>
#include <new>
#include <utility>
#include <zstd.h>

namespace orbel {

namespace {

/// Higher ones take longer than they save.
constexpr int level = 3;

struct FreeContext {
    void operator()(ZSTD_CCtx* context) const { ZSTD_freeCCtx(context); }
    void operator()(ZSTD_DCtx* context) const { ZSTD_freeDCtx(context); }
};

} // namespace

Packed packed(std::string_view bytes) {
    const std::unique_ptr<ZSTD_CCtx, FreeContext> context(ZSTD_createCCtx());
    if (!context)
        throw std::bad_alloc();
    ZSTD_CCtx_setParameter(context.get(), ZSTD_c_compressionLevel, level);
    ZSTD_CCtx_setParameter(context.get(), ZSTD_c_checksumFlag, 1);
    std::string frame(ZSTD_compressBound(bytes.size()), '\0');
    const auto size = ZSTD_compress2(context.get(), frame.data(), frame.size(), bytes.data(), bytes.size());
    if (ZSTD_isError(size) != 0)
        throw std::bad_alloc(); // the only way to fail with room for the result
    frame.resize(size);
    frame.shrink_to_fit();
    return {.frame = std::move(frame), .size = bytes.size()};
}

std::optional<std::string> unpacked(const Frame& frame) {
    const auto& [from, size] = frame;
    if (ZSTD_getFrameContentSize(from.data(), from.size()) != size
        || ZSTD_findFrameCompressedSize(from.data(), from.size()) != from.size())
        return std::nullopt;
    const std::unique_ptr<ZSTD_DCtx, FreeContext> context(ZSTD_createDCtx());
    if (!context)
        throw std::bad_alloc();
    std::string bytes(size, '\0');
    const auto got = ZSTD_decompressDCtx(context.get(), bytes.data(), size, from.data(), from.size());
    return got == size ? std::optional(std::move(bytes)) : std::nullopt;
}

} // namespace orbel
