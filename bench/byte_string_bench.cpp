// The byte strings and the tokenizer on the work the file-element code gives them.
//
// Path patterns: 10,000 generated model paths (assembly trees, wing models, drawings, hidden
// ".cache" and ".backup" components) against 20 patterns of the kinds users type, every path
// against every pattern per iteration; items are path-pattern pairs. The peer is the C
// runtime's fnmatch with case folding, leading-directory matching and the leading-period rule,
// the nearest it offers: its '*' never takes a leading '.', so the match counts (reported as
// counters) differ a little. A pathological pattern, "*a*a*a*a*a*a*a*a*b" against runs of 'a'
// up to 4,000 bytes long, shows how the cost grows (it has no peer: fnmatch backtracks).
//
// Tokenizer: 1M dotted names such as "Assembly.Part12.Face.Edge3", each split at '.' into a
// new KORXStringTokenizer; the peer splits the same text held as std::u16string into a new
// std::vector<std::u16string>. Both build and free their tokens inside the timed loop.
//
// Appending: 1M words of 3 to 12 bytes appended one by one to an empty Gk_String with
// append(const char*), against std::string::append of the same words. Both measure the words
// (strlen) as they go and free the result inside the timed loop.
//
// All inputs come from fixed seeds and are built before timing starts.
#include <korx/Gk_String.h>
#include <korx/KORXString.h>
#include <korx/KORXStringTokenizer.h>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#if __has_include(<fnmatch.h>)
#include <fnmatch.h>
#if defined(FNM_CASEFOLD) && defined(FNM_LEADING_DIR)
#define KORX_BENCH_WITH_FNMATCH 1
#endif
#endif

namespace {

// ---------------------------------------------------------------------------------------------
// Path patterns

constexpr int kPaths = 10'000;

std::string number(std::mt19937& random, int digits, unsigned limit) {
    std::string text = std::to_string(random() % limit);
    while (static_cast<int>(text.size()) < digits)
        text.insert(text.begin(), '0');
    return text;
}

std::string hexWord(std::mt19937& random, int n) {
    static const char digits[] = "0123456789abcdef";
    std::string text;
    for (int i = 0; i < n; ++i)
        text += digits[random() % 16];
    return text;
}

// Every draw is its own statement, so the paths do not depend on the compiler's order of
// evaluation.
std::string modelPath(std::mt19937& random) {
    static const char* const assemblies[] = {"Engine",       "Gearbox", "Chassis",  "Fuselage",
                                             "landing_gear", "Cockpit", "tail_cone"};
    static const char* const extensions[] = {"stp", "stp", "stp", "STP", "step", "igs"};
    static const char* const wingParts[] = {"wing", "tail", "fin", "flap", "Wing_L", "Wing_R"};
    static const char* const drawings[] = {"Bracket", "housing", "Shaft", "Cover", "mount_plate"};
    static const char* const cached[] = {"thumb", "preview", "mesh", "index"};

    const unsigned kind = random() % 100;
    std::string path;
    if (kind < 40) {
        path = std::string("assemblies/") + assemblies[random() % 7];
        path += "/Block_" + number(random, 2, 40);
        path += "/part" + number(random, 4, 2000);
        path += std::string(".") + extensions[random() % 6];
    } else if (kind < 55) {
        path = std::string("models/") + wingParts[random() % 6];
        path += "/Rib" + number(random, 2, 30) + ".igs";
    } else if (kind < 65) {
        path = std::string("models/") + wingParts[random() % 6];
        path += "/Spar" + number(random, 1, 10);
        path += random() % 2 ? ".stp" : ".igs";
    } else if (kind < 75) {
        path = ".cache/" + hexWord(random, 8);
        path += std::string("/") + cached[random() % 4];
        path += random() % 2 ? ".tmp" : ".png";
    } else if (kind < 85) {
        path = std::string("drawings/") + drawings[random() % 5];
        path += "_rev";
        path += static_cast<char>('a' + random() % 6);
        path += ".pdf";
    } else if (kind < 92) {
        path = std::string("assemblies/") + assemblies[random() % 7];
        path += "/.backup/part" + number(random, 4, 2000) + ".stp.bak";
    } else if (kind < 96) {
        path = std::string("models/") + wingParts[random() % 6];
        path += "/.Rib" + number(random, 2, 30) + ".igs";
    } else {
        path = "library/fasteners/iso/4762/M" + number(random, 1, 10);
        path += "x" + number(random, 2, 60);
        path += "/socket_head_cap_screw.stp";
    }
    return path;
}

const std::vector<std::string>& pathTexts() {
    static const std::vector<std::string> paths = [] {
        std::mt19937 random(11);
        std::vector<std::string> out;
        out.reserve(kPaths);
        for (int i = 0; i < kPaths; ++i)
            out.push_back(modelPath(random));
        return out;
    }();
    return paths;
}

const std::vector<std::string>& patternTexts() {
    static const std::vector<std::string> patterns = {
        "*.stp",
        "models/*/Rib??.igs",
        "assemblies/[A-Z]*/Block_*",
        "*/part0[0-4]*",
        ".cache/*",
        "MODELS",
        "*a*b*c*d",
        "assemblies/Engine",
        "assemblies/*/Block_1?/*",
        "*.[is][gt][sp]",
        "models/wing/Rib0[!0]*",
        "drawings/*_rev[a-c].pdf",
        "?cache/*",
        "*/.backup/*.bak",
        "assemblies/Engine/Block_12/part0345.stp",
        "*Rib*",
        "[!a]*",
        "models/\\*",
        "*_rev?.*",
        "assemblies/Gearbox/*/part*[13579].STP",
    };
    return patterns;
}

void BM_MatchPathPattern(benchmark::State& state) {
    std::vector<Gk_ROString> paths;
    for (const std::string& path : pathTexts())
        paths.emplace_back(path.c_str());
    std::vector<Gk_ROString> patterns;
    for (const std::string& pattern : patternTexts())
        patterns.emplace_back(pattern.c_str());

    int64_t matches = 0;
    for (auto _ : state) {
        matches = 0;
        for (const Gk_ROString& pattern : patterns) {
            for (const Gk_ROString& path : paths)
                matches += path.matchPathPattern(pattern) ? 1 : 0;
        }
        benchmark::DoNotOptimize(matches);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(paths.size()) *
                            static_cast<int64_t>(patterns.size()));
    state.counters["matches"] = static_cast<double>(matches);
}
BENCHMARK(BM_MatchPathPattern)->Unit(benchmark::kMillisecond);

#if defined(KORX_BENCH_WITH_FNMATCH)

void BM_Fnmatch(benchmark::State& state) {
    const std::vector<std::string>& paths = pathTexts();
    const std::vector<std::string>& patterns = patternTexts();
    const int flags = FNM_CASEFOLD | FNM_LEADING_DIR | FNM_PERIOD;

    int64_t matches = 0;
    for (auto _ : state) {
        matches = 0;
        for (const std::string& pattern : patterns) {
            for (const std::string& path : paths)
                matches += fnmatch(pattern.c_str(), path.c_str(), flags) == 0 ? 1 : 0;
        }
        benchmark::DoNotOptimize(matches);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(paths.size()) *
                            static_cast<int64_t>(patterns.size()));
    state.counters["matches"] = static_cast<double>(matches);
}
BENCHMARK(BM_Fnmatch)->Unit(benchmark::kMillisecond);

#endif

// Eight stars each followed by 'a', then a 'b' that never comes: a matcher that retries every
// split of the run takes time of the order of n^8.
void BM_MatchPathPatternPathological(benchmark::State& state) {
    const auto n = static_cast<size_t>(state.range(0));
    const Gk_ROString text(std::string(n, 'a').c_str());
    const Gk_ROString pattern("*a*a*a*a*a*a*a*a*b");
    for (auto _ : state) {
        const bool match = text.matchPathPattern(pattern);
        benchmark::DoNotOptimize(match);
    }
    state.SetComplexityN(state.range(0));
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_MatchPathPatternPathological)
    ->Arg(250)
    ->Arg(1000)
    ->Arg(4000)
    ->Complexity()
    ->Unit(benchmark::kMicrosecond);

// ---------------------------------------------------------------------------------------------
// Tokenizer

constexpr int kNames = 1'000'000;

const std::vector<std::u16string>& dottedNames() {
    static const std::vector<std::u16string> names = [] {
        static const char* const words[] = {"Assembly", "Part",  "Body", "Face",   "Edge",
                                            "Vertex",   "Shell", "Loop", "Sketch", "Feature"};
        std::mt19937 random(12);
        std::vector<std::u16string> out;
        out.reserve(kNames);
        for (int i = 0; i < kNames; ++i) {
            std::string name;
            const int depth = 2 + static_cast<int>(random() % 5);
            for (int d = 0; d < depth; ++d) {
                if (d > 0)
                    name += '.';
                name += words[random() % 10];
                if (random() % 3 != 0)
                    name += std::to_string(random() % 100);
            }
            out.emplace_back(name.begin(), name.end());  // ASCII: one unit per byte
        }
        return out;
    }();
    return names;
}

void countTokens(benchmark::State& state, int64_t tokens) {
    state.SetItemsProcessed(state.iterations() * kNames);
    state.counters["tokens"] = static_cast<double>(tokens);
}

const std::vector<KORXString>& dottedStrings() {
    static const std::vector<KORXString> strings = [] {
        std::vector<KORXString> out;
        out.reserve(kNames);
        for (const std::u16string& name : dottedNames())
            out.emplace_back(name.c_str());
        return out;
    }();
    return strings;
}

void BM_StringTokenizer(benchmark::State& state) {
    const std::vector<KORXString>& names = dottedStrings();

    int64_t tokens = 0;
    for (auto _ : state) {
        tokens = 0;
        for (const KORXString& name : names) {
            const KORXStringTokenizer tokenizer(name, u'.');
            tokens += tokenizer.GetTokenCount();
        }
        benchmark::DoNotOptimize(tokens);
    }
    countTokens(state, tokens);
}
BENCHMARK(BM_StringTokenizer)->Unit(benchmark::kMillisecond);

void BM_U16StringSplit(benchmark::State& state) {
    const std::vector<std::u16string>& names = dottedNames();

    int64_t tokens = 0;
    for (auto _ : state) {
        tokens = 0;
        for (const std::u16string& name : names) {
            std::vector<std::u16string> parts;
            size_t from = 0;
            for (;;) {
                const size_t dot = name.find(u'.', from);
                parts.push_back(name.substr(from, dot == std::u16string::npos ? dot : dot - from));
                if (dot == std::u16string::npos)
                    break;
                from = dot + 1;
            }
            tokens += static_cast<int64_t>(parts.size());
            benchmark::DoNotOptimize(parts.data());
        }
        benchmark::DoNotOptimize(tokens);
    }
    countTokens(state, tokens);
}
BENCHMARK(BM_U16StringSplit)->Unit(benchmark::kMillisecond);

// ---------------------------------------------------------------------------------------------
// Appending

constexpr int kPieces = 1'000'000;

// The words, each with its terminator, in one block; and where each starts.
struct Pieces {
    std::string bytes;
    std::vector<const char*> starts;
    int64_t length = 0;
};

const Pieces& pieces() {
    static const Pieces all = [] {
        std::mt19937 random(13);
        Pieces out;
        std::vector<size_t> offsets;
        offsets.reserve(kPieces);
        for (int i = 0; i < kPieces; ++i) {
            offsets.push_back(out.bytes.size());
            const int n = 3 + static_cast<int>(random() % 10);
            for (int k = 0; k < n; ++k)
                out.bytes += static_cast<char>('a' + random() % 26);
            out.bytes += '\0';
            out.length += n;
        }
        for (const size_t offset : offsets)
            out.starts.push_back(out.bytes.data() + offset);
        return out;
    }();
    return all;
}

void BM_GkStringAppend(benchmark::State& state) {
    const Pieces& words = pieces();
    for (auto _ : state) {
        Gk_String text;
        for (const char* word : words.starts)
            text.append(word);
        benchmark::DoNotOptimize(static_cast<char*>(text));
    }
    state.SetItemsProcessed(state.iterations() * kPieces);
    state.SetBytesProcessed(state.iterations() * words.length);
}
BENCHMARK(BM_GkStringAppend)->Unit(benchmark::kMillisecond);

void BM_StdStringAppend(benchmark::State& state) {
    const Pieces& words = pieces();
    for (auto _ : state) {
        std::string text;
        for (const char* word : words.starts)
            text.append(word);
        benchmark::DoNotOptimize(text.data());
    }
    state.SetItemsProcessed(state.iterations() * kPieces);
    state.SetBytesProcessed(state.iterations() * words.length);
}
BENCHMARK(BM_StdStringAppend)->Unit(benchmark::kMillisecond);

}  // namespace
