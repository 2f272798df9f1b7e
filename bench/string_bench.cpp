// UTF-8 to KORXString and KORXString to UTF-8 on 16 MiB of text, pure ASCII and mixed
// (about 70% ASCII characters, the rest Latin accents, CJK and emoji). When ICU is found the
// same conversions run through u_strFromUTF8 / u_strToUTF8 for comparison. Each side allocates
// its output inside the timed region; releasing it is not timed, for either side.
//
// Every case runs twice, with the allocator set the same way for both sides: "cold" maps fresh
// memory for every large block, so each iteration also pays the kernel's page faults on the
// output; "warm" serves blocks from a heap that keeps its pages, which leaves the conversion
// itself. (glibc otherwise decides by block size and history: an output just under 32 MiB gets
// reused pages after the first free and one just over does not, which would favour one side.)
#include <korx/KORXString.h>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <random>
#include <string>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

#if defined(KORX_BENCH_WITH_ICU)
#include <unicode/ustring.h>
#endif

namespace {

constexpr size_t kTextBytes = 16u << 20;

void appendUtf8(std::string& out, uint32_t cp) {
    unsigned char bytes[4];
    out.append(reinterpret_cast<const char*>(bytes), static_cast<size_t>(emitUtf8(cp, bytes)));
}

std::string asciiText() {
    std::mt19937 random(1);
    std::string text;
    text.reserve(kTextBytes);
    while (text.size() < kTextBytes) {
        const int word = 2 + static_cast<int>(random() % 9);
        for (int i = 0; i < word; ++i)
            text += static_cast<char>('a' + random() % 26);
        text += random() % 12 == 0 ? '\n' : ' ';
    }
    text.resize(kTextBytes);
    return text;
}

// Words of running text: mostly English, some accented Latin words, CJK runs and emoji.
std::string mixedText() {
    static const char* const latin[] = {"café",   "naïve",      "Größe", "déjà", "señor",
                                        "façade", "Ærøskøbing", "crème", "über", "élan"};
    std::mt19937 random(2);
    std::string text;
    text.reserve(kTextBytes + 64);
    while (text.size() < kTextBytes) {
        const unsigned kind = random() % 100;
        if (kind < 33) {
            const int word = 2 + static_cast<int>(random() % 9);
            for (int i = 0; i < word; ++i)
                text += static_cast<char>('a' + random() % 26);
        } else if (kind < 58) {
            text += latin[random() % 10];
        } else if (kind < 90) {
            const int run = 2 + static_cast<int>(random() % 5);
            for (int i = 0; i < run; ++i)
                appendUtf8(text, 0x4E00 + random() % 0x5000);
        } else {
            appendUtf8(text, 0x1F600 + random() % 0x50);
        }
        text += ' ';
    }
    // Cut at a character boundary.
    size_t end = kTextBytes;
    while ((static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
        --end;
    text.resize(end);
    return text;
}

const std::string& textOf(int which) {
    static const std::string ascii = asciiText();
    static const std::string mixed = mixedText();
    return which == 0 ? ascii : mixed;
}

// Share of ASCII among the code points of the text.
double asciiShare(const std::string& text) {
    size_t codePoints = 0;
    size_t ascii = 0;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        codePoints += (byte & 0xC0) != 0x80;
        ascii += byte < 0x80;
    }
    return codePoints > 0 ? 100.0 * static_cast<double>(ascii) / static_cast<double>(codePoints)
                          : 0.0;
}

// range(1): 0 warm, 1 cold (see above).
void setPages(const benchmark::State& state) {
#if defined(__GLIBC__)
    if (state.range(1) == 0) {
        mallopt(M_MMAP_MAX, 0);
        mallopt(M_TRIM_THRESHOLD, 1 << 30);
    } else {
        mallopt(M_MMAP_MAX, 1 << 16);
        mallopt(M_MMAP_THRESHOLD, 128 << 10);
        mallopt(M_TRIM_THRESHOLD, 128 << 10);
    }
#else
    static_cast<void>(state);
#endif
}

void label(benchmark::State& state, const std::string& text) {
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(text.size()));
    const bool ascii = state.range(0) == 0;
    const bool warm = state.range(1) == 0;
    state.SetLabel(std::string(ascii ? "ascii" : "mixed") + (warm ? " warm" : " cold"));
    state.counters["ascii%"] = asciiShare(text);
}

void cases(benchmark::internal::Benchmark* b) {
    b->ArgNames({"text", "cold"});
    for (int cold = 0; cold < 2; ++cold) {
        for (int text = 0; text < 2; ++text)
            b->Args({text, cold});
    }
    b->Unit(benchmark::kMillisecond);
}

void BM_Utf8ToString(benchmark::State& state) {
    const std::string& text = textOf(static_cast<int>(state.range(0)));
    setPages(state);
    for (auto _ : state) {
        auto* s = new KORXString(text.c_str());
        benchmark::DoNotOptimize(static_cast<const KORXWChar*>(*s));
        state.PauseTiming();
        delete s;
        state.ResumeTiming();
    }
    label(state, text);
}
BENCHMARK(BM_Utf8ToString)->Apply(cases);

void BM_StringToUtf8(benchmark::State& state) {
    const std::string& text = textOf(static_cast<int>(state.range(0)));
    setPages(state);
    const KORXString source(text.c_str());
    for (auto _ : state) {
        state.PauseTiming();
        auto* s = new KORXString(source);  // a copy has no byte form yet
        state.ResumeTiming();
        benchmark::DoNotOptimize(static_cast<const char*>(*s));
        state.PauseTiming();
        delete s;
        state.ResumeTiming();
    }
    label(state, text);
}
BENCHMARK(BM_StringToUtf8)->Apply(cases);

#if defined(KORX_BENCH_WITH_ICU)

void BM_Utf8ToIcu(benchmark::State& state) {
    const std::string& text = textOf(static_cast<int>(state.range(0)));
    setPages(state);
    const auto n = static_cast<int32_t>(text.size());
    for (auto _ : state) {
        UErrorCode status = U_ZERO_ERROR;
        int32_t length = 0;
        auto* out = new UChar[static_cast<size_t>(n) + 1];
        u_strFromUTF8(out, n + 1, &length, text.data(), n, &status);
        benchmark::DoNotOptimize(out);
        state.PauseTiming();
        if (U_FAILURE(status))
            state.SkipWithError("u_strFromUTF8 failed");
        delete[] out;
        state.ResumeTiming();
    }
    label(state, text);
}
BENCHMARK(BM_Utf8ToIcu)->Apply(cases);

void BM_IcuToUtf8(benchmark::State& state) {
    const std::string& text = textOf(static_cast<int>(state.range(0)));
    setPages(state);
    const KORXString source(text.c_str());
    const auto* units = reinterpret_cast<const UChar*>(static_cast<const KORXWChar*>(source));
    const int32_t n = source.length();
    for (auto _ : state) {
        UErrorCode status = U_ZERO_ERROR;
        int32_t length = 0;
        // Without a preflight pass the output must hold the worst case, 3 bytes per unit.
        auto* out = new char[3 * static_cast<size_t>(n) + 1];
        u_strToUTF8(out, 3 * n + 1, &length, units, n, &status);
        benchmark::DoNotOptimize(out);
        state.PauseTiming();
        if (U_FAILURE(status))
            state.SkipWithError("u_strToUTF8 failed");
        delete[] out;
        state.ResumeTiming();
    }
    label(state, text);
}
BENCHMARK(BM_IcuToUtf8)->Apply(cases);

#endif

}  // namespace
