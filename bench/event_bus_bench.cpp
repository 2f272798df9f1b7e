// One KORXEventBus::Send to n listeners against n direct virtual calls of HandleEvent on the
// same listener objects, in the same run. The direct calls go through a pointer array that the
// optimiser cannot see through, so they stay indirect calls as the bus's are.
#include <korx/KORXEventBus.h>

#include <benchmark/benchmark.h>

#include <array>

namespace {

// Listeners as cheap as real ones: each filters by level or by name and counts what it keeps.
// Two kinds, as on a real bus; with a single kind in view the optimiser would guess the target
// of the direct calls and inline it.
class Counter : public KORXEventListener {
public:
    long kept() const { return m_kept; }

protected:
    long m_kept = 0;
};

class LevelCounter : public Counter {
public:
    void HandleEvent(KORXEvent& event) override {
        if (event.GetEventLevel() >= KORX_LEVEL_INFO)
            ++m_kept;
    }
};

class NameCounter : public Counter {
public:
    void HandleEvent(KORXEvent& event) override {
        if (event.GetName() != nullptr)
            ++m_kept;
    }
};

constexpr int kMaxListeners = 4;

// Level and name counters in turn.
struct Listeners {
    explicit Listeners(int n) : count(n) {
        for (int i = 0; i < n; ++i)
            pointers[i] = i % 2 == 0 ? static_cast<Counter*>(&levels[i / 2]) : &names[i / 2];
    }
    long kept() const {
        long total = 0;
        for (int i = 0; i < kMaxListeners / 2; ++i)
            total += levels[i].kept() + names[i].kept();
        return total;
    }

    int count;
    std::array<LevelCounter, kMaxListeners / 2> levels;
    std::array<NameCounter, kMaxListeners / 2> names;
    std::array<KORXEventListener*, kMaxListeners> pointers{};
};

void BM_BusSend(benchmark::State& state) {
    Listeners listeners(static_cast<int>(state.range(0)));
    KORXEventBus& bus = KORXEventBus::GetEventBus();
    for (int i = 0; i < listeners.count; ++i)
        bus.AddListener(listeners.pointers[i]);
    KORXEvent event("KORXBenchEvent", KORX_LEVEL_INFO);
    for (auto _ : state) {
        bus.Send(event);
        benchmark::ClobberMemory();
    }
    for (int i = 0; i < listeners.count; ++i)
        bus.RemoveListener(listeners.pointers[i]);
    benchmark::DoNotOptimize(listeners.kept());
}

void BM_DirectCalls(benchmark::State& state) {
    Listeners listeners(static_cast<int>(state.range(0)));
    KORXEvent event("KORXBenchEvent", KORX_LEVEL_INFO);
    KORXEventListener** pointers = listeners.pointers.data();
    int count = listeners.count;
    for (auto _ : state) {
        // The optimiser must assume both the array and the count changed: no devirtualisation,
        // no unrolling on a known count.
        benchmark::DoNotOptimize(pointers);
        benchmark::DoNotOptimize(count);
        for (int i = 0; i < count; ++i)
            pointers[i]->HandleEvent(event);
        benchmark::ClobberMemory();
    }
    benchmark::DoNotOptimize(listeners.kept());
}

}  // namespace

// 0 listeners: the fixed cost of a send (the call into the library and the IsTimed call).
BENCHMARK(BM_BusSend)->Arg(0)->Arg(1)->Arg(4);
BENCHMARK(BM_DirectCalls)->Arg(1)->Arg(4);
