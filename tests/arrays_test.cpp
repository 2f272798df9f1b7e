#include <korx/KORXDynamicArray.h>

#include <gtest/gtest.h>

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
    EXPECT_EQ(std::string(g_startupRegistry[0]) + " " + g_startupRegistry[1], "first second");
}

namespace {

using Ints = std::vector<int>;
using Header = KORXArrayHeader*;

// An int array owned by one test, released when the test leaves its scope.
struct IntArray {
    IntArray(int capacity, const Ints& values) : h(korxArrayAllocate(capacity, sizeof(int))) {
        for (int v : values)
            korxArrayAdd(h, &v);
    }
    ~IntArray() { korxArrayFree(h); }

    int* slots() const { return static_cast<int*>(h->data); }
    Ints items() const { return Ints(slots(), slots() + h->count); }
    Ints block() const { return Ints(slots(), slots() + h->capacity); }

    Header h;
};

auto Fields(const KORXArrayHeader& h) {
    return std::make_tuple(h.check, h.capacity, h.count, h.elementSize, h.factor, h.shareCount,
                           h.data);
}

}  // namespace

TEST(ArrayGrowth, AllocateStartsZeroedAndReallocKeepsTheOldBlockAndZeroesTheNewSlots) {
    const std::pair<int, int> refused[] = {{0, 8}, {8, 0}, {-1, 4}, {4, -1}, {1 << 30, 1 << 30}};
    for (const auto& [n, size] : refused)  // element slots, bytes each
        EXPECT_EQ(korxArrayAllocate(n, size), nullptr) << n << " x " << size;

    const std::pair<int, Ints> cases[] = {{10, {16, 25, 38}}, {1, {2, 4, 7}}};
    for (const auto& [start, grown] : cases) {
        Header h = korxArrayAllocate(start, 3);
        ASSERT_NE(h, nullptr);
        EXPECT_EQ(Fields(*h), std::make_tuple(h->data, start, 0, 3, 1.5f, 0, h->data));
        EXPECT_EQ(std::string(static_cast<char*>(h->data), 3 * start), std::string(3 * start, 0));
        // The count stays 0: bytes beyond it must survive too.
        for (int i = 0; i < 3 * start; ++i)
            static_cast<char*>(h->data)[i] = static_cast<char>(i % 100 + 1);
        for (int capacity : grown) {
            const std::string old(static_cast<char*>(h->data), 3 * h->capacity);
            ASSERT_EQ(korxArrayRealloc(h), 1);
            EXPECT_EQ(std::make_tuple(h->capacity, h->count, h->check),
                      std::make_tuple(capacity, 0, h->data));
            const std::string now(static_cast<char*>(h->data), 3 * capacity);
            EXPECT_EQ(now, old + std::string(now.size() - old.size(), '\0')) << capacity;
        }
        korxArrayFree(h);
    }
}

TEST(ArrayRefusals, BadHeadersAndImpossibleGrowthsLeaveEverythingUntouched) {
    IntArray valid(4, {1, 2});
    int element = 7;
    // Each call, and the count at which a valid header of INT_MAX slots cannot grow for it
    // (0: the call does not grow). An insert inside the array grows one slot before it is full.
    const std::pair<std::function<int(Header&)>, int> cases[] = {
        {[&](Header& h) { return korxArrayAdd(h, &element); }, INT_MAX},
        {[&](Header& h) { return korxArrayInsertAt(h, 0, &element); }, INT_MAX - 1},
        {[](Header& h) { return korxArrayRemoveAt(h, 0); }, 0},
        {[&](Header& h) { return korxArraySetAt(h, 0, &element); }, 0},
        {[&](Header& h) { return korxArrayAppend(h, valid.h); }, INT_MAX - 1},
        {[&](Header& h) { return korxArrayAppend(valid.h, h); }, INT_MAX - 1},
        {[](Header& h) { return korxArrayAppend(h, h); }, INT_MAX - 1},
        {[](Header& h) { return korxArrayCheck(h); }, 0},
        {[](Header& h) { return korxArrayClear(h); }, 0},
        {[](Header& h) { return korxArrayCount(h); }, 0},
        {[](Header& h) { return korxArrayRealloc(h); }, 1},
        {[](Header& h) { return korxArrayCopy(h) == h ? 0 : 1; }, 0},  // no share is added
        {[](Header& h) { return korxArrayFree(h), 0; }, 0},
    };
    for (size_t i = 0; i < std::size(cases); ++i) {
        SCOPED_TRACE(i);
        const auto& [call, fullCount] = cases[i];
        Header none = nullptr;
        EXPECT_EQ(call(none), 0);
        EXPECT_EQ(none, nullptr);
        int buffer[4] = {1, 2, 3, 4};
        // A released header (its word cleared), one whose word points elsewhere, a full one.
        const std::tuple<void*, int, int> forgeries[] = {
            {nullptr, 4, 2}, {buffer + 1, 4, 2}, {buffer, INT_MAX, fullCount}};
        for (const auto& [word, capacity, count] : forgeries) {
            if (count == 0)
                continue;
            KORXArrayHeader forged{word, capacity, count, sizeof(int), 1.5f, 0, buffer};
            Header h = &forged;
            EXPECT_EQ(call(h), 0);
            EXPECT_EQ(h, &forged);
            EXPECT_EQ(Fields(forged), std::make_tuple(word, capacity, count, 4, 1.5f, 0, buffer));
            EXPECT_EQ(Ints(buffer, buffer + 4), (Ints{1, 2, 3, 4}));
        }
        EXPECT_EQ(std::make_pair(valid.items(), valid.h->capacity), std::make_pair(Ints{1, 2}, 4));
    }
}

TEST(ArrayEdits, AddInsertRemoveAndSetKeepTheBlockAsCallersExpect) {
    // operation ('a'dd, 'i'nsert, 'r'emove, 's'et), index, the array's slot the element comes
    // from (-1: a 9 from outside), capacity holding {1, 2, 3}; result, whole block, count.
    const std::tuple<char, int, int, int, int, Ints, int> cases[] = {
        {'i', 0, -1, 5, 1, {9, 1, 2, 3, 0}, 4},
        {'i', 2, -1, 5, 1, {1, 2, 9, 3, 0}, 4},
        {'i', -1, -1, 5, 0, {1, 2, 3, 0, 0}, 3},
        // Callers rely on an insert inside the array growing one slot before it is full.
        {'i', 1, -1, 4, 1, {1, 9, 2, 3, 0, 0, 0}, 4},
        {'i', 3, -1, 4, 1, {1, 2, 3, 9}, 4},  // from the count on, an append
        {'a', 0, -1, 3, 1, {1, 2, 3, 9, 0}, 4},
        {'a', 0, 0, 3, 1, {1, 2, 3, 1, 0}, 4},  // its own element, while the block moves
        {'i', 0, 2, 4, 1, {3, 1, 2, 3, 0, 0, 0}, 4},
        {'r', 0, -1, 4, 1, {2, 3, 3, 0}, 2},  // the vacated slot stays as it was
        {'r', 3, -1, 4, 0, {1, 2, 3, 0}, 3},
        {'r', -1, -1, 4, 0, {1, 2, 3, 0}, 3},
        {'s', 2, -1, 4, 1, {1, 2, 9, 0}, 3},
        {'s', 3, -1, 4, 0, {1, 2, 3, 0}, 3},
        {'s', -1, -1, 4, 0, {1, 2, 3, 0}, 3},
    };
    for (const auto& [op, index, from, capacity, result, block, count] : cases) {
        IntArray a(capacity, {1, 2, 3});
        int outside = 9;
        int* element = from < 0 ? &outside : a.slots() + from;
        const int got = op == 'a'   ? korxArrayAdd(a.h, element)
                        : op == 'i' ? korxArrayInsertAt(a.h, index, element)
                        : op == 'r' ? korxArrayRemoveAt(a.h, index)
                                    : korxArraySetAt(a.h, index, element);
        EXPECT_EQ(std::make_tuple(got, a.block(), a.h->count),
                  std::make_tuple(result, block, count))
            << op << " at " << index << " from " << from << " in " << capacity;
    }
}

TEST(ArrayAppend, RepeatsTheDestinationsOwnLeadingElements) {
    // The source's bytes are never read: callers rely on the destination's slots 0 .. n-1,
    // as they were before the call, landing at its end. Two of its slots are in use.
    const std::tuple<Ints, int, Ints> cases[] = {
        {{1, 2, 3, 4, 5, 6}, 1, {1, 2, 1}},
        {{1, 2, 3}, 5, {1, 2, 1, 2, 3, 0, 0}},  // beyond the count, over two growths
        {{5, 6}, 0, {5, 6}},
    };
    for (const auto& [block, sourceCount, items] : cases) {
        IntArray destination(static_cast<int>(block.size()), block);
        IntArray source(1, Ints(sourceCount, 77));
        destination.h->count = 2;
        EXPECT_EQ(korxArrayAppend(destination.h, source.h), 1);
        EXPECT_EQ(std::make_pair(destination.items(), source.items()),
                  std::make_pair(items, Ints(sourceCount, 77)));
    }
    IntArray self(4, {1, 2, 3}), bytes(4, {});
    bytes.h->elementSize = 1;
    EXPECT_EQ(korxArrayAppend(self.h, self.h), 1);
    EXPECT_EQ(korxArrayAppend(self.h, bytes.h), 0);
    EXPECT_EQ(self.items(), (Ints{1, 2, 3, 1, 2, 3}));
}

TEST(ArrayAddItems, GrowsAsSingleAddsWouldInOneMove) {
    // items added to {1, 2} in a block of 2: block afterwards (the new slots zeroed)
    const std::pair<Ints, Ints> cases[] = {
        {{}, {1, 2}},
        {{3}, {1, 2, 3, 0}},
        {{3, 4, 5, 6, 7}, {1, 2, 3, 4, 5, 6, 7}},  // 2 -> 4 -> 7 slots
        {{3, 4, 5, 6, 7, 8}, {1, 2, 3, 4, 5, 6, 7, 8, 0, 0, 0}},
    };
    for (const auto& [items, block] : cases) {
        IntArray array(2, {1, 2});
        EXPECT_EQ(korxArrayAddItems(array.h, items.data(), static_cast<int>(items.size())), 1);
        EXPECT_EQ(array.block(), block);
    }
    // Elements taken from the array's own block survive the block moving.
    IntArray self(3, {1, 2, 3});
    EXPECT_EQ(korxArrayAddItems(self.h, self.slots() + 1, 2), 1);
    EXPECT_EQ(self.items(), (Ints{1, 2, 3, 2, 3}));
    EXPECT_EQ(korxArrayAddItems(self.h, nullptr, 1) + korxArrayAddItems(self.h, self.slots(), -1),
              0);
    EXPECT_EQ(self.h->count, 5);
}

TEST(ArraySharing, CopySharesTheHeaderAndOnlyTheLastFreeReleasesIt) {
    Header owner = korxArrayAllocate(4, 4), copy = korxArrayCopy(owner);
    EXPECT_EQ(std::make_pair(copy, owner->shareCount), std::make_pair(owner, 1));
    korxArrayFree(copy);
    EXPECT_EQ(std::make_pair(copy, owner->shareCount), std::make_pair(owner, 0));
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
    const std::tuple<const char*, std::function<bool(Array&)>, Ints> cases[] = {
        {"removeAt", [](Array& a) { return a.removeAt(1); }, {0, 2, 3}},
        {"insert at size", [](Array& a) { return a.insert(4, 9), true; }, {0, 1, 2, 3, 9}},
        {"frontGrow", [](Array& a) { return a.frontGrow(2); }, {-1, -1, 0, 1, 2, 3}},
        {"frontShrink", [](Array& a) { return a.frontShrink(3); }, {3}},
        {"resize up", [](Array& a) { return a.resize(6); }, {0, 1, 2, 3, -1, -1}},  // endGrow
        {"resize down", [](Array& a) { return a.resize(1); }, {0}},                 // endShrink
        {"reverse", [](Array& a) { return a.reverse(), true; }, {3, 2, 1, 0}},
        {"clear", [](Array& a) { return a.clear(), true; }, {}},
        {"purge", [](Array& a) { return a.purge(), true; }, {}},
    };
    for (const auto& [name, op, values] : cases) {
        Array a;
        for (int v = 0; v < 4; ++v)
            a.add(Tracked(v));
        EXPECT_TRUE(op(a)) << name;
        EXPECT_EQ(Values(a), values) << name;
        EXPECT_EQ(Tracked::live, a.size()) << name;
    }
}

TEST_F(DynamicArray, CopiesShareOneArrayWhoseLastHolderDestroysTheElements) {
    Array a(3, Tracked(1)), b(2, Tracked(2));
    Array keeper(b);
    b = a;  // keeper still holds b's old elements
    b[0].value = 5;
    EXPECT_EQ(Values(a), (Ints{5, 1, 1}));
    EXPECT_EQ(std::make_pair(Values(keeper), Tracked::live), std::make_pair(Ints{2, 2}, 5));
    keeper = a;  // the last holder of {2, 2} lets go
    EXPECT_EQ(Tracked::live, 3);
    const Array& same = a;
    a = same;
    { const Array gone(a); }
    EXPECT_EQ(a.getHeader()->shareCount, 2);

    Array deep = a.copy();  // the only deep copy
    deep[0].value = 9;
    deep.add(Tracked(3));
    EXPECT_EQ(std::make_pair(Values(a), Values(deep)),
              std::make_pair(Ints{5, 1, 1}, Ints{9, 1, 1, 3}));

    b.clear();  // destroys the shared elements once; every holder sees none
    EXPECT_EQ(std::make_tuple(Tracked::live, keeper.size(), a.getHeader()->capacity),
              std::make_tuple(4, 0, 3));
    a.add(Tracked(1));
    EXPECT_EQ(Values(keeper), (Ints{1}));
}

TEST_F(DynamicArray, FillSizesTheBlockToTheCountAndOwnElementsSurviveTheBlockMoving) {
    const Array none(0, Tracked(8));  // below 1: the default block
    EXPECT_EQ(std::make_pair(none.size(), none.getHeader()->capacity), std::make_pair(0, 10));
    Array a(3, Tracked(7));
    EXPECT_EQ(std::make_pair(Values(a), a.getHeader()->capacity), std::make_pair(Ints{7, 7, 7}, 3));
    a[2].value = 8;
    a.add(a[2]);        // full: the add grows the block it reads from
    a.insert(0, a[3]);  // 4 of 5 slots in use: the insert grows it too
    EXPECT_EQ(Values(a), (Ints{8, 7, 7, 8, 8}));
    EXPECT_EQ(Tracked::live, 5);
}

TEST(MemoryBound, CountsTheBytesHeldAndReportsADamagedGuardOnFree) {
    const auto freePrinting = [](void* p) {
        testing::internal::CaptureStdout();
        KORXMemoryBoundFree(p);
        std::fflush(stdout);
        return testing::internal::GetCapturedStdout();
    };
    const size_t total = KORXMemoryBoundGetTotal(), peak = KORXMemoryBoundGetPeak();
    EXPECT_EQ(KORXMemoryBoundAllocate(size_t{UINT32_MAX} + 1), nullptr);
    EXPECT_EQ(freePrinting(nullptr), "");
    EXPECT_EQ(std::make_pair(KORXMemoryBoundGetTotal(), KORXMemoryBoundGetPeak()),
              std::make_pair(total, peak));
    const size_t size = peak - total + 64;  // takes the total above every earlier peak
    void* p = KORXMemoryBoundAllocate(size);
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(KORXMemoryBoundGetTotal(), total + size);
    EXPECT_EQ(freePrinting(p), "");  // intact guards
    EXPECT_EQ(std::make_pair(KORXMemoryBoundGetTotal(), KORXMemoryBoundGetPeak()),
              std::make_pair(total, total + size));

    // where one byte of a 24-byte block is overwritten, its new value, the field that shows it
    const std::tuple<int, unsigned char, std::string> damages[] = {
        {24, 0x41, "db2=0xdeadbe41"},  // one byte past the end
        {-1, 0x00, "db1=0xadbeef"},    // one byte before the start
        {36, 99, "szeB=99"},           // the back guard's copy of the size
    };
    for (const auto& [offset, byte, field] : damages) {
        auto* block = static_cast<unsigned char*>(KORXMemoryBoundAllocate(24));
        ASSERT_NE(block, nullptr);
        uint32_t number = 0;  // the front guard holds the size, the serial and two 0xdeadbeef
        std::memcpy(&number, block - 12, sizeof number);
        const std::string serial = std::to_string(number), beef = "=0xdeadbeef, ";
        block[offset] = byte;
        std::string expected = "*** Error memory boundary overwrite: szeF=24, cntF=" + serial +
                               ", db0" + beef + "db1" + beef + "db2" + beef + "db3" + beef +
                               "cntB=" + serial + ", szeB=24\n";
        const size_t at = expected.find(field.substr(0, field.find('=') + 1));
        expected.replace(at, expected.find_first_of(",\n", at) - at, field);
        EXPECT_EQ(freePrinting(block), expected);
        EXPECT_EQ(KORXMemoryBoundGetTotal(), total);
    }
}
