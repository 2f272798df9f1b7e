#include <korx/KORXDynamicArray.h>

#include <benchmark/benchmark.h>

#include <vector>

namespace {

constexpr int kElements = 10'000'000;

void BM_DynamicArrayAdd(benchmark::State& state) {
    for (auto _ : state) {
        KORXDynamicArray<int> array;
        for (int i = 0; i < kElements; ++i)
            array.add(i);
        benchmark::DoNotOptimize(array.getArray());
    }
    state.SetItemsProcessed(state.iterations() * kElements);
}

void BM_VectorPushBack(benchmark::State& state) {
    for (auto _ : state) {
        std::vector<int> vector;
        for (int i = 0; i < kElements; ++i)
            vector.push_back(i);
        benchmark::DoNotOptimize(vector.data());
    }
    state.SetItemsProcessed(state.iterations() * kElements);
}

}  // namespace

BENCHMARK(BM_DynamicArrayAdd)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_VectorPushBack)->Unit(benchmark::kMillisecond);
