// How the cost of the pure operations grows with their input. Each runs over growing inputs; Google Benchmark fits and
// reports the growth.
#include <benchmark/benchmark.h>

#include <string>

#include "graph/core_grid.h"
#include "graph/plot_scale.h"
#include "history/net_icon_scale.h"
#include "history/smoothing.h"
#include "text/translation.h"

namespace kestrane {
namespace {

constexpr std::int64_t FirstSize = 128;
constexpr std::int64_t LastSize = 4096;  // the capacity of the graphs' rings

/// A full ring of values that rise and fall.
template <typename Value>
MetricRing<Value> MakeRing(std::uint64_t capacity) {
    MetricRing<Value> ring(capacity);
    for (std::uint64_t i = 0; i < capacity; ++i)
        PushSample(ring, static_cast<Value>(i * 7919 % 1000003));
    return ring;
}

void SmoothWindow(benchmark::State& state) {
    const auto ring = MakeRing<double>(static_cast<std::uint64_t>(LastSize));
    const auto points = static_cast<std::size_t>(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(SmoothedWindow({nullptr, &ring}, points, 3));
    state.SetComplexityN(state.range(0));
}
BENCHMARK(SmoothWindow)->Name("SmoothedWindow, points")->RangeMultiplier(2)->Range(FirstSize, LastSize)->Complexity();

void FindMaximum(benchmark::State& state) {
    const auto ring = MakeRing<std::uint64_t>(static_cast<std::uint64_t>(LastSize));
    GraphView view;
    view.twoSeries = true;
    view.smoothing = 2;
    view.first.counterRing = &ring;
    view.second.counterRing = &ring;
    const auto points = static_cast<std::size_t>(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(ScaleMaximum(view, points));
    state.SetComplexityN(state.range(0));
}
BENCHMARK(FindMaximum)->Name("ScaleMaximum, points")->RangeMultiplier(2)->Range(FirstSize, LastSize)->Complexity();

void ScaleNetIcon(benchmark::State& state) {
    const auto ring = MakeRing<std::uint64_t>(static_cast<std::uint64_t>(LastSize));
    const auto points = static_cast<std::uint64_t>(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(NetIconScale(ring, ring, points));
    state.SetComplexityN(state.range(0));
}
BENCHMARK(ScaleNetIcon)->Name("NetIconScale, points")->RangeMultiplier(2)->Range(FirstSize, LastSize)->Complexity();

void LayOutCores(benchmark::State& state) {
    const auto processors = static_cast<std::int32_t>(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(ComputeCoreGrid(processors, 3840, 2160, 3));
    state.SetComplexityN(state.range(0));
}
BENCHMARK(LayOutCores)->Name("ComputeCoreGrid, processors")->RangeMultiplier(2)->Range(8, 1024)->Complexity();

/// The argument is the row's position in the table; the table's size stands for a text without a row.
void Translate(benchmark::State& state) {
    SetLanguage(ActiveEnglish);
    const auto row = static_cast<std::size_t>(state.range(0));
    const std::wstring text = row < TranslationTable.size() ? TranslationTable[row].spanish : L"Disco {0} sin fila";
    for (auto _ : state)
        benchmark::DoNotOptimize(Tr(text.c_str()));
    state.SetComplexityN(state.range(0) + 1);
    SetLanguage(ActiveSpanish);
}
BENCHMARK(Translate)
    ->Name("Tr, row")
    ->Arg(0)
    ->Arg(static_cast<std::int64_t>(TranslationRowCount) / 2)
    ->Arg(static_cast<std::int64_t>(TranslationRowCount) - 1)
    ->Arg(static_cast<std::int64_t>(TranslationRowCount))
    ->Complexity();

}  // namespace
}  // namespace kestrane

BENCHMARK_MAIN();
