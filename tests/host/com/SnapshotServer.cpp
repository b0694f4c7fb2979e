#include "host/com/SnapshotServer.h"

#include "base/Conversions.h"
#include "base/Failure.h"
#include "base/com/HResult.h"
#include "host/com/LateBound.h"
#include "host/com/ObjectKinds.h"

#include <algorithm>

namespace halvane::test {

using com::ComPtr;
using com::Variant;

namespace {

using ServerPtr = std::shared_ptr<SnapshotServer>;
using Arguments = std::vector<Variant>;

std::vector<Value> valuesOf(const Arguments& aArguments) {
    std::vector<Value> aValues;
    for (const Variant& argument : aArguments)
        aValues.push_back(com::toValue(argument.get()));
    return aValues;
}

/// What a search yields: a cursor.
class ServedCursor final : public DispatchObject {
public:
    ServedCursor(ServerPtr pServer, const Json& json) : pServer_(std::move(pServer)), json_(json) {}

protected:
    bool hasMember(const std::string& sName) const override { return sName == "NextRow"; }
    Variant get(const std::string& /*sName*/, const Arguments& /*aArguments*/) override {
        if (nNext_ < json_["list"].size())
            return pServer_->answer(json_["list"].at(nNext_++));
        if (json_.contains("open"))
            pServer_->refuse("a row behind those that were read");
        return variantOf(ComPtr<IDispatch>());
    }

private:
    ServerPtr pServer_;
    const Json& json_;
    std::size_t nNext_ = 0;
};

class ServedPropertySet final : public DispatchObject {
protected:
    bool hasMember(const std::string& sName) const override {
        return sName == "SetProperty" || sName == "GetProperty";
    }
    Variant get(const std::string& sName, const Arguments& aArguments) override {
        auto& held = properties_[toText(com::toValue(aArguments.at(0).get()))];
        if (sName == "GetProperty")
            return Variant::copyOf(held.get());
        held = Variant::copyOf(aArguments.at(1).get());
        return {};
    }

private:
    std::map<std::string, Variant> properties_;
};

const host::com::ObjectKind* kindNamed(const std::string& sName) {
    for (const host::com::ObjectKind* pKind : host::com::objectKinds())
        if (pKind->sName == sName)
            return pKind;
    throw Failure(FailureNumber::InternalError, "unknown kind " + sName);
}

/// An object that answers as it was recorded.
class ServedObject final : public DispatchObject {
public:
    ServedObject(ServerPtr pServer, std::size_t nPlace)
        : pServer_(std::move(pServer)), json_(pServer_->recorded(nPlace)),
          sKind_(json_.at("kind").get<std::string>()) {}

protected:
    /// Every member of the kind; an optional one only where it was asked for.
    bool hasMember(const std::string& sName) const override {
        const auto aMembers = kindNamed(sKind_)->aMembers;
        const auto pMember = std::find_if(aMembers.begin(), aMembers.end(),
                                          [&](const auto& member) { return member.sName == sName; });
        if (pMember == aMembers.end())
            return false;
        if (pMember->need == host::com::Member::Need::Required || sName == "CreateComponent")
            return true;
        return sName == "ReadPoints" ? json_.contains("vertices") && bReadsPoints()
                                     : json_.at("answers").contains(sName);
    }

    Variant get(const std::string& sName, const Arguments& aArguments) override {
        if (sName == "FeatureClass" && pAssigned_)
            return variantOf(pAssigned_);
        if (sKind_ == "Application" && (sName.starts_with("New") || sName == "CreateComponent"))
            return make(sName, aArguments);
        if (sKind_ == "WorkspaceFactory" && sName == "Open")
            return recorded(answerKey(sName, {databaseIn(aArguments.at(0))}));
        if (sKind_ == "Geometry" && sName == "ReadPoints")
            return readPoints(valuesOf(aArguments));
        if (sKind_ == "Geometry" && sName == "Point")
            return point(valuesOf(aArguments));
        const std::string sKey = answerKey(sName, valuesOf(aArguments));
        if (sName.starts_with("Search"))
            return search(sKey);
        return recorded(sKey);
    }

    void put(const std::string& sName, Variant value) override {
        if (sName != "FeatureClass")
            DispatchObject::put(sName, std::move(value));
        pAssigned_ = host::com::dispatchIn(value.get());
    }

private:
    [[nodiscard]] const Json& answerAt(const std::string& sKey) const {
        const Json& answers = json_.at("answers");
        if (!answers.contains(sKey))
            pServer_->refuse(sKind_ + "." + sKey);
        return answers.at(sKey);
    }
    Variant recorded(const std::string& sKey) { return pServer_->answer(answerAt(sKey)); }

    /// Every second search yields a cursor, the others a list, where all rows are known.
    Variant search(const std::string& sKey) {
        const Json& json = answerAt(sKey);
        if (json.contains("list") && (json.contains("open") || pServer_->next("search") % 2 == 0))
            return variantOf(makeDispatch<ServedCursor>(pServer_, json));
        return pServer_->answer(json);
    }

    Variant make(const std::string& sName, const Arguments& aArguments) {
        if (sName == "NewPropertySet")
            return variantOf(makeDispatch<ServedPropertySet>());
        if (sName == "NewFeatureLayer")
            return recorded(sName + "[" + std::to_string(pServer_->next(sName)) + "]");
        if (sName == "CreateComponent")
            return variantOf(pServer_->component(toText(com::toValue(aArguments.at(0).get()))));
        return recorded(answerKey(sName, valuesOf(aArguments)));
    }

    static std::string databaseIn(const Variant& properties) {
        return host::com::LateBound(std::make_shared<host::com::Context>(), host::com::kindPropertySet,
                                    host::com::dispatchIn(properties.get()))
            .text("GetProperty", {std::string("DATABASE")});
    }

    /// Shapes whose number is even offer it.
    [[nodiscard]] bool bReadsPoints() const { return json_.at("vertices").at(0).size() % 2 == 0; }

    [[nodiscard]] const Json& vertexAt(const Value& vPart, std::int32_t lIndex) const {
        const auto nPart = static_cast<std::size_t>(wholeNumberOf(toView(vPart)));
        const auto nIndex = static_cast<std::size_t>(lIndex);
        if (!json_.contains("vertices") || nPart >= json_.at("vertices").size() ||
            nIndex >= json_.at("vertices").at(nPart).size() ||
            json_.at("vertices").at(nPart).at(nIndex).is_null())
            pServer_->refuse(sKind_ + ": vertex " + std::to_string(lIndex));
        return json_.at("vertices").at(nPart).at(nIndex);
    }

    Variant readPoints(const std::vector<Value>& aValues) {
        const std::int32_t lFirst = wholeNumberOf(toView(aValues.at(1)));
        const std::int32_t lCount = wholeNumberOf(toView(aValues.at(2)));
        const auto nPart = static_cast<std::size_t>(wholeNumberOf(toView(aValues.at(0))));
        const auto lEnd = static_cast<std::int32_t>(json_.at("vertices").at(nPart).size());
        std::vector<Variant> aNumbers;
        for (std::int32_t i = lFirst; i < std::min(lEnd, lFirst + lCount); ++i)
            for (const Json& number : vertexAt(aValues.at(0), i))
                aNumbers.push_back(com::toVariant(numberOf(number)));
        return listVariant(ListShape::Array, std::move(aNumbers));
    }

    Variant point(const std::vector<Value>& aValues);

    ServerPtr pServer_;
    const Json& json_;
    std::string sKind_;
    ComPtr<IDispatch> pAssigned_;
};

class ServedPoint final : public DispatchObject {
public:
    explicit ServedPoint(const Json& numbers) : numbers_(numbers) {}

protected:
    static constexpr std::string_view sNames = "XYZM";
    bool hasMember(const std::string& sName) const override {
        return sName.size() == 1 && sNames.find(sName) != std::string_view::npos;
    }
    /// A coordinate that the point lacks is null.
    Variant get(const std::string& sName, const Arguments& /*aArguments*/) override {
        const Json& number = numbers_.at(sNames.find(sName));
        return number.is_string() ? com::toVariant(Null{}) : com::toVariant(numberOf(number));
    }

private:
    const Json& numbers_;
};

Variant ServedObject::point(const std::vector<Value>& aValues) {
    return variantOf(
        makeDispatch<ServedPoint>(vertexAt(aValues.at(0), wholeNumberOf(toView(aValues.at(1))))));
}

} // namespace

std::shared_ptr<SnapshotServer> SnapshotServer::create(Json snapshot) {
    return std::shared_ptr<SnapshotServer>(new SnapshotServer(std::move(snapshot)));
}

ComPtr<IDispatch> SnapshotServer::component(const std::string& sProgId) const {
    const auto pFound = components_.find(sProgId);
    return pFound == components_.end() ? ComPtr<IDispatch>() : pFound->second;
}

ComPtr<IDispatch> SnapshotServer::object(std::size_t nPlace) {
    return makeDispatch<ServedObject>(shared_from_this(), nPlace);
}

void SnapshotServer::refuse(const std::string& sWhat) {
    aUnrecorded_.push_back(sWhat);
    throw Failure(FailureNumber::HostFailure, "not recorded: " + sWhat);
}

Variant SnapshotServer::list(const Json& json) {
    if (json.contains("open"))
        refuse("the end of a list");
    std::vector<Variant> aItems;
    for (const Json& item : json.at("list"))
        aItems.push_back(answer(item));
    constexpr int nShapes = 3;
    return listVariant(static_cast<ListShape>(next("list") % nShapes), std::move(aItems));
}

Variant SnapshotServer::answer(const Json& json) {
    if (!json.is_object())
        return com::toVariant(valueOf(json));
    if (json.contains("failure"))
        throw Failure(json.at("failure").at("number").get<std::int32_t>(),
                      json.at("failure").at("text").get<std::string>());
    if (json.contains("object"))
        return variantOf(object(json.at("object").get<std::size_t>()));
    if (json.contains("list"))
        return list(json);
    return com::toVariant(valueOf(json));
}

} // namespace halvane::test
