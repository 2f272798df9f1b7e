#include <korx/Gk_Exception.h>
#include <korx/KORXEventBus.h>
#include <korx/KORXFileDescriptor.h>
#include <korx/KORXStream.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// A fresh directory under the test's temporary folder, removed with its entries.
class TempDir {
public:
    TempDir() : m_path(testing::TempDir() + "korx_streams_XXXXXX") {
        if (mkdtemp(m_path.data()) == nullptr)
            ADD_FAILURE() << "no temporary directory";
    }
    ~TempDir() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    std::string Path(const char* name) const { return m_path + "/" + name; }
    std::string Write(const char* name, const std::string& bytes) const {
        FILE* file = fopen(Path(name).c_str(), "wb");
        fwrite(bytes.data(), 1, bytes.size(), file);
        fclose(file);
        return Path(name);
    }

private:
    std::string m_path;
};

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

std::string Collected(const KORXStringOutputStream& out) {
    return std::string(out.contents(), static_cast<size_t>(out.len()));
}

// Records "name: message" of the assert events sent while it is registered.
class AssertRecorder : public KORXEventListener {
public:
    AssertRecorder() { KORXEventBus::GetEventBus().AddListener(this); }
    ~AssertRecorder() override { KORXEventBus::GetEventBus().RemoveListener(this); }
    void HandleEvent(KORXEvent& event) override {
        if (const auto* assertion = dynamic_cast<KORXAssertEvent*>(&event))
            seen.push_back(std::string(event.GetName()) + ": " +
                           (assertion->GetMessage() ? assertion->GetMessage() : "(none)"));
    }
    std::vector<std::string> seen;
};

// Serves `size` bytes, then answers `atEnd` (0 or -1). After 100 reads it fails, so a skip
// that ignores the end stops anyway and the test reports it.
class ScriptedStream : public KORXInputStream {
public:
    ScriptedStream(int size, int atEnd) : m_left(size), m_atEnd(atEnd) {}
    KORXInputStream* duplicate() override { return nullptr; }
    int read(char* const, int n) override {
        reads.push_back(n);
        const int got = std::min(n, m_left);
        m_left -= got;
        return reads.size() > 100 ? -1 : (got > 0 ? got : m_atEnd);
    }
    std::vector<int> reads;

private:
    int m_left;
    int m_atEnd;
};

long OpenDescriptorCount() {
    using Entries = std::filesystem::directory_iterator;
    return std::distance(Entries("/proc/self/fd"), Entries());
}

}  // namespace

TEST(InputStream, SkipReadsInScratchChunksAndStopsAtTheEnd) {
    struct Case {
        int size, atEnd;
        long n, skipped;
        std::vector<int> reads;
    };
    const Case cases[] = {
        {100, 0, 0, 0, {}},  // skip(0) reads nothing
        {100, 0, -5, 0, {}},
        {20000, 0, 20000, 20000, {8192, 8192, 3616}},
        {100, 0, 20000, 100, {8192, 8192}},  // a read of 0 ends it
        {0, -1, 10, 0, {10}},                // so does a failure
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.n);
        ScriptedStream in(c.size, c.atEnd);
        EXPECT_EQ(in.skip(c.n), c.skipped);
        EXPECT_EQ(in.reads, c.reads);
    }
}

TEST(InputStream, UnsupportedOperationsRaiseIOException) {
    ScriptedStream base(10, 0);
    KORXStringInputStream text("abc");
    const std::function<void()> operations[] = {
        [&] { base.available(); },        [&] { base.add(Gk_String("a")); },
        [&] { base.getCurrentOffset(); }, [&] { base.setOffset(3); },
        [&] { text.getCurrentOffset(); },
    };
    for (const auto& operation : operations) {
        try {
            operation();
            ADD_FAILURE() << "returned";
        } catch (const Gk_Exception& e) {
            EXPECT_STREQ(e.token(), "Gk_IOException");
        }
    }
}

TEST(StringInputStream, AvailableAnswersYesOrNoAndReadCharMinusOneAtTheEnd) {
    KORXStringInputStream in("ab");
    EXPECT_EQ(in.available(), 1);
    EXPECT_EQ(Read(in, 10), "ab");
    EXPECT_EQ(in.available(), 0);
    EXPECT_EQ(Read(in, 10), "");
    EXPECT_EQ(in.readChar(), -1);
    EXPECT_EQ(KORXStringInputStream("abcdef").available(), 1);
    EXPECT_EQ(KORXStringInputStream("\xFF").readChar(), 0xFF);  // not taken for the end
}

TEST(StringInputStream, PositionFollowsReadAddAndSkip) {
    struct Case {
        int read, back;
        long skip, skipped;
        std::string contents;
    };
    const Case cases[] = {
        {2, 0, 0, 0, "cdef"}, {4, 1, 0, 0, "def"}, {2, 5, 0, 0, "abcdef"},  // add stops at 0
        {0, 0, 4, 4, "ef"},   {1, 0, 100, 5, ""},                           // skip past the end
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.read << " " << c.back << " " << c.skip);
        KORXStringInputStream in("abcdef");
        Read(in, c.read);
        EXPECT_TRUE(in.add(Gk_String(std::string(c.back, 'x').c_str(), c.back)));
        EXPECT_EQ(in.skip(c.skip), c.skipped);
        EXPECT_EQ(std::string(in.contents(), in.contents().len()), c.contents + '\0');
    }
}

TEST(StringInputStream, MalformedTextAndDuplicateRaiseTheAssertion) {
    const std::string at = "KORXAssertEvent: source_stream/ind/KORXStringInputStream ";
    struct Case {
        Gk_String text;
        bool duplicate;
        std::string read;
        std::vector<std::string> seen;
    };
    const Case cases[] = {
        {Gk_String("ab", 2), false, "a", {at + "[29]"}},  // the last byte stands for the 0
        {Gk_String(), false, "", {at + "[29]"}},
        {Gk_String("ab"), false, "ab", {}},
        {Gk_String("ab"), true, "ab", {at + "[36]"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.read);
        AssertRecorder recorder;
        KORXStringInputStream in(c.text);
        if (c.duplicate) {
            EXPECT_EQ(in.duplicate(), nullptr);
        }
        EXPECT_EQ(Read(in, 10), c.read);
        EXPECT_EQ(recorder.seen, c.seen);
    }
}

TEST(StringOutputStream, CollectsBytesWithoutTerminator) {
    KORXStringOutputStream out;
    EXPECT_EQ(out.contents(), nullptr);
    out.write("ab", 2);
    out.writeChar('c');
    EXPECT_EQ(Collected(out), "abc");
    out.chop(0);
    EXPECT_EQ(Collected(out), std::string("a", 2));
}

class FileStreams : public testing::Test {
protected:
    TempDir dir;
    const std::string sample = dir.Write("sample", SampleBytes(1000));
};

TEST_F(FileStreams, PositionsAgreeWhetherFollowingTheDescriptorOrKeptPrivately) {
    struct Step {
        std::function<long(KORXInputStream&)> action;
        long result, offset;
    };
    const Step steps[] = {
        {[](KORXInputStream& in) { return Read(in, 10) == SampleBytes(10); }, 1, 10},
        {[](KORXInputStream& in) { return in.skip(5); }, 15, 15},  // the new position
        {[](KORXInputStream& in) { return in.skip(0); }, 15, 15},
        {[](KORXInputStream& in) { return in.add(Gk_String("ab")); }, 1, 12},
        {[](KORXInputStream& in) { return in.readChar(); }, SampleBytes(13)[12], 13},
        {[](KORXInputStream& in) { return in.add(Gk_String(std::string(20, 'x').c_str())); }, 1, 0},
        {[](KORXInputStream& in) { return in.setOffset(990), in.available(); }, 10, 990},
        {[](KORXInputStream& in) { return static_cast<long>(Read(in, 50).size()); }, 10, 1000},
        {[](KORXInputStream& in) { return in.readChar(); }, -1, 1000},
        {[](KORXInputStream& in) { return in.skip(100); }, 1100, 1100},
        {[](KORXInputStream& in) { return static_cast<long>(Read(in, 5).size()); }, 0, 1100},
        {[](KORXInputStream& in) { return in.available(); }, -100, 1100},
    };
    std::string backslashed = sample;  // '\' separates like '/'
    std::replace(backslashed.begin(), backslashed.end(), '/', '\\');
    KORXFileInputStream following(backslashed.c_str());
    KORXFileInputStream origin(sample.c_str());
    std::unique_ptr<KORXInputStream> keeping(origin.duplicate());
    for (KORXInputStream* in : {static_cast<KORXInputStream*>(&following), keeping.get()}) {
        for (size_t i = 0; i < std::size(steps); ++i) {
            SCOPED_TRACE(testing::Message() << (in == &following ? "following " : "private ") << i);
            EXPECT_EQ(steps[i].action(*in), steps[i].result);
            EXPECT_EQ(in->getCurrentOffset(), steps[i].offset);
        }
    }
}

TEST_F(FileStreams, DuplicatesReadTheFileIndependently) {
    auto original = std::make_unique<KORXFileInputStream>(sample.c_str());
    original->skip(100);
    std::unique_ptr<KORXInputStream> first(original->duplicate());
    EXPECT_EQ(Read(*first, 10), SampleBytes(110).substr(100));
    EXPECT_EQ(original->getCurrentOffset(), 100);
    std::unique_ptr<KORXInputStream> second(first->duplicate());
    EXPECT_EQ(Read(*original, 20), SampleBytes(120).substr(100));
    original.reset();  // the descriptor stays open for the others
    EXPECT_EQ(Read(*second, 5), SampleBytes(115).substr(110));
    EXPECT_EQ(first->getCurrentOffset(), 110);
}

TEST_F(FileStreams, UnopenableFilesReportFailureWithoutCrashing) {
    const std::string unreadable = dir.Write("unreadable", "secret");
    chmod(unreadable.c_str(), 0);
    mkdir(dir.Path("folder").c_str(), 0700);
    for (const std::string& path : {dir.Path("missing"), dir.Path("folder"), unreadable}) {
        SCOPED_TRACE(path);
        if (path == unreadable && geteuid() == 0)
            continue;  // root reads it anyway
        KORXFileInputStream in(path.c_str());
        char buffer[8];
        EXPECT_EQ(in.read(buffer, 8), -1);
        EXPECT_EQ(in.readChar(), -1);
        EXPECT_EQ(in.getCurrentOffset(), -1);
        EXPECT_EQ(in.available(), 0);
        std::unique_ptr<KORXInputStream> copy(in.duplicate());
        EXPECT_EQ(copy->read(buffer, 8), -1);
    }
    KORXFileOutputStream(dir.Path("missing/file").c_str()).write("abc", 3);
    KORXFileOutputStream(dir.Path("folder").c_str()).write("abc", 3);
}

TEST_F(FileStreams, BlocksWrittenAreReadBackAndReplaceTheOldContent) {
    constexpr int kBlock = 64 * 1024;
    const std::string path = dir.Write("blocks", std::string(kBlock * 5, 'x'));
    const std::string written = SampleBytes(kBlock * 4 + 3).substr(3);
    {
        KORXFileOutputStream out(path.c_str());
        for (int b = 0; b < 4; ++b)
            out.write(written.data() + b * kBlock, kBlock);
    }
    KORXFileInputStream in(path.c_str());
    EXPECT_EQ(in.available(), kBlock * 4);
    for (int b = 0; b < 4; ++b)
        EXPECT_TRUE(Read(in, kBlock) == written.substr(b * kBlock, kBlock)) << "block " << b;
    EXPECT_EQ(in.readChar(), -1);
}

TEST_F(FileStreams, OnlyDescriptorsOpenedFromAPathAreClosed) {
    const long before = OpenDescriptorCount();
    {
        KORXFileInputStream in(sample.c_str());
        std::unique_ptr<KORXInputStream> copy(in.duplicate());
        EXPECT_EQ(OpenDescriptorCount(), before + 1);
    }
    EXPECT_EQ(OpenDescriptorCount(), before);

    const int number = open(sample.c_str(), O_RDONLY);
    KORXFileDescriptorHandle(new KORXFileDescriptor(number, 1));
    EXPECT_NE(fcntl(number, F_GETFD), -1);
    close(number);

    FILE* file = fopen(dir.Path("file").c_str(), "w+");
    fputs("12", file);  // still in the FILE's buffer: it must land before the stream's bytes
    KORXFileOutputStream(file).write("abc", 3);
    ASSERT_NE(fcntl(fileno(file), F_GETFD), -1);
    rewind(file);
    EXPECT_EQ(fgetc(file), '1');  // the FILE reads ahead; the stream starts where it stands
    EXPECT_EQ(KORXFileInputStream(file).readChar(), '2');
    fclose(file);
    KORXFileInputStream check(dir.Path("file").c_str());
    EXPECT_EQ(Read(check, 10), "12abc");
}

TEST_F(FileStreams, FiltersForwardEveryOperation) {
    KORXFileInputStream inner(sample.c_str());
    KORXFileInputStream twin(sample.c_str());
    KORXFilterInputStream filter(&inner);
    const std::function<long(KORXInputStream&)> operations[] = {
        [](KORXInputStream& in) { return static_cast<long>(Read(in, 7).size()); },
        [](KORXInputStream& in) { return in.readChar(); },
        [](KORXInputStream& in) { return in.skip(30); },
        [](KORXInputStream& in) { return in.add(Gk_String("abc")); },
        [](KORXInputStream& in) { return in.available(); },
        [](KORXInputStream& in) { return in.setOffset(500), in.getCurrentOffset(); },
    };
    for (const auto& operation : operations) {
        EXPECT_EQ(operation(filter), operation(twin));
        EXPECT_EQ(inner.getCurrentOffset(), twin.getCurrentOffset());
    }
    std::unique_ptr<KORXInputStream> copy(filter.duplicate());
    ASSERT_TRUE(copy);
    EXPECT_EQ(Read(*copy, 4), SampleBytes(504).substr(500));
    EXPECT_EQ(filter.getCurrentOffset(), 500);

    KORXStringOutputStream collected;
    KORXFilterOutputStream out(&collected);
    out.writeChar('a');
    out.write("bc", 2);
    EXPECT_EQ(Collected(collected), "abc");

    KORXFilterInputStream alone(nullptr);  // answers as the base stream
    EXPECT_EQ(alone.readChar(), -1);
    EXPECT_EQ(alone.skip(10), 0);
    EXPECT_EQ(alone.duplicate(), nullptr);
    EXPECT_THROW(alone.available(), Gk_Exception);
}
