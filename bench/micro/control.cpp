// Reading a control file: its attributes merged, once for each node.

#include "engine/control/ControlNode.h"

#include <benchmark/benchmark.h>

#include <string>

namespace {

using namespace halvane;

/// Layers of ten leaves each.
std::string controlFile(std::int64_t nNodes) {
    constexpr std::int64_t nInLayer = 11;
    std::string sXml = "<Template Name=\"Root\">";
    for (std::int64_t nLayer = 0; nLayer < nNodes / nInLayer; ++nLayer) {
        sXml += R"(<L Name="Layer" DataSource="MapLayer" Identity="LayerName" IdentityValue="places">)";
        for (std::int64_t n = 1; n < nInLayer; ++n)
            sXml += R"(<F Name="Field" DataSource="Feature" IdentityValue="name" DecimalPlace="3"/>)";
        sXml += "</L>";
    }
    return sXml + "</Template>";
}

void readControlTree(benchmark::State& state) {
    const auto pControl = dom::Document::create();
    pControl->loadXML(controlFile(state.range(0)));
    const auto pOutput = dom::Document::create();
    for (auto _ : state) {
        const ControlTree tree(pControl->documentElement(), ControlTree::Root::OfDocument, *pOutput, true);
        benchmark::DoNotOptimize(&tree.root());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(readControlTree)->Arg(110)->Arg(22'000);

void mergeAttributes(benchmark::State& state) {
    ControlAttributes own;
    own.sIdentityValue = "name";
    ControlAttributes parent;
    parent.sDataSource = "Feature";
    parent.sIdentity = "FieldName";
    for (auto _ : state) {
        benchmark::DoNotOptimize(own);
        benchmark::DoNotOptimize(mergedAttributes(own, parent));
    }
}
BENCHMARK(mergeAttributes);

} // namespace
