#include "Util/PageArray.h"

#include <new>

#include <sys/mman.h>

namespace orbel::pages {

void* map(std::size_t bytes) {
    void* const address = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (address == MAP_FAILED)
        throw std::bad_alloc();
    return address;
}

void unmap(void* address, std::size_t bytes) noexcept {
    ::munmap(address, bytes);
}

} // namespace orbel::pages
