// Messages per second through KORXInfo::Printf with a KORXLogger writing to a file, against
// fprintf of the same text to a FILE* (the limit: formatting and writing alone).
#include <korx/KORXLogger.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>
#include <unistd.h>

namespace {

std::string scratchPath(const char* name) {
    return std::string("/tmp/korx_bench_") + name + "_" + std::to_string(getpid()) + ".log";
}

void BM_InfoPrintfToFileLogger(benchmark::State& state) {
    const std::string path = scratchPath("logger");
    {
        KORXLogger logger;
        logger.Initialize(path.c_str(), KORX_LEVEL_INFO);
        int face = 0;
        for (auto _ : state)
            KORXInfo::Printf("face %d of shell %s converted", ++face, "S1");
    }
    std::remove(path.c_str());
    state.SetItemsProcessed(state.iterations());
}

void BM_FprintfToFile(benchmark::State& state) {
    const std::string path = scratchPath("fprintf");
    FILE* file = std::fopen(path.c_str(), "w");
    int face = 0;
    for (auto _ : state)
        std::fprintf(file, "Message : face %d of shell %s converted\n", ++face, "S1");
    std::fclose(file);
    std::remove(path.c_str());
    state.SetItemsProcessed(state.iterations());
}

}  // namespace

BENCHMARK(BM_InfoPrintfToFileLogger);
BENCHMARK(BM_FprintfToFile);
