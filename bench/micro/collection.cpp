// Numbers to texts; the keyed collection.

#include "base/Numbers.h"
#include "base/Value.h"
#include "collection/dCollection.h"
#include "data/Random.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

namespace {

using namespace halvane;

constexpr std::size_t nNumbers = 1024;

std::vector<double> numbers(const std::function<double(bench::Random&)>& next) {
    bench::Random random(11);
    std::vector<double> all(nNumbers);
    for (double& dNumber : all)
        dNumber = next(random);
    return all;
}

std::vector<double> centimetres() {
    return numbers([](bench::Random& random) { return std::round(random.unit() * 1e8) / 100; });
}

std::vector<double> fullPrecision() {
    return numbers([](bench::Random& random) { return random.unit(); });
}

void countNumbers(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(nNumbers));
}

void fixedTexts(benchmark::State& state, const std::vector<double>& all) {
    constexpr std::int32_t lDecimals = 15;
    for (auto _ : state)
        for (const double dNumber : all)
            benchmark::DoNotOptimize(fixedText(dNumber, lDecimals));
    countNumbers(state);
}
BENCHMARK_CAPTURE(fixedTexts, centimetres, centimetres());
BENCHMARK_CAPTURE(fixedTexts, fullPrecision, fullPrecision());

void doubleTexts(benchmark::State& state, const std::vector<double>& all) {
    std::string sText;
    for (auto _ : state) {
        for (const double dNumber : all) {
            sText.clear();
            appendDoubleText(sText, dNumber);
            benchmark::DoNotOptimize(sText.data());
        }
    }
    countNumbers(state);
}
BENCHMARK_CAPTURE(doubleTexts, centimetres, centimetres());
BENCHMARK_CAPTURE(doubleTexts, fullPrecision, fullPrecision());

void wholeTexts(benchmark::State& state) {
    bench::Random random(12);
    std::vector<std::int64_t> all(nNumbers);
    for (std::int64_t& nNumber : all)
        nNumber = static_cast<std::int64_t>(random.below(1'000'000'000'000));
    std::string sText;
    for (auto _ : state) {
        for (const std::int64_t nNumber : all) {
            sText.clear();
            appendText(sText, ValueView(nNumber));
            benchmark::DoNotOptimize(sText.data());
        }
    }
    countNumbers(state);
}
BENCHMARK(wholeTexts);

std::vector<std::string> keys(std::int64_t nCount) {
    std::vector<std::string> all;
    for (std::int64_t n = 0; n < nCount; ++n)
        all.push_back("Key " + std::to_string(n));
    return all;
}

void collectionAdd(benchmark::State& state) {
    const std::vector<std::string> aKeys = keys(state.range(0));
    for (auto _ : state) {
        dCollection dMembers;
        for (const std::string& sKey : aKeys)
            dMembers.Add(Value(sKey), sKey);
        benchmark::DoNotOptimize(dMembers.Count());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(collectionAdd)->Arg(11)->Arg(1000)->Arg(100'000);

void collectionGet(benchmark::State& state) {
    const std::vector<std::string> aKeys = keys(state.range(0));
    dCollection dMembers;
    for (const std::string& sKey : aKeys)
        dMembers.Add(Value(sKey), sKey);
    for (auto _ : state)
        for (const std::string& sKey : aKeys)
            benchmark::DoNotOptimize(dMembers.GetValueString(sKey));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(collectionGet)->Arg(11)->Arg(1000)->Arg(100'000);

} // namespace
