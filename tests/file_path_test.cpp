#include <korx/KORXFilePath.h>
#include <korx/KORXStream.h>

#include "support/event_recorder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <tuple>
#include <vector>

namespace fs = std::filesystem;

namespace {

std::string Text(const KORXString& s) {
    const char* bytes = s;
    return bytes != nullptr ? bytes : "";
}

// The stored text of a derived path, checked to be indexed like a freshly made one.
std::string Made(KORXFilePath result) {
    KORXFilePath fresh(result.GetPath());
    EXPECT_EQ(Text(result.GetName()) + "|" + Text(result.GetLastExtension()),
              Text(fresh.GetName()) + "|" + Text(fresh.GetLastExtension()));
    return Text(result.GetPath());
}

std::string Backslashed(std::string text) {
    std::replace(text.begin(), text.end(), '/', '\\');
    return text;
}

template <class T> KORXFilePath FromNull() { return KORXFilePath(static_cast<const T*>(nullptr)); }

// A fresh directory, made current while the object lives, then removed with its entries.
struct TempDir {
    fs::path saved = fs::current_path();
    std::string path = testing::TempDir() + "korx_file_path_XXXXXX";
    TempDir() {
        EXPECT_NE(mkdtemp(path.data()), nullptr);
        fs::current_path(path);
    }
    ~TempDir() {
        fs::current_path(saved);
        fs::remove_all(path);
    }
    std::string operator/(const std::string& name) const { return path + "/" + name; }
};

// Shows the indices that assignment leaves.
struct IndexProbe : KORXFilePath {
    using KORXFilePath::KORXFilePath;
    using KORXFilePath::operator=;
    std::vector<int> Indices() const {
        return {m_length, m_lastSeparatorIndex, m_nameIndex, m_firstDotIndex, m_lastDotIndex};
    }
};

// Each operation that uses one of these through the virtual table must see the override.
struct Overriding : KORXFilePath {
    using KORXFilePath::KORXFilePath;
    using KORXFilePath::operator=;
    bool IsValid() const override { return false; }
    const KORXString& GetPath() const override { return m_elsewhere; }
    KORXString GetDirectory() override { return KORXString(R"(Z:\root)"); }
    FILE* OpenFile(const KORXWChar*) const override { return std::tmpfile(); }
    void FixSeparator(KORXString& text) override {
        m_separator = '/';
        text = text.replace('\\', '/');
    }
    KORXString m_elsewhere = KORXString(R"(other\f)");
};

}  // namespace

TEST(FilePathAccessors, EachShapeOfPath) {
    // text, stored, name, name without first and last extension, last extension, directory, abs
    const char* const cases[][8] = {
        {R"(C:/d\p.m.txt)", R"(C:\d\p.m.txt)", "p.m.txt", "p", "p.m", "txt", R"(C:\d)", "abs"},
        {".profile", ".profile", ".profile", "", "", "profile", "", ""},
        {R"(dir.old\readme)", R"(dir.old\readme)", "readme", "readme", "readme", "", "dir.old", ""},
        {R"(d\x.)", R"(d\x.)", "x.", "x", "x", "", "d", ""},
        {"/x", R"(\x)", "x", "x", "x", "", "", "abs"},
        {"C:", "C:", "C:", "C:", "C:", "", "", ""},
        {R"(C:\)", R"(C:\)", "", "", "", "", "C:", "abs"},
        {"1:/x", R"(1:\x)", "x", "x", "x", "", "1:", "abs"},  // the drive letter is not read
        {"", "", "", "", "", "", "", ""},
        {R"(x\..)", R"(x\..)", "..", "", ".", "", "x", ""},
        // Bytes that are not UTF-8 read as U+FFFD.
        {"\xFF/n\x80.t", "\xEF\xBF\xBD\\n\xEF\xBF\xBD.t", "n\xEF\xBF\xBD.t", "n\xEF\xBF\xBD",
         "n\xEF\xBF\xBD", "t", "\xEF\xBF\xBD", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c[0]);
        KORXFilePath path(c[0]);
        EXPECT_EQ(Text(path.GetPath()), c[1]);
        EXPECT_EQ(Text(path.GetName()), c[2]);
        EXPECT_EQ(Text(path.GetNameWithoutExtension()), c[3]);
        EXPECT_EQ(Text(path.GetNameWithoutLastExtension()), c[4]);
        EXPECT_EQ(Text(path.GetLastExtension()), c[5]);
        EXPECT_EQ(Text(path.GetDirectory()), c[6]);
        EXPECT_EQ(path.IsValid(), c[0][0] != '\0');
        EXPECT_EQ(path.IsAbsolute(), c[7][0] != '\0');
    }
}

TEST(FilePathConstruction, EveryFormFixesItsTextAndOnlyNullWideTextAsserts) {
    EventRecorder recorder;
    const KORXFilePath original("a/b.c");
    for (const KORXFilePath& path :
         {KORXFilePath(original), KORXFilePath(&original), KORXFilePath(KORXString("a/b.c")),
          KORXFilePath(u"a/b.c"), KORXFilePath(L"a/b.c")})
        EXPECT_EQ(Text(path.GetPath()), R"(a\b.c)");

    // No text: no file behind it, null text, and nothing written for a null buffer.
    for (const KORXFilePath& path :
         {KORXFilePath(), FromNull<char>(), FromNull<KORXFilePath>(), KORXFilePath(nullptr, ".c"),
          KORXFilePath("a", nullptr), FromNull<KORXWChar>(), FromNull<wchar_t>()}) {
        EXPECT_FALSE(path.OpenFile(L"r") || path.DoesFileExist() || path.RemoveFile());
        EXPECT_TRUE(static_cast<const char*>(path) == nullptr &&
                    static_cast<const KORXWChar*>(path) == nullptr);
        path.GetChars(static_cast<char*>(nullptr), 5);
    }
    ASSERT_EQ(recorder.events.size(), 2u);  // from the two null wide texts
    for (const RecordedEvent& event : recorder.events)
        EXPECT_EQ(event.name + ": " + event.message, "KORXAssertEvent: Invalid KORXFilePath");
}

TEST(FilePathAssignment, EmptyTextZeroesTheIndicesOfAValidPathOnly) {
    IndexProbe a("d/n.e"), b("d/n.e"), c("d/n.e"), never;
    a = static_cast<const char*>(nullptr);
    b = KORXString();
    c = KORXFilePath();
    never = "";
    for (IndexProbe* path : {&a, &b, &c}) {
        EXPECT_EQ(path->Indices(), std::vector<int>(5, 0));
        EXPECT_EQ(Text(path->GetName()) + Text(path->GetDirectory()), "");  // still empty text
    }
    EXPECT_EQ(never.Indices(), (std::vector<int>{0, -1, -1, -1, -1}));  // nothing to clear

    a = "d/n.e.f";
    const KORXFilePath& same = a;
    a = same;  // assigned from itself, a path keeps its text
    a = a.GetPath();
    a = static_cast<const char*>(a);
    EXPECT_EQ(a.Indices(), (std::vector<int>{7, 1, 2, 3, 5}));
    EXPECT_EQ(Text(a.GetPath()), R"(d\n.e.f)");
}

TEST(FilePathOperations, NewPathsFromPartsAndExtensionTests) {
    auto plus = [](const char* p, const char* part) { return KORXFilePath(p) + KORXString(part); };
    auto ext = [](const char* p, const char* e) { return KORXFilePath(p).ReplaceLastExtension(e); };
    const std::pair<KORXFilePath, const char*> cases[] = {
        {plus("a", "b.c"), R"(a\b.c)"},
        {plus("a", ".bak"), "a.bak"},
        {plus("a/", "b"), R"(a\b)"},
        {plus("a", R"(\b)"), R"(a\b)"},
        {plus("a", "/b"), R"(a\\b)"},  // '/' is read before fixing
        {plus("", "b"), R"(\b)"},
        {plus("a", ""), R"(a\)"},
        {ext("a.tar.gz", "zip"), "a.tar.zip"},
        {ext(R"(d.x\r)", ".t"), R"(d.x\r.t)"},
        {ext("a", nullptr), "a."},
        {ext("a.b", "x/y"), R"(a.x\y)"},
        {KORXFilePath("a.tar.gz", ".zip"), "a.zip"},  // from the first dot
        {KORXFilePath("d.x/a", ".b"), R"(d.x\a.b)"},
        {KORXFilePath("", ".e"), ".e"},
    };
    for (const auto& [path, expected] : cases)
        EXPECT_EQ(Made(path), expected);
    KORXFilePath kept(R"(d\a.b)", "/e");  // the extension is appended as it is, '/' included
    EXPECT_EQ(Text(kept.GetPath()) + " " + Text(kept.GetName()), R"(d\a/e a/e)");

    const std::tuple<const char*, const char*, bool> extensions[] = {
        {"a.txt", "TXT", true}, {"a.txt", ".tXt", true},   {"a.tar.gz", "tar.gz", true},
        {"a.txt", "xt", false}, {"a.txt", "", false},      {"txt", "txt", false},
        {"", "txt", false},     {"a.txt", "a.txt", false}, {"a.tar.gz", "tar", false}};
    for (const auto& [path, ext, has] : extensions)
        EXPECT_EQ(KORXFilePath(path).HasExtension(KORXString(ext)), has) << path << " " << ext;
}

TEST(FilePathOperations, ResolveAgainstDropsLeadingDotsAndCutsTheDirectoryAtAnyLength) {
    const char* const cases[][3] = {
        {"D:/abs.txt", R"(C:\w\m.cfg)", R"(D:\abs.txt)"},
        // ".." cuts the directory where the rest of the relative text has its last '\'.
        {R"(..\f.txt)", R"(C:\w\m.cfg)", R"(C:\w\f.txt)"},
        {R"(..\sub\f.txt)", R"(C:\w\m.cfg)", R"(C:\sub\f.txt)"},
        {R"(..\..\a\b)", R"(C:\w\m.cfg)", R"(C\a\b)"},
        {R"(..\abc\f)", R"(C:\m.cfg)", R"(C:\abc\f)"},  // a shorter directory has nothing to cut
        {R"(.x\a)", R"(C:\w\m.cfg)", R"(C:\w\\a)"},     // any leading dot drops two characters
        {".", R"(C:\w\m.cfg)", R"(C:\w\)"},
        {"f.txt", "m.cfg", "f.txt"},
        {"..", "", ""},
    };
    for (const auto& c : cases) {
        KORXFilePath base(c[1]);
        EXPECT_EQ(Made(KORXFilePath(c[0]).ResolveAgainst(base)), c[2]) << c[0] << " on " << c[1];
    }

    std::string text;  // ten thousand characters
    while (text.size() < 9996)
        text += "d/";
    KORXFilePath path((text + "f.ab").c_str()), base(R"(C:\w\m.cfg)");
    EXPECT_EQ(Text(path.GetName()) + Text(path.GetLastExtension()), "f.abab");
    EXPECT_EQ(Made(path.ResolveAgainst(base)).size(), 10005u);
    std::string bytes(3 * 10000 + 3, 'z');
    path.GetChars(bytes.data(), 20000);
    EXPECT_EQ(std::string(bytes.c_str()), Backslashed(text) + "f.ab");
}

TEST(FilePathChars, CopiesTheFirstCountCharactersAndATerminator) {
    const KORXFilePath path(u"d/\u00E9\U0001F600x");  // units: d \ é, a surrogate pair, x
    const std::tuple<int, std::u16string, std::string, std::wstring> cases[] = {
        {-1, u"", "", L""},
        // Cutting the pair: the narrow and UTF-32 copies take all of it.
        {4, u"d\\\u00E9\xD83D", "d\\\xC3\xA9\xF0\x9F\x98\x80", L"d\\\u00E9\U0001F600"},
        {100, u"d\\\u00E9\U0001F600x", "d\\\xC3\xA9\xF0\x9F\x98\x80x", L"d\\\u00E9\U0001F600x"},
    };
    for (const auto& [count, wide, narrow, utf32] : cases) {
        KORXWChar wideCopy[16];
        char narrowCopy[32];
        wchar_t utf32Copy[16];
        path.GetChars(wideCopy, count);
        path.GetChars(narrowCopy, count);
        path.GetChars(utf32Copy, count);
        EXPECT_EQ(std::u16string(wideCopy), wide) << count;
        EXPECT_EQ(std::string(narrowCopy), narrow) << count;
        EXPECT_EQ(std::wstring(utf32Copy), utf32) << count;
    }
}

TEST(FilePathDerived, OverridesReachTheOperationsThatUseThem) {
    Overriding odd("/x");
    KORXFilePath base(R"(C:\w\m.cfg)"), assigned("kept");
    assigned = odd;  // the source reads as invalid: nothing is taken
    EXPECT_EQ(Text(assigned.GetPath()), "");
    // The overridden IsValid makes "/x" relative; the overridden GetPath gives the text resolved.
    EXPECT_EQ(Made(odd.ResolveAgainst(base)), R"(C:\w\other\f)");
    EXPECT_EQ(Made(KORXFilePath(odd)), R"(other\f)");
    EXPECT_EQ(Made(KORXFilePath("f").ResolveAgainst(odd)), R"(Z:\root\f)");
    EXPECT_TRUE(odd.DoesFileExist());
    odd = R"(a\b/c.d)";  // stored with the override's separator, and indexed by it
    EXPECT_EQ(Text(odd.GetName()) + " " + static_cast<const char*>(odd), "c.d a/b/c.d");
}

TEST(FilePathFiles, StreamsOpenExistRemoveAndTemporaryNames) {
    TempDir dir;
    fs::create_directory(dir / "sub.d");
    KORXFilePath file((dir / "sub.d/out.txt").c_str());  // stored with '\'
    KORXFileOutputStream(file).write("bytes", 5);
    char buffer[8] = {};
    EXPECT_EQ(KORXFileInputStream(file).read(buffer, 8), 5);
    EXPECT_STREQ(buffer, "bytes");
    EXPECT_TRUE(file.RemoveFile());
    EXPECT_FALSE(fs::exists(dir / "sub.d/out.txt") || file.DoesFileExist() || file.RemoveFile());

    // A directory is not a file, with or without its trailing separator.
    for (const std::string& name : {dir / "sub.d", dir / "sub.d/"})
        EXPECT_FALSE(KORXFilePath(name.c_str()).DoesFileExist()) << name;

    // A path that does not fit in 260 characters is not removed.
    const std::string folder = dir / std::string(150, 'd');
    fs::create_directory(folder);
    for (size_t length : {259u, 260u}) {
        const std::string name = folder + "/" + std::string(length - folder.size() - 1, 'f');
        std::ofstream{name};
        EXPECT_EQ(KORXFilePath(name.c_str()).RemoveFile(), length == 259) << length;
        EXPECT_EQ(fs::exists(name), length == 260) << length;
    }

    EXPECT_EQ(Text(KORXFilePath::GetCurrentWorkingDirectory().GetPath()),
              Backslashed(fs::current_path().string()));
    for (int i = 0; i < 3; ++i) {  // each name must avoid the files made for the earlier ones
        KORXFilePath temporary("stale");
        KORXFilePath::GetTemporaryFilePath(temporary);
        const std::string name = Text(temporary.GetName());
        EXPECT_EQ(Text(temporary.GetDirectory()) + " " + name.substr(0, 8), ". KORXTemp") << name;
        EXPECT_FALSE(fs::exists(name)) << name;
        std::ofstream{name};
        EXPECT_TRUE(temporary.DoesFileExist()) << name;
    }
}
