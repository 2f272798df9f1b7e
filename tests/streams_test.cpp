#include <korx/Gk_Exception.h>
#include <korx/KORXFileDescriptor.h>
#include <korx/KORXStream.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <tuple>

#include <fcntl.h>
#include <unistd.h>

#include "support/event_recorder.h"

namespace {

std::string SampleBytes(long n) {
    std::string bytes;
    for (long i = 0; i < n; ++i)
        bytes += static_cast<char>((i * 7) % 251);
    return bytes;
}

std::string Read(KORXInputStream& in, int n) {
    std::string bytes(static_cast<size_t>(n), '\0');
    bytes.resize(static_cast<size_t>(std::max(in.read(bytes.data(), n), 0)));
    return bytes;
}

// "name: message" of each event the recorder saw, one a line.
std::string Seen(const EventRecorder& recorder) {
    std::string seen;
    for (const RecordedEvent& e : recorder.events)
        seen += e.name + ": " + e.message + "\n";
    return seen;
}

// A base stream whose reads fail; after 100 of them it reads 0, so a runaway skip still ends.
struct FailingStream : KORXInputStream {
    KORXInputStream* duplicate() override { return nullptr; }
    int read(char* const, int) override { return ++reads > 100 ? 0 : -1; }
    int reads = 0;
};

}  // namespace

TEST(InputStream, SkipReadsUntilTheEndOrAFailure) {
    KORXStringInputStream text(Gk_String(std::string(20000, 'x').c_str()));
    EXPECT_EQ(text.skip(30000), 20000);  // several reads, up to the terminator
    FailingStream failing;
    EXPECT_EQ(failing.skip(10), 0);
    EXPECT_EQ(failing.reads, 1);
}

TEST(InputStream, UnsupportedOperationsRaiseIOException) {
    FailingStream base;
    KORXStringInputStream text("abc");
    KORXFilterInputStream alone(nullptr);  // answers as the base stream
    const std::function<void()> operations[] = {
        [&] { base.available(); },        [&] { base.add(Gk_String("a")); },
        [&] { base.getCurrentOffset(); }, [&] { base.setOffset(3); },
        [&] { text.getCurrentOffset(); }, [&] { alone.available(); },
    };
    for (const auto& operation : operations) {
        try {
            operation();
            ADD_FAILURE() << "returned";
        } catch (const Gk_Exception& e) {
            EXPECT_STREQ(e.token(), "Gk_IOException");
        }
    }
    EXPECT_EQ(std::make_tuple(alone.readChar(), alone.skip(10), alone.duplicate()),
              std::make_tuple(-1, 0L, nullptr));
}

TEST(StringInputStream, PositionFollowsReadAddAndSkip) {
    // read, bytes added back, skip, skipped, the rest, available afterwards
    const std::tuple<int, int, long, long, std::string, int> cases[] = {
        {4, 1, 0, 0, "def", 1},     // available answers yes or no, not a count
        {2, 5, 0, 0, "abcdef", 1},  // add stops at the start
        {0, 0, 4, 4, "ef", 1},
        {1, 0, 100, 5, "", 0},  // skip stops at the end
    };
    for (const auto& [read, back, skip, skipped, rest, available] : cases) {
        KORXStringInputStream in("abcdef");
        EXPECT_EQ(Read(in, read), std::string("abcdef").substr(0, read));
        EXPECT_TRUE(in.add(Gk_String(std::string(back, 'x').c_str(), back)));
        EXPECT_EQ(in.skip(skip), skipped);
        EXPECT_EQ(std::string(in.contents(), in.contents().len()), rest + '\0');
        EXPECT_EQ(in.available(), available) << read << " " << back << " " << skip;
    }
    EXPECT_EQ(KORXStringInputStream("").readChar(), -1);
    EXPECT_EQ(KORXStringInputStream("\xFF").readChar(), 0xFF);  // not taken for the end
}

TEST(StringInputStream, MalformedTextAndDuplicateRaiseTheAssertion) {
    const std::string at = "KORXAssertEvent: source_stream/ind/KORXStringInputStream ";
    const std::tuple<Gk_String, std::string, std::string> cases[] = {
        {Gk_String("ab", 2), "a", at + "[29]\n"},  // the last byte stands for the 0
        {Gk_String(), "", at + "[29]\n"},
        {Gk_String("ab"), "ab", ""},
    };
    for (const auto& [text, read, seen] : cases) {
        EventRecorder recorder;
        KORXStringInputStream in(text);
        EXPECT_EQ(Read(in, 10), read);
        EXPECT_EQ(Seen(recorder), seen);
    }
    EventRecorder recorder;
    EXPECT_EQ(KORXStringInputStream("ab").duplicate(), nullptr);
    EXPECT_EQ(Seen(recorder), at + "[36]\n");
}

TEST(StringOutputStream, CollectsBytesWithoutTerminatorAlsoThroughAFilter) {
    KORXStringOutputStream out;
    EXPECT_EQ(out.contents(), nullptr);
    KORXFilterOutputStream filter(&out);
    filter.writeChar('a');
    filter.write("bc", 2);
    EXPECT_EQ(std::string(out.contents(), out.len()), "abc");
    out.chop(0);
    EXPECT_EQ(std::string(out.contents(), out.len()), std::string("a", 2));
}

class FileStreams : public testing::Test {
protected:
    void TearDown() override { std::filesystem::remove_all(dir); }
    std::string Path(const char* name) const { return dir + "/" + name; }
    std::string Write(const char* name, const std::string& bytes) const {
        std::ofstream(Path(name), std::ios::binary) << bytes;
        return Path(name);
    }

    const std::string dir = mkdtemp((testing::TempDir() + "korx_streams_XXXXXX").data());
    const std::string sample = Write("sample", SampleBytes(1000));
};

TEST_F(FileStreams, PositionsAgreeWhetherFollowingTheDescriptorKeptPrivatelyOrFiltered) {
    using Action = std::function<long(KORXInputStream&)>;
    // action, its result, the position afterwards
    const std::tuple<Action, long, long> steps[] = {
        {[](KORXInputStream& in) { return Read(in, 10) == SampleBytes(10); }, 1, 10},
        {[](KORXInputStream& in) { return in.skip(5); }, 15, 15},  // the new position
        {[](KORXInputStream& in) { return in.add(Gk_String("ab")); }, 1, 12},
        {[](KORXInputStream& in) { return in.readChar(); }, SampleBytes(13)[12], 13},
        {[](KORXInputStream& in) { return in.add(Gk_String(std::string(20, 'x').c_str())); }, 1, 0},
        {[](KORXInputStream& in) { return in.setOffset(990), in.available(); }, 10, 990},
        {[](KORXInputStream& in) { return static_cast<long>(Read(in, 50).size()); }, 10, 1000},
        {[](KORXInputStream& in) { return in.readChar(); }, -1, 1000},
        {[](KORXInputStream& in) { return in.skip(100); }, 1100, 1100},
        {[](KORXInputStream& in) { return in.available(); }, -100, 1100},
    };
    std::string backslashed = sample;  // '\' separates like '/'
    std::replace(backslashed.begin(), backslashed.end(), '/', '\\');
    KORXFileInputStream following(backslashed.c_str()), origin(sample.c_str()),
        inner(sample.c_str());
    std::unique_ptr<KORXInputStream> keeping(origin.duplicate());
    KORXFilterInputStream filter(&inner);
    const std::pair<const char*, KORXInputStream*> streams[] = {
        {"following", &following}, {"private", keeping.get()}, {"filter", &filter}};
    for (const auto& [name, in] : streams) {
        for (size_t i = 0; i < std::size(steps); ++i) {
            const auto& [action, result, offset] = steps[i];
            EXPECT_EQ(action(*in), result) << name << " " << i;
            EXPECT_EQ(in->getCurrentOffset(), offset) << name << " " << i;
        }
    }
}

TEST_F(FileStreams, DuplicatesReadTheFileIndependently) {
    auto original = std::make_unique<KORXFileInputStream>(sample.c_str());
    original->skip(100);
    // A filter over a duplicate, which it owns.
    std::unique_ptr<KORXInputStream> first(KORXFilterInputStream(original.get()).duplicate());
    ASSERT_TRUE(first);
    EXPECT_EQ(Read(*first, 10), SampleBytes(110).substr(100));
    std::unique_ptr<KORXInputStream> second(first->duplicate());
    EXPECT_EQ(Read(*original, 20), SampleBytes(120).substr(100));
    original.reset();  // the descriptor stays open for the others
    EXPECT_EQ(Read(*second, 5), SampleBytes(115).substr(110));
    EXPECT_EQ(first->getCurrentOffset(), 110);
}

TEST_F(FileStreams, UnopenableFilesReportFailureWithoutCrashing) {
    std::filesystem::create_directory(Path("folder"));
    for (const std::string& path : {Path("missing"), Path("folder")}) {
        KORXFileInputStream in(path.c_str());
        char buffer[8];
        EXPECT_EQ(in.read(buffer, 8), -1) << path;
        EXPECT_EQ(std::make_pair(in.getCurrentOffset(), in.available()), std::make_pair(-1L, 0));
        std::unique_ptr<KORXInputStream> copy(in.duplicate());
        EXPECT_EQ(copy->read(buffer, 8), -1) << path;
    }
    KORXFileOutputStream(Path("missing/file").c_str()).write("abc", 3);
    KORXFileOutputStream(Path("folder").c_str()).write("abc", 3);
}

TEST_F(FileStreams, WritesFollowEachOtherAndReplaceTheOldContent) {
    const std::string path = Write("big", std::string(400000, 'x')), written = SampleBytes(300000);
    {
        KORXFileOutputStream out(path.c_str());
        out.write(written.data(), 100000);
        out.write(written.data() + 100000, 200000);
    }
    KORXFileInputStream in(path.c_str());
    EXPECT_EQ(in.available(), 300000);
    EXPECT_TRUE(Read(in, 400000) == written);
}

TEST_F(FileStreams, OnlyDescriptorsOpenedFromAPathAreClosed) {
    using Entries = std::filesystem::directory_iterator;
    const auto openCount = [] { return std::distance(Entries("/proc/self/fd"), Entries()); };
    const long before = openCount();
    {
        KORXFileInputStream in(sample.c_str());
        std::unique_ptr<KORXInputStream> copy(in.duplicate());
        EXPECT_EQ(openCount(), before + 1);
    }
    EXPECT_EQ(openCount(), before);

    const int number = open(sample.c_str(), O_RDONLY);
    KORXFileDescriptorHandle(new KORXFileDescriptor(number, 1));
    EXPECT_EQ(close(number), 0);  // still open

    FILE* file = fopen(Path("file").c_str(), "w+");
    fputs("12", file);  // still in the FILE's buffer: it must land before the stream's bytes
    KORXFileOutputStream(file).write("abc", 3);
    rewind(file);
    EXPECT_EQ(fgetc(file), '1');  // the FILE reads ahead; the stream starts where it stands
    EXPECT_EQ(KORXFileInputStream(file).readChar(), '2');
    fclose(file);
    KORXFileInputStream check(Path("file").c_str());
    EXPECT_EQ(Read(check, 10), "12abc");
}
