#include <korx/KORXDynamicArray.h>

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <tuple>
#include <vector>

#include "support/registry.h"

TEST(StartupRegistry, KeepsWhatStaticInitialisersRegisteredBeforeItsOwnTurn) {
    EXPECT_EQ(StartupRegistrySizeAtItsOwnInit(), 2);
    ASSERT_EQ(g_startupRegistry.size(), 2);
    EXPECT_STREQ(g_startupRegistry[0], "first");
    EXPECT_STREQ(g_startupRegistry[1], "second");
}

namespace {

using Ints = std::vector<int>;
using HeaderCall = std::function<int(KORXArrayHeader*&)>;

// An int array owned by one test, released when the test leaves its scope.
struct IntArray {
    IntArray(int capacity, const Ints& values) : h(korxArrayAllocate(capacity, sizeof(int))) {
        for (int v : values)
            korxArrayAdd(h, &v);
    }
    IntArray(const IntArray&) = delete;
    IntArray& operator=(const IntArray&) = delete;
    ~IntArray() { korxArrayFree(h); }

    int* slots() const { return static_cast<int*>(h->data); }
    Ints items() const { return Ints(slots(), slots() + h->count); }
    Ints block() const { return Ints(slots(), slots() + h->capacity); }

    KORXArrayHeader* h;
};

auto Fields(const KORXArrayHeader& h) {
    return std::make_tuple(h.check, h.capacity, h.count, h.elementSize, h.factor, h.shareCount,
                           h.data);
}

Ints Range(int first, int last) {
    Ints values;
    for (int v = first; v <= last; ++v)
        values.push_back(v);
    return values;
}

Ints Join(Ints a, const Ints& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

}  // namespace

TEST(ArrayAllocate, RefusesEmptyOrImpossibleBlocksAndStartsZeroed) {
    const std::array<int, 2> refused[] = {{0, 8}, {8, 0}, {-1, 4}, {4, -1}, {1 << 30, 1 << 30}};
    for (const auto& [capacity, elementSize] : refused)
        EXPECT_EQ(korxArrayAllocate(capacity, elementSize), nullptr)
            << capacity << " x " << elementSize;

    KORXArrayHeader* h = korxArrayAllocate(5, 3);
    ASSERT_NE(h, nullptr);
    EXPECT_EQ(Fields(*h), std::make_tuple(h->data, 5, 0, 3, 1.5f, 0, h->data));
    EXPECT_EQ(std::string(static_cast<char*>(h->data), 15), std::string(15, '\0'));
    korxArrayFree(h);
}

TEST(ArrayGrowth, ReallocKeepsTheWholeOldBlockAndZeroesTheNewSlots) {
    const std::pair<int, Ints> cases[] = {{10, {16, 25, 38, 58, 88, 133}}, {1, {2, 4, 7, 11}}};
    for (const auto& [start, grown] : cases) {
        KORXArrayHeader* h = korxArrayAllocate(start, 3);
        // The count stays 0: bytes beyond it must survive too.
        for (int i = 0; i < 3 * start; ++i)
            static_cast<char*>(h->data)[i] = static_cast<char>(i % 100 + 1);
        for (int capacity : grown) {
            SCOPED_TRACE(capacity);
            const std::string old(static_cast<char*>(h->data), 3 * h->capacity);
            ASSERT_EQ(korxArrayRealloc(h), 1);
            EXPECT_EQ(std::make_tuple(h->capacity, h->count, h->check),
                      std::make_tuple(capacity, 0, h->data));
            const std::string now(static_cast<char*>(h->data), 3 * capacity);
            EXPECT_EQ(now, old + std::string(now.size() - old.size(), '\0'));
        }
        korxArrayFree(h);
    }
}

TEST(ArrayGrowth, AddGrowsOnlyWhenFull) {
    IntArray a(10, {});
    Ints capacities;
    for (int v = 0; v < 17; ++v) {
        ASSERT_EQ(korxArrayAdd(a.h, &v), 1);
        capacities.push_back(a.h->capacity);
    }
    Ints expected(10, 10);
    expected.insert(expected.end(), {16, 16, 16, 16, 16, 16, 25});
    EXPECT_EQ(capacities, expected);
    EXPECT_EQ(a.items(), Range(0, 16));
}

TEST(ArrayGrowth, AnArrayThatCannotGrowIsLeftUntouched) {
    char element = 'z';
    const std::tuple<const char*, int, HeaderCall> cases[] = {
        {"realloc", INT_MAX, [](KORXArrayHeader*& h) { return korxArrayRealloc(h); }},
        {"add when full", INT_MAX, [&](KORXArrayHeader*& h) { return korxArrayAdd(h, &element); }},
        // An insert inside the array grows one slot before it is full.
        {"insert one slot short of full", INT_MAX - 1,
         [&](KORXArrayHeader*& h) { return korxArrayInsertAt(h, 0, &element); }},
        {"insert when full", INT_MAX,
         [&](KORXArrayHeader*& h) { return korxArrayInsertAt(h, 0, &element); }},
        {"append to itself", INT_MAX - 1,
         [](KORXArrayHeader*& h) { return korxArrayAppend(h, h); }},
    };
    for (const auto& [name, count, call] : cases) {
        SCOPED_TRACE(name);
        char buffer[8] = "abcdefg";
        KORXArrayHeader forged{buffer, INT_MAX, count, 1, 1.5f, 0, buffer};
        KORXArrayHeader* h = &forged;
        EXPECT_EQ(call(h), 0);
        EXPECT_EQ(h, &forged);
        EXPECT_EQ(Fields(forged), std::make_tuple(buffer, INT_MAX, count, 1, 1.5f, 0, buffer));
        EXPECT_STREQ(buffer, "abcdefg");
    }
}

TEST(ArrayHeaderChecks, EveryFunctionRefusesNullAndInvalidHeaders) {
    IntArray valid(4, {1, 2});
    int element = 7;
    const std::pair<const char*, HeaderCall> cases[] = {
        {"add", [&](KORXArrayHeader*& h) { return korxArrayAdd(h, &element); }},
        {"insertAt", [&](KORXArrayHeader*& h) { return korxArrayInsertAt(h, 0, &element); }},
        {"removeAt", [](KORXArrayHeader*& h) { return korxArrayRemoveAt(h, 0); }},
        {"setAt", [&](KORXArrayHeader*& h) { return korxArraySetAt(h, 0, &element); }},
        {"append into", [&](KORXArrayHeader*& h) { return korxArrayAppend(h, valid.h); }},
        {"append from", [&](KORXArrayHeader*& h) { return korxArrayAppend(valid.h, h); }},
        {"append to itself", [](KORXArrayHeader*& h) { return korxArrayAppend(h, h); }},
        {"check", [](KORXArrayHeader*& h) { return korxArrayCheck(h); }},
        {"clear", [](KORXArrayHeader*& h) { return korxArrayClear(h); }},
        {"count", [](KORXArrayHeader*& h) { return korxArrayCount(h); }},
        {"realloc", [](KORXArrayHeader*& h) { return korxArrayRealloc(h); }},
        // An invalid header comes back as it is, without a new share.
        {"copy", [](KORXArrayHeader*& h) { return korxArrayCopy(h) == h ? 0 : 1; }},
        {"free", [](KORXArrayHeader*& h) { return korxArrayFree(h), 0; }},
    };
    for (const auto& [name, call] : cases) {
        SCOPED_TRACE(name);
        KORXArrayHeader* none = nullptr;
        EXPECT_EQ(call(none), 0);
        EXPECT_EQ(none, nullptr);
        int buffer[4] = {1, 2, 3, 4};
        // A released header (its word cleared) and one whose word points elsewhere.
        for (void* word : {static_cast<void*>(nullptr), static_cast<void*>(buffer + 1)}) {
            KORXArrayHeader forged{word, 4, 2, sizeof(int), 1.5f, 0, buffer};
            KORXArrayHeader* h = &forged;
            EXPECT_EQ(call(h), 0);
            EXPECT_EQ(h, &forged);
            EXPECT_EQ(Fields(forged), std::make_tuple(word, 4, 2, 4, 1.5f, 0, buffer));
            EXPECT_EQ(Ints(buffer, buffer + 4), Range(1, 4));
        }
        EXPECT_EQ(std::make_pair(valid.items(), valid.h->capacity), std::make_pair(Ints{1, 2}, 4));
    }
}

TEST(ArrayInsertAt, InsertsBeforeTheIndexAndAppendsFromTheCountOn) {
    // name, capacity holding {1, 2, 3}, index, result, items, capacity afterwards
    const std::tuple<const char*, int, int, int, Ints, int> cases[] = {
        {"front", 10, 0, 1, {9, 1, 2, 3}, 10},
        {"middle", 10, 2, 1, {1, 2, 9, 3}, 10},
        {"at the count", 10, 3, 1, {1, 2, 3, 9}, 10},
        {"past the count", 10, 8, 1, {1, 2, 3, 9}, 10},
        // Callers rely on an insert inside the array growing one slot before it is full,
        // while an append at the same count fills the last slot.
        {"inside, one slot left", 4, 1, 1, {1, 9, 2, 3}, 7},
        {"append, one slot left", 4, 3, 1, {1, 2, 3, 9}, 4},
        {"append when full", 3, 5, 1, {1, 2, 3, 9}, 5},
        {"negative index", 4, -1, 0, {1, 2, 3}, 4},
    };
    for (const auto& [name, capacity, index, result, items, after] : cases) {
        SCOPED_TRACE(name);
        IntArray a(capacity, {1, 2, 3});
        int element = 9;
        EXPECT_EQ(korxArrayInsertAt(a.h, index, &element), result);
        EXPECT_EQ(a.items(), items);
        EXPECT_EQ(a.h->capacity, after);
    }
}

TEST(ArrayRemoveAt, ShiftsDownAndLeavesTheVacatedSlotAsItWas) {
    // index, result, the whole 4-slot block afterwards
    const std::tuple<int, int, Ints> cases[] = {{0, 1, {2, 3, 4, 4}},
                                                {1, 1, {1, 3, 4, 4}},
                                                {3, 1, {1, 2, 3, 4}},
                                                {4, 0, {1, 2, 3, 4}},
                                                {-1, 0, {1, 2, 3, 4}}};
    for (const auto& [index, result, block] : cases) {
        SCOPED_TRACE(index);
        IntArray a(4, {1, 2, 3, 4});
        EXPECT_EQ(korxArrayRemoveAt(a.h, index), result);
        EXPECT_EQ(a.block(), block);
        EXPECT_EQ(a.h->count, 4 - result);
    }
}

TEST(ArraySetAt, OverwritesOnlySlotsInUse) {
    const std::tuple<int, int, Ints> cases[] = {
        {0, 1, {9, 2, 3, 0}}, {2, 1, {1, 2, 9, 0}}, {3, 0, {1, 2, 3, 0}}, {-1, 0, {1, 2, 3, 0}}};
    for (const auto& [index, result, block] : cases) {
        SCOPED_TRACE(index);
        IntArray a(4, {1, 2, 3});
        int element = 9;
        EXPECT_EQ(korxArraySetAt(a.h, index, &element), result);
        EXPECT_EQ(a.block(), block);
    }
}

TEST(ArrayPassedElements, AnElementOfTheArrayItselfSurvivesTheBlockMoving) {
    IntArray full(2, {5, 6});
    EXPECT_EQ(korxArrayAdd(full.h, &full.slots()[0]), 1);
    EXPECT_EQ(full.items(), (Ints{5, 6, 5}));
    IntArray almost(4, {1, 2, 3});
    EXPECT_EQ(korxArrayInsertAt(almost.h, 0, &almost.slots()[2]), 1);
    EXPECT_EQ(almost.items(), (Ints{3, 1, 2, 3}));
    EXPECT_EQ(almost.h->capacity, 7);
}

TEST(ArrayAppend, RepeatsTheDestinationsOwnLeadingElements) {
    // The source's bytes are never read: callers rely on the destination's slots 0 .. n-1,
    // as they were before the call, landing at its end. Two slots of each block are in use.
    const std::tuple<const char*, Ints, int, Ints> cases[] = {
        {"shorter source", {1, 2, 3, 4, 5, 6}, 1, {1, 2, 1}},
        {"source longer than the destination", {1, 2, 3, 4}, 5, {1, 2, 1, 2, 3, 4, 0}},
        {"two growths", {5, 6}, 5, {5, 6, 5, 6, 0, 0, 0}},
        {"empty source", {5, 6}, 0, {5, 6}},
    };
    for (const auto& [name, block, sourceCount, items] : cases) {
        SCOPED_TRACE(name);
        IntArray destination(static_cast<int>(block.size()), block);
        destination.h->count = 2;
        IntArray source(1, Ints(sourceCount, 77));
        EXPECT_EQ(korxArrayAppend(destination.h, source.h), 1);
        EXPECT_EQ(destination.items(), items);
        EXPECT_EQ(source.items(), Ints(sourceCount, 77));
    }

    IntArray self(4, {1, 2, 3});
    EXPECT_EQ(korxArrayAppend(self.h, self.h), 1);
    EXPECT_EQ(self.items(), (Ints{1, 2, 3, 1, 2, 3}));

    KORXArrayHeader* bytes = korxArrayAllocate(4, 1);
    char b = 'b';
    korxArrayAdd(bytes, &b);
    EXPECT_EQ(korxArrayAppend(self.h, bytes), 0);
    EXPECT_EQ(self.items(), (Ints{1, 2, 3, 1, 2, 3}));
    korxArrayFree(bytes);
}

TEST(ArraySharing, CopySharesTheHeaderAndOnlyTheLastFreeReleasesIt) {
    KORXArrayHeader* owner = korxArrayAllocate(4, 4);
    KORXArrayHeader* second = korxArrayCopy(owner);
    KORXArrayHeader* third = korxArrayCopy(owner);
    EXPECT_EQ(std::make_tuple(second, third, owner->shareCount), std::make_tuple(owner, owner, 2));
    korxArrayFree(third);
    EXPECT_EQ(std::make_pair(third, owner->shareCount), std::make_pair(owner, 1));
    korxArrayFree(second);
    EXPECT_EQ(std::make_pair(second, owner->shareCount), std::make_pair(owner, 0));
    korxArrayFree(owner);
    EXPECT_EQ(owner, nullptr);
}

namespace {

// Counts live objects and notices using or destroying one that is already gone.
struct Tracked {
    static inline int live = 0, misuse = 0;

    Tracked(int v = -1) : value(v) { ++live; }
    Tracked(const Tracked& other) : value(other.value) {
        misuse += !other.alive;
        ++live;
    }
    Tracked& operator=(const Tracked& other) {
        misuse += !alive || !other.alive;
        value = other.value;
        return *this;
    }
    ~Tracked() {
        misuse += !alive;
        alive = false;
        --live;
    }

    int value;
    bool alive = true;
};

using Array = KORXDynamicArray<Tracked>;

Ints Values(const Array& a) {
    Ints values;
    for (int i = 0; i < a.size(); ++i)
        values.push_back(a[i].value);
    return values;
}

class DynamicArray : public testing::Test {
protected:
    void SetUp() override { Tracked::live = Tracked::misuse = 0; }
    void TearDown() override {
        EXPECT_EQ(Tracked::live, 0) << "elements leaked or destroyed twice";
        EXPECT_EQ(Tracked::misuse, 0);
    }
};

}  // namespace

TEST_F(DynamicArray, MutatorsConstructAndDestroyEachElementOnce) {
    const Ints all = Range(0, 14), two = {-1, -1};
    // 15 elements in 16 slots: an insert inside the array and a second add both grow it.
    const std::tuple<const char*, std::function<bool(Array&)>, Ints> cases[] = {
        {"removeAt first", [](Array& a) { return a.removeAt(0); }, Range(1, 14)},
        {"removeAt last", [](Array& a) { return a.removeAt(14); }, Range(0, 13)},
        {"insert front", [](Array& a) { return a.insert(0, 99), true; }, Join({99}, all)},
        {"insert middle", [](Array& a) { return a.insert(5, 99), true; },
         Join(Range(0, 4), Join({99}, Range(5, 14)))},
        {"insert at size", [](Array& a) { return a.insert(15, 99), true; }, Join(all, {99})},
        {"endGrow", [](Array& a) { return a.endGrow(2); }, Join(all, two)},
        {"endGrow none", [](Array& a) { return a.endGrow(-1); }, all},
        {"frontGrow", [](Array& a) { return a.frontGrow(2); }, Join(two, all)},
        {"endShrink", [](Array& a) { return a.endShrink(3); }, Range(0, 11)},
        {"frontShrink", [](Array& a) { return a.frontShrink(3); }, Range(3, 14)},
        {"resize up", [](Array& a) { return a.resize(17); }, Join(all, two)},
        {"resize down", [](Array& a) { return a.resize(2); }, Range(0, 1)},
        {"resize to size", [](Array& a) { return a.resize(a.size()); }, all},
        {"reverse", [](Array& a) { return a.reverse(), true; }, Ints(all.rbegin(), all.rend())},
        {"clear", [](Array& a) { return a.clear(), true; }, {}},
        {"purge", [](Array& a) { return a.purge(), true; }, {}},
    };
    for (const auto& [name, op, values] : cases) {
        SCOPED_TRACE(name);
        {
            Array a;
            for (int v : all)
                a.add(Tracked(v));
            EXPECT_TRUE(op(a));
            EXPECT_EQ(Values(a), values);
            EXPECT_EQ(Tracked::live, a.size());
        }
        EXPECT_EQ(Tracked::live, 0);
    }
}

TEST_F(DynamicArray, FillConstructorSizesTheBlockToTheCount) {
    // n, size, capacity
    const std::array<int, 3> cases[] = {{-2, 0, 10}, {0, 0, 10}, {1, 1, 1}, {12, 12, 12}};
    for (const auto& [n, size, capacity] : cases) {
        SCOPED_TRACE(n);
        const Array a(n, Tracked(8));
        EXPECT_EQ(Values(a), Ints(size, 8));
        EXPECT_EQ(a.getHeader()->capacity, capacity);
        EXPECT_EQ(Tracked::live, size);
    }
}

TEST_F(DynamicArray, CopiesShareOneArrayAndCopyMakesAnIndependentOne) {
    Array a;
    a.add(Tracked(1));
    Array b(a);
    EXPECT_TRUE(a == b);
    EXPECT_EQ(a.getHash(), b.getHash());
    b.add(Tracked(2));
    a[0].value = 5;
    EXPECT_EQ(Values(a), (Ints{5, 2}));
    EXPECT_EQ(Values(b), (Ints{5, 2}));

    Array deep = a.copy();
    EXPECT_TRUE(deep != a);
    EXPECT_EQ(deep.getHeader()->shareCount, 0);
    EXPECT_EQ(Values(deep), (Ints{5, 2}));
    deep[0].value = 9;
    deep.add(Tracked(3));
    EXPECT_EQ(Values(a), (Ints{5, 2}));
    EXPECT_EQ(Tracked::live, 5);
}

TEST_F(DynamicArray, OnlyTheLastHolderDestroysTheElements) {
    Array a(3, Tracked(1));
    Array b(2, Tracked(2));
    Array keeper(b);
    b = a;  // keeper still holds b's old elements
    EXPECT_TRUE(b == a);
    EXPECT_EQ(Values(keeper), (Ints{2, 2}));
    EXPECT_EQ(Tracked::live, 5);
    keeper = a;  // the last holder of {2, 2} lets go
    EXPECT_EQ(Tracked::live, 3);
    const Array& same = a;
    a = same;
    keeper = b;
    { const Array gone(a); }
    EXPECT_EQ(a.getHeader()->shareCount, 2);
    EXPECT_EQ(Values(keeper), (Ints{1, 1, 1}));
    EXPECT_EQ(Tracked::live, 3);
}

TEST_F(DynamicArray, ClearingASharedArrayEmptiesEveryHolderOnce) {
    Array a(4, Tracked(7));
    Array b(a);
    b.clear();
    EXPECT_EQ(Tracked::live, 0);
    EXPECT_EQ(a.size(), 0);
    EXPECT_EQ(a.getHeader()->capacity, 4);
    a.add(Tracked(1));
    EXPECT_EQ(Values(b), (Ints{1}));
}

TEST_F(DynamicArray, AddingAnElementOfTheArrayItselfSurvivesGrowth) {
    Array full;
    for (int v = 0; v < 10; ++v)
        full.add(Tracked(v));
    full[0].value = 42;
    full.add(full[0]);  // read from the block that the growth moves
    EXPECT_EQ(full.getHeader()->capacity, 16);
    EXPECT_EQ(Values(full), Join(Join({42}, Range(1, 9)), {42}));

    Array almost(4, Tracked(0));
    almost.removeAt(3);
    almost[2].value = 2;
    almost.insert(0, almost[2]);  // grows one slot early
    EXPECT_EQ(almost.getHeader()->capacity, 7);
    EXPECT_EQ(Values(almost), (Ints{2, 0, 0, 2}));
    EXPECT_EQ(Tracked::live, 15);
}

namespace {

using Guard = std::array<uint32_t, 4>;
constexpr uint32_t kBeef = 0xDEADBEEF;

Guard GuardAt(const unsigned char* at) {
    Guard words;
    std::memcpy(words.data(), at, sizeof words);
    return words;
}

// Frees p and returns what the free printed.
std::string FreePrinting(void* p) {
    testing::internal::CaptureStdout();
    KORXMemoryBoundFree(p);
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

}  // namespace

TEST(MemoryBound, GuardsCarryTheSizeAndConsecutiveSerials) {
    const size_t total = KORXMemoryBoundGetTotal();
    auto* p = static_cast<unsigned char*>(KORXMemoryBoundAllocate(24));
    auto* q = static_cast<unsigned char*>(KORXMemoryBoundAllocate(5));
    ASSERT_TRUE(p != nullptr && q != nullptr);
    const uint32_t serial = GuardAt(p - 16)[1];
    EXPECT_EQ(GuardAt(p - 16), (Guard{24, serial, kBeef, kBeef}));
    EXPECT_EQ(GuardAt(p + 24), (Guard{kBeef, kBeef, serial, 24}));
    EXPECT_EQ(GuardAt(q - 16), (Guard{5, serial + 1, kBeef, kBeef}));
    EXPECT_EQ(GuardAt(q + 5), (Guard{kBeef, kBeef, serial + 1, 5}));
    EXPECT_EQ(KORXMemoryBoundGetTotal(), total + 29);
    EXPECT_EQ(FreePrinting(p) + FreePrinting(q), "");
    EXPECT_EQ(KORXMemoryBoundGetTotal(), total);
}

TEST(MemoryBound, CountersFollowTheBytesHeldAndRefusals) {
    const size_t total = KORXMemoryBoundGetTotal();
    const size_t peak = KORXMemoryBoundGetPeak();
    EXPECT_EQ(KORXMemoryBoundAllocate(size_t{UINT32_MAX} + 1), nullptr);
    EXPECT_EQ(FreePrinting(nullptr), "");
    EXPECT_EQ(std::make_pair(KORXMemoryBoundGetTotal(), KORXMemoryBoundGetPeak()),
              std::make_pair(total, peak));
    const size_t size = peak - total + 64;  // takes the total above every earlier peak
    KORXMemoryBoundFree(KORXMemoryBoundAllocate(size));
    EXPECT_EQ(std::make_pair(KORXMemoryBoundGetTotal(), KORXMemoryBoundGetPeak()),
              std::make_pair(total, total + size));
}

TEST(MemoryBound, ADamagedGuardIsReportedAndTheBlockStillFreed) {
    // where one byte is overwritten, its new value, the field of the report that shows it
    const std::tuple<const char*, int, unsigned char, std::string> cases[] = {
        {"one byte past the end", 24, 0x41, "db2=0xdeadbe41"},
        {"one byte before the start", -1, 0x00, "db1=0xadbeef"},
        {"back size", 36, 99, "szeB=99"},
    };
    for (const auto& [name, offset, byte, field] : cases) {
        SCOPED_TRACE(name);
        const size_t total = KORXMemoryBoundGetTotal();
        auto* p = static_cast<unsigned char*>(KORXMemoryBoundAllocate(24));
        ASSERT_NE(p, nullptr);
        const std::string serial = std::to_string(GuardAt(p - 16)[1]);
        p[offset] = byte;
        std::string expected = "*** Error memory boundary overwrite: szeF=24, cntF=" + serial +
                               ", db0=0xdeadbeef, db1=0xdeadbeef, db2=0xdeadbeef, "
                               "db3=0xdeadbeef, cntB=" +
                               serial + ", szeB=24\n";
        const size_t at = expected.find(field.substr(0, field.find('=') + 1));
        expected.replace(at, expected.find_first_of(",\n", at) - at, field);
        EXPECT_EQ(FreePrinting(p), expected);
        EXPECT_EQ(KORXMemoryBoundGetTotal(), total);
    }
}
