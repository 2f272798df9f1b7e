#include <korx/KORXFilePath.h>
#include <korx/KORXStream.h>

#include "support/event_recorder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <sys/stat.h>

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

std::string Slashed(std::string text, char from = '/', char to = '\\') {
    for (char& c : text)
        c = c == from ? to : c;
    return text;
}

bool Exists(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0;
}

void Touch(const std::string& path) {
    FILE* file = std::fopen(path.c_str(), "w");
    ASSERT_NE(file, nullptr) << path;
    std::fclose(file);
}

// A fresh directory, made current while the object lives, then removed with its entries.
class TempDir {
public:
    TempDir() : m_path(testing::TempDir() + "korx_file_path_XXXXXX") {
        if (mkdtemp(m_path.data()) == nullptr)
            ADD_FAILURE() << "no temporary directory";
        std::filesystem::current_path(m_path);
    }
    ~TempDir() {
        std::filesystem::current_path(m_saved);
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    std::string operator/(const std::string& name) const { return m_path + "/" + name; }

private:
    std::filesystem::path m_saved = std::filesystem::current_path();
    std::string m_path;
};

// Shows the indices that assignment leaves.
class IndexProbe : public KORXFilePath {
public:
    using KORXFilePath::KORXFilePath;
    using KORXFilePath::operator=;
    std::vector<int> Indices() const {
        return {m_length, m_lastSeparatorIndex, m_nameIndex, m_firstDotIndex, m_lastDotIndex};
    }
};

}  // namespace

TEST(FilePathAccessors, EachShapeOfPath) {
    // text, stored, name, name without extension, without last extension, last extension,
    // directory, absolute
    const char* const cases[][8] = {
        {"C:/data/part.model.txt", R"(C:\data\part.model.txt)", "part.model.txt", "part",
         "part.model", "txt", R"(C:\data)", "abs"},
        {R"(dir\)", R"(dir\)", "", "", "", "", "dir", ""},
        {"file", "file", "file", "file", "file", "", "", ""},
        {".profile", ".profile", ".profile", "", "", "profile", "", ""},
        {R"(dir.old\readme)", R"(dir.old\readme)", "readme", "readme", "readme", "", "dir.old", ""},
        {R"(a/b\c.d)", R"(a\b\c.d)", "c.d", "c", "c", "d", R"(a\b)", ""},
        {R"(d\x.)", R"(d\x.)", "x.", "x", "x", "", "d", ""},
        {"/x", R"(\x)", "x", "x", "x", "", "", "abs"},
        {"C:", "C:", "C:", "C:", "C:", "", "", ""},
        {"C:x", "C:x", "C:x", "C:x", "C:x", "", "", ""},
        {R"(C:\)", R"(C:\)", "", "", "", "", "C:", "abs"},
        {"1:/x", R"(1:\x)", "x", "x", "x", "", "1:", "abs"},  // the drive letter is not read
        {"", "", "", "", "", "", "", ""},
        {"a", "a", "a", "a", "a", "", "", ""},
        {"///", R"(\\\)", "", "", "", "", R"(\\)", "abs"},
        {"...", "...", "...", "", "..", "", "", ""},
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
    const KORXFilePath forms[] = {KORXFilePath(original), KORXFilePath(&original),
                                  KORXFilePath(KORXString("a/b.c")), KORXFilePath(u"a/b.c"),
                                  KORXFilePath(L"a/b.c")};
    for (const KORXFilePath& path : forms)
        EXPECT_EQ(Text(path.GetPath()), R"(a\b.c)");
    EXPECT_TRUE(recorder.events.empty());

    const KORXFilePath empties[] = {KORXFilePath(static_cast<const char*>(nullptr)),
                                    KORXFilePath(static_cast<const KORXFilePath*>(nullptr)),
                                    KORXFilePath(nullptr, ".c"),
                                    KORXFilePath("a", nullptr),
                                    KORXFilePath(static_cast<const KORXWChar*>(nullptr)),
                                    KORXFilePath(static_cast<const wchar_t*>(nullptr))};
    for (const KORXFilePath& path : empties) {
        EXPECT_FALSE(path.IsValid());
        EXPECT_EQ(static_cast<const char*>(path), nullptr);
    }
    ASSERT_EQ(recorder.events.size(), 2u);
    for (const RecordedEvent& event : recorder.events)
        EXPECT_EQ(event.name + ": " + event.message, "KORXAssertEvent: Invalid KORXFilePath");
}

TEST(FilePathAssignment, EmptyTextZeroesTheIndicesOfAValidPathOnly) {
    const std::vector<int> unset = {0, -1, -1, -1, -1};
    const std::vector<int> zero = {0, 0, 0, 0, 0};
    IndexProbe a("d/n.e"), b("d/n.e"), c("d/n.e"), d("d/n.e"), never;
    a = "";
    b = static_cast<const char*>(nullptr);
    c = KORXString();
    d = KORXFilePath();
    never = "";
    for (IndexProbe* path : {&a, &b, &c, &d}) {
        EXPECT_EQ(path->Indices(), zero);
        EXPECT_FALSE(path->IsValid());
        EXPECT_EQ(Text(path->GetName()) + Text(path->GetDirectory()) +
                      Text(path->GetNameWithoutExtension()) + Text(path->GetLastExtension()),
                  "");
        EXPECT_EQ(Made(path->ReplaceLastExtension("x")), ".x");
    }
    EXPECT_EQ(never.Indices(), unset);  // nothing to clear, nothing recomputed

    a = "d/n.e.f";
    EXPECT_EQ(a.Indices(), (std::vector<int>{7, 1, 2, 3, 5}));
    const KORXFilePath& same = a;
    a = same;  // assigned from itself, a path keeps its text
    a = a.GetPath();
    a = static_cast<const char*>(a);
    EXPECT_EQ(Text(a.GetPath()), R"(d\n.e.f)");
}

TEST(FilePathOperations, NewPathsFromParts) {
    auto plus = [](const char* p, const char* part) { return KORXFilePath(p) + KORXString(part); };
    auto replace = [](const char* p, const char* ext) {
        return KORXFilePath(p).ReplaceLastExtension(ext);
    };
    EXPECT_EQ(Made(plus("a", ".bak")), "a.bak");
    EXPECT_EQ(Made(plus("a", "b.c")), R"(a\b.c)");
    EXPECT_EQ(Made(plus("a/", "b")), R"(a\b)");
    EXPECT_EQ(Made(plus("a", R"(\b)")), R"(a\b)");
    EXPECT_EQ(Made(plus("a", "/b")), R"(a\\b)");  // '/' is read before fixing
    EXPECT_EQ(Made(plus("", "b")), R"(\b)");
    EXPECT_EQ(Made(plus("a", "")), R"(a\)");

    EXPECT_EQ(Made(replace("a.tar.gz", "zip")), "a.tar.zip");
    EXPECT_EQ(Made(replace(R"(dir.old\readme)", "txt")), R"(dir.old\readme.txt)");
    EXPECT_EQ(Made(replace("a.b", ".c")), "a.c");
    EXPECT_EQ(Made(replace("a", nullptr)), "a.");
    EXPECT_EQ(Made(replace("a.b", "x/y")), R"(a.x\y)");

    EXPECT_EQ(Made(KORXFilePath("a.tar.gz", ".zip")), "a.zip");  // from the first dot
    EXPECT_EQ(Made(KORXFilePath("dir.x/a", ".b")), R"(dir.x\a.b)");
    KORXFilePath kept(R"(d\a.b)", "/e");  // the extension is appended as it is, '/' included
    EXPECT_EQ(Text(kept.GetPath()) + " " + Text(kept.GetName()), R"(d\a/e a/e)");
    EXPECT_EQ(Made(KORXFilePath("", ".e")), ".e");
}

TEST(FilePathOperations, HasExtensionIgnoresCaseAndNeedsTheDot) {
    const std::pair<const char*, const char*> with[] = {
        {"a.txt", "TXT"}, {"a.txt", ".txt"}, {R"(d\a.TxT)", "tXt"}, {"a.tar.gz", "tar.gz"}};
    const std::pair<const char*, const char*> without[] = {
        {"a.txt", "xt"}, {"a.txt", ""},      {"atxt", "txt"},    {"txt", "txt"},
        {"", "txt"},     {"a.txt", "a.txt"}, {"a.tar.gz", "tar"}};
    for (const auto& c : with)
        EXPECT_TRUE(KORXFilePath(c.first).HasExtension(KORXString(c.second))) << c.first;
    for (const auto& c : without)
        EXPECT_FALSE(KORXFilePath(c.first).HasExtension(KORXString(c.second))) << c.first;
}

TEST(FilePathOperations, ResolveAgainstDropsLeadingDotsAndCutsTheDirectory) {
    const char* const cases[][3] = {
        {R"(sub\f.txt)", R"(C:\w\m.cfg)", R"(C:\w\sub\f.txt)"},
        {R"(.\f.txt)", R"(C:\w\m.cfg)", R"(C:\w\f.txt)"},
        {"D:/abs.txt", R"(C:\w\m.cfg)", R"(D:\abs.txt)"},
        {"/abs", R"(C:\w\m.cfg)", R"(\abs)"},
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
        SCOPED_TRACE(std::string(c[0]) + " against " + c[1]);
        KORXFilePath base(c[1]);
        EXPECT_EQ(Made(KORXFilePath(c[0]).ResolveAgainst(base)), c[2]);
    }
}

TEST(FilePathOperations, TenThousandCharactersAndNoText) {
    std::string text;
    while (text.size() < 9996)
        text += "d/";
    KORXFilePath path((text + "f.ab").c_str());
    KORXFilePath base(R"(C:\w\m.cfg)");
    EXPECT_EQ(path.GetPath().length(), 10000);
    EXPECT_EQ(Text(path.GetName()) + Text(path.GetLastExtension()), "f.abab");
    EXPECT_EQ(path.GetDirectory().length(), 9995);
    EXPECT_EQ(Made(path + KORXString("g")).size(), 10002u);
    EXPECT_EQ(Made(path.ResolveAgainst(base)).size(), 10005u);
    EXPECT_FALSE(path.DoesFileExist());
    EXPECT_FALSE(path.RemoveFile());
    std::string bytes(3 * 10000 + 3, 'z');
    path.GetChars(bytes.data(), 20000);
    EXPECT_EQ(std::string(bytes.c_str()), Slashed(text) + "f.ab");

    KORXFilePath empty;
    EXPECT_EQ(empty.OpenFile(u"r"), nullptr);
    EXPECT_FALSE(empty.DoesFileExist() || empty.RemoveFile());
    EXPECT_EQ(static_cast<const KORXWChar*>(empty), nullptr);
    empty.GetChars(static_cast<char*>(nullptr), 5);  // nothing to write into: nothing happens
}

TEST(FilePathChars, CopiesTheFirstCountCharactersAndATerminator) {
    const KORXFilePath path(u"d/\u00E9\U0001F600x");  // units: d \ é, a surrogate pair, x
    const struct {
        int count;
        std::u16string wide;
        std::string narrow;
        std::wstring utf32;
    } cases[] = {
        {-1, u"", "", L""},
        {3, u"d\\\u00E9", "d\\\xC3\xA9", L"d\\\u00E9"},
        // Cutting the pair: the narrow and UTF-32 copies take all of it.
        {4, u"d\\\u00E9\xD83D", "d\\\xC3\xA9\xF0\x9F\x98\x80", L"d\\\u00E9\U0001F600"},
        {100, u"d\\\u00E9\U0001F600x", "d\\\xC3\xA9\xF0\x9F\x98\x80x", L"d\\\u00E9\U0001F600x"},
    };
    for (const auto& c : cases) {
        KORXWChar wide[16];
        char narrow[32];
        wchar_t utf32[16];
        path.GetChars(wide, c.count);
        path.GetChars(narrow, c.count);
        path.GetChars(utf32, c.count);
        EXPECT_EQ(std::u16string(wide), c.wide) << c.count;
        EXPECT_EQ(std::string(narrow), c.narrow) << c.count;
        EXPECT_EQ(std::wstring(utf32), c.utf32) << c.count;
    }
}

namespace {

// Each overrides one operation; the operations that use it must see the override.
class SlashPath : public KORXFilePath {
public:
    using KORXFilePath::operator=;

protected:
    void FixSeparator(KORXString& text) override {
        m_separator = '/';
        text = text.replace('\\', '/');
    }
};

class NeverValid : public KORXFilePath {
public:
    using KORXFilePath::KORXFilePath;
    bool IsValid() const override { return false; }
};

class ElsewherePath : public KORXFilePath {
public:
    using KORXFilePath::KORXFilePath;
    const KORXString& GetPath() const override { return m_elsewhere; }
    KORXString m_elsewhere = KORXString(R"(other\f)");
};

class FixedDirectory : public KORXFilePath {
public:
    using KORXFilePath::KORXFilePath;
    KORXString GetDirectory() override { return KORXString(R"(Z:\root)"); }
};

class OpensAnything : public KORXFilePath {
public:
    using KORXFilePath::KORXFilePath;
    FILE* OpenFile(const KORXWChar* mode) const override {
        modes += Text(KORXString(mode));
        return std::tmpfile();
    }
    mutable std::string modes;
};

}  // namespace

TEST(FilePathDerived, OverridesReachTheOperationsThatUseThem) {
    SlashPath slash;
    slash = R"(a\b/c.d)";
    EXPECT_EQ(Text(slash.GetPath()) + " " + Text(slash.GetName()) + " " +
                  Text(slash.GetDirectory()),
              "a/b/c.d c.d a/b");

    KORXFilePath base(R"(C:\w\m.cfg)");
    NeverValid neverValid("/x");
    EXPECT_FALSE(neverValid.IsAbsolute());
    EXPECT_EQ(Made(neverValid.ResolveAgainst(base)), R"(C:\w\\x)");

    ElsewherePath elsewhere("ignored");
    KORXFilePath assigned;
    assigned = elsewhere;
    EXPECT_EQ(Made(elsewhere.ResolveAgainst(base)), R"(C:\w\other\f)");
    EXPECT_EQ(Made(KORXFilePath(elsewhere)) + " " + Made(assigned), R"(other\f other\f)");

    FixedDirectory fixedBase("anything");
    EXPECT_EQ(Made(KORXFilePath("f").ResolveAgainst(fixedBase)), R"(Z:\root\f)");

    OpensAnything opens("/no/such/file");
    EXPECT_TRUE(opens.DoesFileExist());
    EXPECT_EQ(opens.modes, "r");
}

TEST(FilePathFiles, StreamsOpenExistAndRemove) {
    TempDir dir;
    ASSERT_EQ(::mkdir((dir / "sub.d").c_str(), 0700), 0);
    KORXFilePath file = KORXFilePath((dir / "").c_str()) + KORXString("sub.d/out.txt");
    ASSERT_EQ(Text(file.GetPath()), Slashed(dir / "sub.d/out.txt"));  // stored with '\'
    EXPECT_FALSE(file.DoesFileExist());
    KORXFileOutputStream(file).write("bytes", 5);
    EXPECT_TRUE(file.DoesFileExist());
    FILE* opened = file.OpenFile(L"a");
    ASSERT_NE(opened, nullptr);
    std::fputs("!", opened);
    std::fclose(opened);
    char buffer[8] = {};
    EXPECT_EQ(KORXFileInputStream(file).read(buffer, 8), 6);
    EXPECT_STREQ(buffer, "bytes!");

    EXPECT_TRUE(file.RemoveFile());
    EXPECT_FALSE(Exists(dir / "sub.d/out.txt"));
    EXPECT_FALSE(file.DoesFileExist() || file.RemoveFile());
    EXPECT_EQ(KORXFileInputStream(file).read(buffer, 8), -1);

    // A directory is not a file, with or without its trailing separator.
    for (const std::string& name : {dir / "sub.d", dir / "sub.d/"}) {
        EXPECT_FALSE(KORXFilePath(name.c_str()).DoesFileExist()) << name;
        EXPECT_EQ(KORXFilePath(name.c_str()).OpenFile(u"r"), nullptr) << name;
    }

    // A path that does not fit in 260 characters is not removed.
    const std::string folder = dir / std::string(150, 'd');
    ASSERT_EQ(::mkdir(folder.c_str(), 0700), 0);
    for (size_t length : {259u, 260u}) {
        const std::string name = folder + "/" + std::string(length - folder.size() - 1, 'f');
        Touch(name);
        EXPECT_EQ(KORXFilePath(name.c_str()).RemoveFile(), length == 259) << length;
        EXPECT_EQ(Exists(name), length == 260) << length;
    }
}

TEST(FilePathFiles, WorkingDirectoryAndTemporaryNames) {
    TempDir dir;
    KORXFilePath cwd = KORXFilePath::GetCurrentWorkingDirectory();
    EXPECT_EQ(Text(cwd.GetPath()), Slashed(std::filesystem::current_path().string()));
    EXPECT_TRUE(cwd.IsAbsolute());

    std::vector<std::string> names;
    for (int i = 0; i < 3; ++i) {
        KORXFilePath temporary("stale");
        KORXFilePath::GetTemporaryFilePath(temporary);
        const std::string name = Text(temporary.GetName());
        SCOPED_TRACE(name);
        EXPECT_EQ(Text(temporary.GetDirectory()), ".");
        EXPECT_EQ(name.rfind("KORXTemp", 0), 0u);
        EXPECT_GT(name.size(), 8u);
        EXPECT_FALSE(Exists(name) || temporary.DoesFileExist());
        Touch(name);  // the next name must avoid this one
        EXPECT_TRUE(temporary.DoesFileExist());
        names.push_back(name);
    }
    EXPECT_TRUE(names[0] != names[1] && names[1] != names[2]);
}
