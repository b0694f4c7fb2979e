#include "base/com/Counted.h"

#include <gtest/gtest.h>

namespace halvane {
namespace {

class Watched final : public com::Counted<IPersist, ISupportErrorInfo> {
public:
    explicit Watched(int& nAlive) : nAlive_(nAlive) { ++nAlive_; }
    ~Watched() override { --nAlive_; }
    Watched(const Watched&) = delete;
    Watched& operator=(const Watched&) = delete;

    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* /*pClass*/) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID /*iid*/) override { return S_FALSE; }

private:
    int& nAlive_;
};

TEST(CountedObjects, GoWithTheLastReference) {
    int nAlive = 0;
    auto pFirst = com::makeObject<Watched>(nAlive);
    auto pSecond = pFirst.query<ISupportErrorInfo>();
    EXPECT_EQ(nAlive, 1);
    pFirst = {};
    EXPECT_EQ(nAlive, 1);
    pSecond = {};
    EXPECT_EQ(nAlive, 0);
}

TEST(CountedObjects, AnswerForTheirInterfacesAndForNoOther) {
    int nAlive = 0;
    const auto pObject = com::makeObject<Watched>(nAlive);
    EXPECT_TRUE(pObject.query<IPersist>());
    EXPECT_FALSE(pObject.query<IDispatch>());
    EXPECT_EQ(pObject->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST(CountedObjects, AreOneObjectThroughAllTheirInterfaces) {
    int nAlive = 0;
    const auto pObject = com::makeObject<Watched>(nAlive);
    const auto pSelf = pObject.query<IUnknown>();
    EXPECT_EQ(pObject.query<ISupportErrorInfo>().query<IUnknown>().get(), pSelf.get());
    EXPECT_EQ(pObject.query<IPersist>().query<IUnknown>().get(), pSelf.get());
}

} // namespace
} // namespace halvane
