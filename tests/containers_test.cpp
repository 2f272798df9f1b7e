#include <korx/KORXContainers.h>

#include <gtest/gtest.h>

#include <cctype>
#include <csignal>
#include <functional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

using namespace std::string_literals;

namespace {

// Values are the addresses of letters, so a list reads back as a word.
char g_letters[] = "ABCDEFGH";
void* P(char c) { return &g_letters[c - 'A']; }
char Letter(void* p) { return p == nullptr ? '-' : *static_cast<char*>(p); }

// Upper case letters are pushed at the back, lower case ones (as upper case) at the front.
void Fill(KORXList& list, const char* word) {
    for (const char* c = word; *c != '\0'; ++c) {
        if (std::islower(*c))
            list.PushFront(P(static_cast<char>(std::toupper(*c))));
        else
            list.PushBack(P(*c));
    }
}

// Forward through the const iterators, or backward from the tail.
template <class It> std::string Values(It it, It end) {
    std::string s;
    for (; it != end; ++it)
        s += Letter(*it);
    return s;
}
std::string Forward(const KORXList& l) { return Values(l.Begin(), l.End()); }
std::string Backward(KORXList& l) { return Values(l.ReverseBegin(), l.ReverseEnd()); }

// "1A 2B": key and value of every node, forward or backward.
template <class It> std::string Entries(It it, It end) {
    std::string s;
    for (; it != end; ++it)
        s += (s.empty() ? "" : " ") + std::to_string(it.Key()) + Letter(*it);
    return s;
}
std::string Forward(KORXMap& map) { return Entries(map.Begin(), map.End()); }
std::string Backward(KORXMap& map) { return Entries(map.ReverseBegin(), map.ReverseEnd()); }

// Owners empty their lists before they go: destruction releases the head node only.
template <class Linked> void Drain(Linked& linked) {
    while (!linked.IsEmpty())
        linked.PopFront();
}

// The text with every '|' turned into the record separator 0x1E.
std::string Records(std::string text) {
    for (char& c : text)
        if (c == '|')
            c = '\x1E';
    return text;
}

std::vector<std::string> Items(const KORXStringArray& a) {
    std::vector<std::string> items;
    for (int i = 0; i < a.GetCount(); ++i)
        items.push_back(a[i]);
    return items;
}

}  // namespace

TEST(List, FrontPushesLeaveNoTail) {
    KORXList list;
    Fill(list, "a");
    list.PopBack();
    EXPECT_EQ(std::make_tuple(Letter(list.GetTop()), list.GetSize(), Letter(list.GetFront())),
              std::make_tuple('-', 1, 'A'));
    list.PopFront();
    EXPECT_EQ(std::make_pair(list.IsEmpty(), list.GetSize()), std::make_pair(true, 0));
}

TEST(List, EditsRelinkBothWaysAndMoveTheTail) {
    struct Case {
        const char* before;
        std::function<void(KORXList&)> edit;
        const char* after;
    };
    const Case cases[] = {
        {"ABA", [](KORXList& l) { l.Remove(P('A')); }, "BA"},  // the first occurrence only
        {"ABC", [](KORXList& l) { l.Remove(P('D')); }, "ABC"},
        {"AABA", [](KORXList& l) { l.Unique(); }, "ABA"},
        {"ABBBCC", [](KORXList& l) { l.Unique(); }, "ABC"},
        {"AAA", [](KORXList& l) { l.Unique(); }, "A"},
        {"ABC", [](KORXList& l) { l.Erase(l.Begin()); }, "BC"},
        {"ABC", [](KORXList& l) { l.Erase(l.Find(P('B'))); }, "AC"},
        {"ABC", [](KORXList& l) { l.Erase(l.Find(P('C'))); }, "AB"},
        {"ABC", [](KORXList& l) { l.Erase(l.End()); }, "ABC"},
        {"A", [](KORXList& l) { l.Erase(l.Begin()); }, ""},
        {"ABC", [](KORXList& l) { l.Pop(); }, "AB"},
        {"A", [](KORXList& l) { l.PopBack(); }, ""},
        {"", [](KORXList& l) { l.PopFront(); }, ""},
        {"Abc", [](KORXList& l) { l.PopBack(); }, "CB"},  // the tail stays A until popped
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.before);
        KORXList list;
        Fill(list, c.before);
        c.edit(list);
        const std::string after = c.after;
        EXPECT_EQ(Forward(list), after);
        EXPECT_EQ(Backward(list), std::string(after.rbegin(), after.rend()));
        EXPECT_EQ(list.GetSize(), static_cast<int>(after.size()));
        EXPECT_EQ(Letter(list.GetTop()), after.empty() ? '-' : after.back());
        Drain(list);
    }
}

TEST(List, ClearAndDestructionReleaseOnlyTheHeadNode) {
    for (const bool clear : {true, false}) {
        KORXList::KORXListNode* second;
        {
            KORXList list;
            Fill(list, "ABC");
            second = (++list.Begin()).GetNode();
            if (clear) {
                list.Clear();
                EXPECT_EQ(std::make_tuple(list.IsEmpty(), list.GetSize(), Forward(list)),
                          std::make_tuple(true, 0, ""s));
            }
        }
        // The other nodes are still ours to read (a sanitizer would object otherwise), and
        // ours to hand back.
        EXPECT_EQ(Letter(second->value), 'B');
        EXPECT_EQ(Letter(second->next->value), 'C');
        delete second->next;
        delete second;
    }
}

TEST(List, CopiesShareTheNodes) {
    KORXList list, copy;
    Fill(list, "AB");
    copy = list;
    *copy.Begin() = P('C');
    EXPECT_EQ(Forward(list), "CB");
    EXPECT_EQ(copy.Begin(), list.Begin());
    copy = KORXList();  // gives up the shared nodes without releasing any
    Drain(list);
}

TEST(Map, FindByKeyTakesTheFirstMatchAndGetValueByKeyTheLast) {
    KORXMap map;
    map.PushBack(1, P('A'));
    map.Push(2, P('B'));
    map.Append(1, P('C'));
    auto found = map.FindByKey(1);
    EXPECT_EQ(std::make_pair(found.Key(), Letter(*found)), std::make_pair(1L, 'A'));
    EXPECT_EQ(map.FindByKey(3), map.End());
    const std::pair<long, char> values[] = {{1, 'C'}, {2, 'B'}, {3, '-'}};
    for (const auto& [key, value] : values)
        EXPECT_EQ(Letter(map.GetValueByKey(key)), value) << key;
    Drain(map);

    // Filled at the front only, the map has no tail to search back from.
    map.PushFront(4, P('D'));
    map.PushFront(5, P('E'));
    EXPECT_EQ(Letter(*map.FindByKey(4)), 'D');
    EXPECT_EQ(Letter(map.GetValueByKey(4)), '-');
    EXPECT_EQ(std::make_pair(map.GetTopKey(), map.GetFrontKey()), std::make_pair(0L, 5L));
    Drain(map);
}

TEST(Map, EditsKeepKeysWithTheirValues) {
    struct Case {
        std::function<void(KORXMap&)> edit;
        const char* after;
    };
    const std::pair<long, char> entries[] = {{1, 'A'}, {2, 'B'}, {1, 'C'}, {3, 'C'}};
    const Case cases[] = {
        {[](KORXMap& m) { m.RemoveByKey(9); }, "1A 2B 1C 3C"},
        {[](KORXMap& m) { m.RemoveByKey(1); }, "2B 1C 3C"},
        {[](KORXMap& m) { m.Remove(P('C')); }, "1A 2B 3C"},
        {[](KORXMap& m) { m.Unique(); }, "1A 2B 1C"},  // keys are not compared
        {[](KORXMap& m) { m.Erase(m.FindByKey(3)); }, "1A 2B 1C"},
        {[](KORXMap& m) { m.Pop(); }, "1A 2B 1C"},
        {[](KORXMap& m) { m.PopFront(); }, "2B 1C 3C"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.after);
        KORXMap map;
        for (const auto& [key, value] : entries)
            map.PushBack(key, P(value));
        c.edit(map);
        EXPECT_EQ(Forward(map), c.after);
        const std::string last = Backward(map).substr(0, 2);
        EXPECT_EQ(std::to_string(map.GetBackKey()) + Letter(map.GetBack()), last);
        EXPECT_EQ(map.GetSize() * 3 - 1, std::string(c.after).size());  // 3 bytes an entry
        Drain(map);
    }
}

TEST(Stack, PushesAndPopsThroughASharedArray) {
    KORXStack stack;
    EXPECT_EQ(std::make_tuple(stack.Pop(), stack.GetTop(), stack.IsEmpty()),
              std::make_tuple(nullptr, nullptr, true));
    std::string counts;
    for (char c : "ABCDEFGH"s + "ABCD")  // past the first ten slots
        counts += std::to_string(stack.Push(P(c))) + " ";
    EXPECT_EQ(counts, "1 2 3 4 5 6 7 8 9 10 11 12 ");
    EXPECT_EQ(std::string() + Letter(stack.ElementAt(0)) + Letter(stack.ElementAt(8)), "AA");

    KORXStack copy(stack), assigned;
    assigned = stack;
    const KORXStack& same = assigned;
    assigned = same;
    EXPECT_EQ(Letter(copy.Pop()), 'D');
    EXPECT_EQ(Letter(assigned.Pop()), 'C');
    EXPECT_EQ(std::make_pair(stack.Size(), Letter(stack.GetTop())), std::make_pair(10, 'B'));
}

TEST(StringArray, GrowsFortyEntriesAtATime) {
    KORXStringArray a;
    const std::pair<int, int> sizes[] = {{0, 0}, {1, 40}, {40, 40}, {41, 80}, {81, 120}};
    for (const auto& [count, capacity] : sizes) {
        while (a.GetCount() < count)
            a.Add(std::to_string(a.GetCount()).c_str(), 2);
        EXPECT_EQ(a.GetCapacity(), capacity) << count;
        EXPECT_EQ(a[count], nullptr);
    }
    EXPECT_EQ(std::string(a[0]) + "," + a[40] + "," + a[80], "0,40,80");
}

TEST(StringArray, AddCopiesUpToLenBytesOrTakesThePointer) {
    KORXStringArray a;
    a.Add("abcdef", 3);
    a.Add("ab", 5);
    a.Add("", 0);
    char* owned = new char[2]{'x', '\0'};
    a.Add(owned);
    EXPECT_EQ(Items(a), (std::vector<std::string>{"abc", "ab", "", "x"}));
    EXPECT_EQ(a[3], owned);
}

TEST(StringArray, ReadMeSkipsRunsOfSeparators) {
    const std::pair<const char*, std::vector<std::string>> cases[] = {
        {"|ab||c|", {"ab", "c"}}, {"", {}}, {"||", {}}, {"a b", {"a b"}}};
    for (const auto& [text, items] : cases) {
        KORXStringArray a;
        a.Add("kept", 4);
        EXPECT_TRUE(a.ReadMe(Records(text).c_str()));
        std::vector<std::string> expected{"kept"};
        expected.insert(expected.end(), items.begin(), items.end());
        EXPECT_EQ(Items(a), expected) << text;
    }
}

TEST(StringArray, PrintMeReplacesTheTargetWithQuotedCopies) {
    KORXStringArray a, out;
    a.ReadMe(Records("ab|c").c_str());
    a.Add(new char[1]{'\0'});
    out.ReadMe(Records("old|older|oldest|gone").c_str());
    a.PrintMe(out);
    const std::vector<std::string> quoted{"\"ab\"", "\"c\"", "\"\""};
    EXPECT_EQ(Items(out), quoted);
    EXPECT_EQ(out.GetCapacity(), 3);
    a.PrintMe(a);
    EXPECT_EQ(Items(a), quoted);
    out.Clear();
    EXPECT_EQ(std::make_tuple(out.GetCount(), out.GetCapacity(), out[0]),
              std::make_tuple(0, 0, nullptr));
}

TEST(StringArray, CopyIsABorrowedViewThatLeavesTheStringsAlone) {
    KORXStringArray owner;
    owner.ReadMe(Records("a|b").c_str());
    {
        const KORXStringArray view(owner);
        EXPECT_EQ(view[1], owner[1]);
    }
    EXPECT_EQ(Items(owner), (std::vector<std::string>{"a", "b"}));
}

TEST(StringArrayDeathTest, ChangingABorrowedArrayStopsWithAnAccessFault) {
    const std::function<void(KORXStringArray&)> changes[] = {
        [](KORXStringArray& a) { a.Add(nullptr); },
        [](KORXStringArray& a) { a.Add("x", 1); },
        [](KORXStringArray& a) { a.Clear(); },
        [](KORXStringArray& a) { a.ReadMe(""); },
        [](KORXStringArray& a) { KORXStringArray().PrintMe(a); },
    };
    KORXStringArray owner;
    owner.Add("a", 1);
    for (const auto& change : changes) {
        KORXStringArray view(owner);
        // The default action, not a sanitizer's report, must end the child.
        EXPECT_EXIT(
            {
                std::signal(SIGSEGV, SIG_DFL);
                change(view);
            },
            ::testing::KilledBySignal(SIGSEGV), "");
    }
}
