#include "host/Application.h"
#include "host/com/CollectionFace.h"
#include "host/com/RegisteredApplication.h"
#include "host/com/ScriptHost.h"

#include "collection/dCollection.h"
#include "host/IExternalProcessor.h"

namespace halvane::test {

namespace {

using namespace host;

TEST_F(ScriptHost, WritesNumbersByItselfWhereTheApplicationHasNoFormat) {
    const auto pFormat = application()->newNumericFormat();
    EXPECT_EQ(failureNumberOf([&] { return pFormat->valueToText(1); }), 5);
    pFormat->configure({0, 0, 0, 2, 0, 0, 0});
    EXPECT_EQ(pFormat->valueToText(1234567.125), "1234567.13");
    EXPECT_EQ(pFormat->valueToText(2.5), "2.5");
    EXPECT_TRUE(pFormat->yieldsPlainTexts());
}

TEST_F(ScriptHost, WritesNumbersAsTheApplicationDoes) {
    const auto pFormat =
        application("town.Application.NewNumericFormat = function () { var decimals; return {"
                    " Configure: function (a, b, c, d, e, f, g) { decimals = d + g; },"
                    " ValueToText: function (x) { return x + '/' + decimals; } }; };")
            ->newNumericFormat();
    pFormat->configure({1, 2, 3, 4, 5, 6, 7});
    EXPECT_EQ(pFormat->valueToText(2.5), "2.5/11");
    EXPECT_FALSE(pFormat->yieldsPlainTexts());
}

TEST_F(ScriptHost, TellsTheSeparatorOfItsPaths) {
    EXPECT_EQ(application()->pathSeparator(), '\\');
    EXPECT_EQ(application("town.Application.PathSeparator = '/';")->pathSeparator(), '/');
    EXPECT_EQ(application("delete town.Application.PathSeparator;")->pathSeparator(), '\\');
    EXPECT_EQ(failureNumberOf(
                  [&] { return application("town.Application.PathSeparator = '//';")->pathSeparator(); }),
              13);
}

TEST_F(ScriptHost, TakesTheComputersDateUnlessToldAnother) {
    SYSTEMTIME now{};
    GetLocalTime(&now);
    EXPECT_EQ(application()->today().year, now.wYear);
    EXPECT_EQ(failureNumberOf([&] { return application("town.Application.Today = 'x';")->today(); }), 13);
}

TEST_F(ScriptHost, HasACatalogOnlyWhereTheApplicationHas) {
    EXPECT_EQ(application()->newCatalog()->objectFromFullName("X"), nullptr);
    const auto pObject =
        application(
            "var root = { Name: 'Root', FullName: '', Category: 'Catalog', Parent: null };"
            "town.Application.NewCatalog = function () { return { ObjectFromFullName: function (name) {"
            " return { Name: name, FullName: 'full ' + name, Category: 'File', Parent: root }; } }; };")
            ->newCatalog()
            ->objectFromFullName("a\\b");
    EXPECT_EQ(pObject->name(), "a\\b");
    EXPECT_EQ(pObject->fullName(), "full a\\b");
    EXPECT_EQ(pObject->category(), "File");
    EXPECT_EQ(pObject->parent()->name(), "Root");
    EXPECT_EQ(pObject->parent()->parent(), nullptr);
}

TEST_F(ScriptHost, DoesWithoutAnApplicationWhatNeedsNone) {
    const auto pHost = application("delete town.Application;");
    EXPECT_EQ(pHost->pathSeparator(), '\\');
    EXPECT_EQ(failureOf([&] { return pHost->newPropertySet(); }),
              "The host application's MapDocument has no \"Application\"");
    EXPECT_EQ(failureOf([&] { return host::com::makeHost(nullptr)->newPropertySet(); }),
              "There is no map document and no application \"Halvane.HostApplication\"");
}

TEST_F(ScriptHost, WithoutADocumentIsTheApplicationThatRuns) {
    engine_.run("var town = makeTown(); town.Application.PathSeparator = '!';");
    const RegisteredApplication registered(engine_.evaluate("town.Application"));
    EXPECT_EQ(host::com::makeHost(nullptr)->pathSeparator(), '!');
}

class Processors : public ScriptHost {
protected:
    std::string process(const std::string& sComponent) {
        const auto pHost =
            application("town.Application.CreateComponent = function (progId) { return progId == "
                        "'Town.Report' ? " +
                        sComponent + " : null; };");
        const auto pProcessor =
            std::dynamic_pointer_cast<IExternalProcessor>(pHost->createComponent("Town.Report"));
        const auto pObjects = dCollection::create();
        static_cast<void>(pObjects->Add(ObjectPtr(roads()), "FeatureLayer"));
        return pProcessor == nullptr ? "no processor" : pProcessor->Process(*pObjects);
    }

    CollectionBridge bridge_;
};

TEST_F(Processors, SeeTheApplicationsOwnObjects) {
    EXPECT_EQ(process("{ Process: function (objects) { var layer = objects.GetValue('FeatureLayer'); return "
                      "layer.Name + (layer === town.FocusMap.Layers[0]); } }"),
              "Roadstrue");
}

TEST_F(Processors, AreComponentsThatProcess) {
    EXPECT_EQ(process("{ Work: function () {} }"), "no processor");
}

TEST_F(Processors, FailWithTheirOwnText) {
    EXPECT_NE(failureOf([&] {
                  return process("{ Process: function (objects) { throw new Error('no roads today'); } }");
              }),
              "");
}

TEST_F(Processors, AreCreatedByTheSystemWhereTheApplicationKnowsNone) {
    const auto pHost = application();
    EXPECT_EQ(failureNumberOf([&] { return pHost->createComponent("Town.Missing"); }), 429);
    EXPECT_NE(failureOf([&] { return pHost->createComponent("Town.Missing"); }).find("Town.Missing"),
              std::string::npos);
    const auto pDictionary = pHost->createComponent("Scripting.Dictionary");
    ASSERT_NE(pDictionary, nullptr);
    EXPECT_EQ(std::dynamic_pointer_cast<IExternalProcessor>(pDictionary), nullptr);
}

} // namespace

} // namespace halvane::test
