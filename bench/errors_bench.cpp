// Publishing a short error: KORXError::Printf formats, builds the event, and the bus hands it
// to one listener.
#include <korx/KORXError.h>
#include <korx/KORXEventBus.h>

#include <benchmark/benchmark.h>

namespace {

class CountingListener : public KORXEventListener {
public:
    void HandleEvent(KORXEvent& event) override { benchmark::DoNotOptimize(event.GetName()); }
};

void BM_ErrorPrintfToOneListener(benchmark::State& state) {
    CountingListener listener;
    KORXEventBus::GetEventBus().AddListener(&listener);
    for (auto _ : state)
        KORXError::Printf("face %d of shell %s is open", 12, "S1");
    KORXEventBus::GetEventBus().RemoveListener(&listener);
    state.SetItemsProcessed(state.iterations());
}

}  // namespace

BENCHMARK(BM_ErrorPrintfToOneListener);
