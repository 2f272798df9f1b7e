// 1M doubles written through a KORXStreamFormatter onto a KORXStringOutputStream, against
// snprintf of the same values into one buffer (the limit: formatting alone).
#include <korx/KORXStream.h>
#include <korx/KORXStreamFormatter.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <vector>

namespace {

constexpr int kValues = 1'000'000;

std::vector<double> values() {
    std::vector<double> v(kValues);
    for (int i = 0; i < kValues; ++i)
        v[static_cast<size_t>(i)] = i * 0.37 - 1234.5;
    return v;
}

void BM_FormatterDoubles(benchmark::State& state) {
    const std::vector<double> input = values();
    for (auto _ : state) {
        KORXStringOutputStream out;
        KORXStreamFormatter formatter(&out);
        for (double v : input)
            formatter << v;
        benchmark::DoNotOptimize(out.len());
    }
    state.SetItemsProcessed(state.iterations() * kValues);
}

void BM_SnprintfDoubles(benchmark::State& state) {
    const std::vector<double> input = values();
    char buffer[128];
    for (auto _ : state) {
        for (double v : input) {
            const int n = std::snprintf(buffer, sizeof buffer, "%lf", v);
            benchmark::DoNotOptimize(n);
            benchmark::ClobberMemory();
        }
    }
    state.SetItemsProcessed(state.iterations() * kValues);
}

}  // namespace

BENCHMARK(BM_FormatterDoubles)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SnprintfDoubles)->Unit(benchmark::kMillisecond);
