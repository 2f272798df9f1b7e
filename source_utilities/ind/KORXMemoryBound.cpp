#include <korx/KORXDynamicArray.h>

#include "internal/Platform.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr uint32_t kGuardWord = 0xDEADBEEF;
constexpr size_t kGuardBytes = 16;

struct Guard {
    uint32_t words[4];
};

// Plain process-wide counters, unlocked like the rest of the library's state.
uint32_t g_serial = 0;
size_t g_total = 0;
size_t g_peak = 0;

Guard readGuard(const unsigned char* at) {
    Guard guard;
    std::memcpy(&guard, at, sizeof guard);
    return guard;
}

void writeGuard(unsigned char* at, uint32_t a, uint32_t b, uint32_t c, uint32_t d) {
    const Guard guard{{a, b, c, d}};
    std::memcpy(at, &guard, sizeof guard);
}

}  // namespace

void* KORXMemoryBoundAllocate(size_t size) {
    // The guards hold the size in 32 bits: larger blocks are refused.
    if (size > UINT32_MAX)
        return nullptr;
    auto* block = static_cast<unsigned char*>(std::malloc(size + 2 * kGuardBytes));
    if (block == nullptr)
        return nullptr;
    const uint32_t serial = ++g_serial;
    const auto size32 = static_cast<uint32_t>(size);
    writeGuard(block, size32, serial, kGuardWord, kGuardWord);
    writeGuard(block + kGuardBytes + size, kGuardWord, kGuardWord, serial, size32);
    g_total += size;
    if (g_total > g_peak)
        g_peak = g_total;
    return block + kGuardBytes;
}

void KORXMemoryBoundFree(void* p) {
    if (p == nullptr)
        return;
    unsigned char* block = static_cast<unsigned char*>(p) - kGuardBytes;
    const Guard front = readGuard(block);
    const uint32_t size = front.words[0];
    // A damaged front size could point the back guard outside the block: then the back guard
    // is reported as zeros instead of being read.
    Guard back{{0, 0, 0, 0}};
    if (size + 2 * kGuardBytes <= korx::detail::AllocatedSize(block))
        back = readGuard(block + kGuardBytes + size);
    const bool intact = front.words[0] == back.words[3] && front.words[1] == back.words[2] &&
                        front.words[2] == kGuardWord && front.words[3] == kGuardWord &&
                        back.words[0] == kGuardWord && back.words[1] == kGuardWord;
    if (!intact) {
        std::printf("*** Error memory boundary overwrite: szeF=%d, cntF=%d, db0=0x%x, db1=0x%x, "
                    "db2=0x%x, db3=0x%x, cntB=%d, szeB=%d\n",
                    static_cast<int>(front.words[0]), static_cast<int>(front.words[1]),
                    front.words[2], front.words[3], back.words[0], back.words[1],
                    static_cast<int>(back.words[2]), static_cast<int>(back.words[3]));
    }
    g_total -= size;
    std::free(block);
}

size_t KORXMemoryBoundGetTotal() { return g_total; }

size_t KORXMemoryBoundGetPeak() { return g_peak; }
