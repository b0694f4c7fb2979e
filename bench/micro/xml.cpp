// Escaping, sealing and selecting.

#include "xml/dom/Dom.h"
#include "xml/dom/Escaping.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>
#include <string_view>

namespace {

using namespace halvane;

/// Forgets what it is given.
class NoSink : public io::ByteSink {
public:
    void write(std::string_view sBytes) override { benchmark::DoNotOptimize(sBytes.data()); }
};

void escape(benchmark::State& state, std::string_view sText) {
    constexpr std::size_t nCapacity = 1 << 16;
    NoSink sink;
    io::OutputBuffer out(sink, nCapacity);
    dom::CharacterRepairs repairs;
    for (auto _ : state)
        benchmark::DoNotOptimize(dom::putText(out, sText, repairs));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(sText.size()));
}
BENCHMARK_CAPTURE(escape, plain, "The quick brown fox jumps over the lazy dog, as it does day after day.");
BENCHMARK_CAPTURE(escape, markup,
                  "The quick <brown> fox & the \"lazy\" dog: a < b && c > d, and so on & on.");
BENCHMARK_CAPTURE(escape, accents,
                  "Falsches Üben von Xylophonmusik quält jeden größeren Zwerg: žluťoučký kůň.");
BENCHMARK_CAPTURE(escape, number, "1291.56");

/// One item of ten fields.
void appendItem(dom::Document& document, dom::Node oParent) {
    constexpr int lFields = 10;
    dom::Node oItem = oParent.appendChild(
        document.createNode(static_cast<std::int32_t>(dom::NodeType::Element), "Item", ""));
    for (int l = 0; l < lFields; ++l) {
        dom::Node oField =
            document.createNode(static_cast<std::int32_t>(dom::NodeType::Element), "Field", "");
        oItem.appendChild(oField).setText("residential");
    }
    document.markComplete(oItem);
}

void makeAndSealItems(benchmark::State& state) {
    constexpr int lItems = 10'000;
    for (auto _ : state) {
        const auto pDocument = dom::Document::create();
        pDocument->setSpoolFolder(std::filesystem::temp_directory_path().string());
        pDocument->loadXML("<Root/>");
        for (int l = 0; l < lItems; ++l)
            appendItem(*pDocument, pDocument->documentElement());
        benchmark::DoNotOptimize(pDocument->memoryUse());
    }
    state.SetItemsProcessed(state.iterations() * lItems);
}
BENCHMARK(makeAndSealItems)->Unit(benchmark::kMillisecond);

dom::DocumentPtr tagDocument(std::int64_t nTags) {
    std::string sXml = "<Config><View><Layers>";
    for (std::int64_t n = 0; n < nTags; ++n)
        sXml += "<Layer TagName=\"TAG" + std::to_string(n) + "\" Alias=\"Layer " + std::to_string(n) + "\"/>";
    const auto pDocument = dom::Document::create();
    pDocument->loadXML(sXml + "</Layers></View></Config>");
    return pDocument;
}

void select(benchmark::State& state) {
    const auto pDocument = tagDocument(state.range(0));
    const dom::Node oRoot = pDocument->asNode();
    for (auto _ : state)
        benchmark::DoNotOptimize(oRoot.selectNodes("//Config/View/Layers/Layer").length());
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(select)->Arg(10)->Arg(1000);

void selectAfterChange(benchmark::State& state) {
    const auto pDocument = tagDocument(state.range(0));
    const dom::Node oRoot = pDocument->asNode();
    for (auto _ : state) {
        pDocument->documentElement().setAttribute("changed", "yes");
        benchmark::DoNotOptimize(oRoot.selectSingleNode("//Layer[@TagName='TAG5']"));
    }
}
BENCHMARK(selectAfterChange)->Arg(10)->Arg(1000);

} // namespace
