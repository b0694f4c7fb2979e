#include "SampleData.h"

#include "base/Failure.h"
#include "collection/dCollection.h"
#include "host/IExternalProcessor.h"
#include "host/Layers.h"
#include "host/Map.h"

#include <gmock/gmock.h>

namespace halvane::tests {
namespace {

using ::testing::HasSubstr;

const std::string sCounting = HALVANE_PROCESSOR_COUNTING;

TEST(ProcessorLibrary, MakesItsProcessorsAvailableByTheirIdentifiers) {
    const TemporaryFolder folder;
    const auto pHost = host::gdal::GdalHost::create();
    pHost->loadProcessorLibrary(sCounting);
    const auto pProcessor =
        std::dynamic_pointer_cast<IExternalProcessor>(pHost->createComponent("city.layername"));
    ASSERT_NE(pProcessor, nullptr);
    dCollection dObjects;
    EXPECT_EQ(pProcessor->Process(dObjects), "no layer");
    const auto pDocument = pHost->openMapDocument(makeCity(folder));
    dObjects.Add(Value(ObjectPtr(pDocument->focusMap()->layer(1))), "FeatureLayer");
    EXPECT_EQ(pProcessor->Process(dObjects), "signs");
}

TEST(ProcessorLibrary, MayRegisterComponentsThatAreNoProcessors) {
    const auto pHost = host::gdal::GdalHost::create();
    pHost->loadProcessorLibrary(sCounting);
    const ObjectPtr pObject = pHost->createComponent("City.NoProcessor");
    EXPECT_EQ(std::dynamic_pointer_cast<IExternalProcessor>(pObject), nullptr);
}

TEST(ProcessorLibrary, ServesOnlyTheHostThatLoadedIt) {
    host::gdal::GdalHost::create()->loadProcessorLibrary(sCounting);
    const auto pOther = host::gdal::GdalHost::create();
    EXPECT_NE(failureOf([&] { static_cast<void>(pOther->createComponent("City.LayerName")); }), "");
}

TEST(ProcessorLibrary, ThatIsNoneIsAFailureThatSaysWhy) {
    const TemporaryFolder folder;
    const auto pHost = host::gdal::GdalHost::create();
    const auto load = [&](const std::string& sPath) {
        return failureOf([&] { pHost->loadProcessorLibrary(sPath); });
    };
    EXPECT_THAT(load(folder.file("none.so")), HasSubstr("none.so"));
    EXPECT_THAT(load(folder.write("text.so", "no library")), HasSubstr("cannot be loaded"));
    EXPECT_THAT(load(HALVANE_PROCESSOR_UNRELATED), HasSubstr("does not export halvane_register_processors"));
    EXPECT_THAT(load(HALVANE_PROCESSOR_OUTDATED), HasSubstr("compile it anew"));
    EXPECT_THAT(load(HALVANE_PROCESSOR_FAILING), HasSubstr("out of paper"));
}

TEST(ProcessorLibrary, IsNeverLoadedByAskingForAComponent) {
    const auto pHost = host::gdal::GdalHost::create();
    for (const std::string& sProgId : {sCounting, "./" + sCounting, std::string("City.LayerName")}) {
        try {
            static_cast<void>(pHost->createComponent(sProgId));
            FAIL();
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.number(), 429);
        }
    }
}

} // namespace
} // namespace halvane::tests
