#include <korx/KORXStream.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

constexpr int kBlock = 64 * 1024;
constexpr long long kTotal = 256LL * 1024 * 1024;
constexpr long long kBlocks = kTotal / kBlock;

// One file under /tmp for both writers, removed at the end of the run.
class ScratchFile {
public:
    ScratchFile() {
        char pattern[] = "/tmp/korx_streams_bench_XXXXXX";
        const int number = mkstemp(pattern);
        if (number >= 0) {
            close(number);
            m_path = pattern;
        }
    }
    ~ScratchFile() {
        if (!m_path.empty())
            std::remove(m_path.c_str());
    }
    const char* path() const { return m_path.c_str(); }

private:
    std::string m_path;
};

const ScratchFile& scratch() {
    static const ScratchFile file;
    return file;
}

std::vector<char> block() {
    std::vector<char> bytes(kBlock);
    for (int i = 0; i < kBlock; ++i)
        bytes[static_cast<size_t>(i)] = static_cast<char>(i * 31);
    return bytes;
}

// Opening, writing 256 MiB in 64 KiB blocks and closing, as a translator writes a file.
void BM_FileOutputStreamWrite(benchmark::State& state) {
    std::vector<char> bytes = block();
    for (auto _ : state) {
        KORXFileOutputStream out(scratch().path());
        for (long long b = 0; b < kBlocks; ++b)
            out.write(bytes.data(), kBlock);
    }
    state.SetBytesProcessed(state.iterations() * kTotal);
}

void BM_Fwrite(benchmark::State& state) {
    std::vector<char> bytes = block();
    for (auto _ : state) {
        FILE* out = std::fopen(scratch().path(), "wb");
        if (out == nullptr) {
            state.SkipWithError("cannot open the scratch file");
            break;
        }
        for (long long b = 0; b < kBlocks; ++b)
            std::fwrite(bytes.data(), 1, kBlock, out);
        std::fclose(out);
    }
    state.SetBytesProcessed(state.iterations() * kTotal);
}

}  // namespace

BENCHMARK(BM_FileOutputStreamWrite)->Unit(benchmark::kMillisecond)->MinTime(2.0)->UseRealTime();
BENCHMARK(BM_Fwrite)->Unit(benchmark::kMillisecond)->MinTime(2.0)->UseRealTime();
