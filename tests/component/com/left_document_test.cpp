// Map documents of exports that did not begin.

#include "Client.h"
#include "PlainObject.h"

#include <gtest/gtest.h>

namespace halvane::client {
namespace {

/// Exports of the layers of a map, some of which do not begin and leave their map document behind.
class LeftDocument : public ::testing::Test {
protected:
    void leaveBehind() const {
        const _variant_t document = smallMapDocument();
        const _variant_t tags(static_cast<IDispatch*>(documentOf(L"<v/>")));
        EXPECT_EQ(exportWith(document, tags), "(nothing)") << "a document with a blank path";
    }
    void leaveBehindByRefusedName() const {
        EXPECT_EQ(exportWith(smallMapDocument(), VARIANT{}, L"CON"), "(nothing)");
    }
    [[nodiscard]] std::string exportWithoutDocument() const { return exportWith(VARIANT{}, VARIANT{}); }

    Folder folder;

private:
    [[nodiscard]] std::string exportWith(const VARIANT& document, const VARIANT& tags,
                                         const wchar_t* sName = L"out.xml") const {
        const _variant_t control(
            folder
                .write(L"control.xml",
                       "<a Name='Out'><l Name='Layer' DataSource='MapLayer' "
                       "Identity='LayerName' IdentityValue='Roads' DataProperty='LayerName'/></a>")
                .c_str());
        EXPECT_EQ(call(create<_clsExport>(L"Halvane.clsExport"), L"Export2XML",
                       {document, control, _variant_t(folder.path().c_str()), _variant_t(sName), tags,
                        _variant_t(L""), _variant_t(0L), _variant_t(L"")})
                      .hr,
                  S_OK);
        return folder.read(L"out.xml").value_or("(nothing)");
    }
};

TEST_F(LeftDocument, IsTakenByALaterExportOnItsThread) {
    const long nBefore = PlainObject::alive();
    leaveBehind();
    EXPECT_GT(PlainObject::alive(), nBefore);
    EXPECT_EQ(exportWithoutDocument(), "<Out>\r\n<Layer>Roads</Layer>\r\n</Out>");
    EXPECT_EQ(PlainObject::alive(), nBefore);
}

TEST_F(LeftDocument, IsThatOfARefusedNameToo) {
    const long nBefore = PlainObject::alive();
    leaveBehindByRefusedName();
    EXPECT_EQ(exportWithoutDocument(), "<Out>\r\n<Layer>Roads</Layer>\r\n</Out>");
    EXPECT_EQ(PlainObject::alive(), nBefore);
}

TEST_F(LeftDocument, IsNeverCalledOnAnotherThread) {
    leaveBehind();
    const long nLeft = PlainObject::alive();
    const long nStrayBefore = PlainObject::strayCalls();
    runBeside(COINIT_APARTMENTTHREADED,
              [&] { EXPECT_EQ(exportWithoutDocument(), "<Out>\r\n<Layer/>\r\n</Out>"); });
    EXPECT_EQ(PlainObject::strayCalls(), nStrayBefore);
    EXPECT_EQ(exportWithoutDocument(), "<Out>\r\n<Layer/>\r\n</Out>") << "it was given up";
    EXPECT_EQ(PlainObject::alive(), nLeft) << "and not released either";
}

TEST_F(LeftDocument, KeepsTheLibraryFromBeingUnloadedOnAnotherThread) {
    const long nBefore = PlainObject::alive();
    leaveBehind();
    const auto canUnload = entryPoint<HRESULT(WINAPI*)()>("DllCanUnloadNow");
    const long nStrayBefore = PlainObject::strayCalls();
    runBeside(COINIT_APARTMENTTHREADED, [&] { EXPECT_EQ(canUnload(), S_FALSE); });
    EXPECT_EQ(PlainObject::strayCalls(), nStrayBefore);
    EXPECT_EQ(canUnload(), S_OK);
    EXPECT_EQ(PlainObject::alive(), nBefore);
}

} // namespace
} // namespace halvane::client
