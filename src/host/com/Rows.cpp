#include "host/com/Rows.h"

#include "base/Text.h"
#include "host/com/Geometry.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace halvane::host::com {

namespace {

/// The rows that a search yielded, with their numbers. One that cannot be had fails with its number, so that
/// those after it are reached.
class NumberedRows {
public:
    NumberedRows(ContextPtr pContext, GisFieldsPtr pFields)
        : pContext_(std::move(pContext)), pFields_(std::move(pFields)) {}

    /// @param get yields the row's object, nothing at the end; its failure is the row's.
    /// @throws Failure after so many failing rows that nobody knows whether there are others.
    template<class Get>
    [[nodiscard]] GisRowPtr next(const Get& get) {
        const std::size_t nRow = nNext_++;
        auto pRow = objectOrFailure(nRow, get);
        return pRow ? std::make_shared<ComRow>(pContext_, std::move(pRow), pFields_) : nullptr;
    }

private:
    static constexpr int lMostFailures = 10;

    template<class Get>
    ComPtr<IDispatch> objectOrFailure(std::size_t nRow, const Get& get) {
        try {
            auto pRow = get(nRow);
            lFailures_ = 0;
            return pRow;
        } catch (const Failure& failure) {
            return failedRow(nRow, failure);
        }
    }
    ComPtr<IDispatch> failedRow(std::size_t nRow, const Failure& failure) {
        const std::string sText = fmt::format("Row {} of the host application, counted from 0, failed: {}",
                                              nRow, failure.description());
        if (++lFailures_ <= lMostFailures)
            return absentItem({failure.number(), sText}, Absence::Fails);
        throw Failure(failure.number(), fmt::format("{}; so did the {} before it, and the rows end there",
                                                    sText, lMostFailures));
    }

    ContextPtr pContext_;
    GisFieldsPtr pFields_;
    std::size_t nNext_ = 0;
    int lFailures_ = 0; ///< since the last row
};

class MethodCursor final : public GisCursor {
public:
    MethodCursor(const ContextPtr& pContext, ComPtr<IDispatch> pDispatch, GisFieldsPtr pFields)
        : cursor_(pContext, kindCursor, std::move(pDispatch)), rows_(pContext, std::move(pFields)) {}

    [[nodiscard]] bool canMove() const { return cursor_.has("NextRow"); }
    /// An exception of the cursor itself ends its rows, as it does with every host.
    [[nodiscard]] GisRowPtr nextRow() override {
        const Variant row = cursor_.call("NextRow");
        return rows_.next([&](std::size_t /*nRow*/) { return objectIn(row); });
    }

private:
    [[nodiscard]] ComPtr<IDispatch> objectIn(const Variant& row) const {
        try {
            return dispatchIn(row.get());
        } catch (const Failure&) {
            throw cursor_.mismatch("NextRow");
        }
    }

    LateBound cursor_;
    NumberedRows rows_;
};

class ListCursor final : public GisCursor {
public:
    ListCursor(const ContextPtr& pContext, std::unique_ptr<ItemSource> pItems, GisFieldsPtr pFields)
        : pItems_(std::move(pItems)), rows_(pContext, std::move(pFields)) {}

    [[nodiscard]] GisRowPtr nextRow() override {
        return rows_.next([&](std::size_t nRow) {
            const auto item = pItems_->next();
            return item.has_value() ? objectOfItem(*item, nRow, kindRow, Absence::Fails)
                                    : ComPtr<IDispatch>();
        });
    }

private:
    std::unique_ptr<ItemSource> pItems_;
    NumberedRows rows_;
};

} // namespace

ComField::ComField(ContextPtr pContext, ComPtr<IDispatch> pDispatch)
    : HostObject(std::move(pContext), kindField, std::move(pDispatch)), sName_(object().text("Name")) {
    if (object().has("AliasName"))
        sAlias_ = object().text("AliasName");
    if (sAlias_.empty())
        sAlias_ = sName_;
}

ComFields::ComFields(const LateBound& table) : aFields_(rolesOf<ComField>(table, "Fields", kindField)) {}

const GisField& ComFields::field(std::int32_t lIndex) const {
    if (lIndex < 0 || lIndex >= count())
        throw Failure::of(FailureNumber::SubscriptOutOfRange);
    return *aFields_[static_cast<std::size_t>(lIndex)];
}

std::int32_t ComFields::findField(std::string_view sName) const {
    return indexOf(sName, &GisField::name);
}

std::int32_t ComFields::findFieldByAliasName(std::string_view sAlias) const {
    return indexOf(sAlias, &GisField::aliasName);
}

std::int32_t ComFields::indexOf(std::string_view sSought, Name name) const {
    const auto pFound = std::find_if(aFields_.begin(), aFields_.end(), [&](const auto& pField) {
        return equalIgnoringCase(((*pField).*name)(), sSought);
    });
    return pFound == aFields_.end() ? -1 : static_cast<std::int32_t>(pFound - aFields_.begin());
}

ComRow::ComRow(ContextPtr pContext, ComPtr<IDispatch> pDispatch, GisFieldsPtr pFields)
    : HostObject(std::move(pContext), kindRow, std::move(pDispatch)), pFields_(std::move(pFields)) {}

ValueView ComRow::value(std::int32_t lIndex) const {
    if (lIndex < 0 || lIndex >= pFields_->count())
        throw Failure::of(FailureNumber::SubscriptOutOfRange);
    if (aCells_.empty())
        aCells_.resize(static_cast<std::size_t>(pFields_->count()));
    auto& cell = aCells_[static_cast<std::size_t>(lIndex)];
    if (!cell.has_value())
        cell = readCell(lIndex);
    return cell->aBytes.has_value() ? ValueView(Bytes(*cell->aBytes)) : toView(cell->vValue);
}

ComRow::Cell ComRow::readCell(std::int32_t lIndex) const {
    const Variant result = object().call("Value", {lIndex});
    if (auto aBytes = halvane::com::bytesOf(result.get()))
        return {Empty{}, std::move(aBytes)};
    return {objectIn(lIndex, result.get()), std::nullopt};
}

/// A value without anything in it is missing, and an object of the geometry field is a shape.
Value ComRow::objectIn(std::int32_t lIndex, const VARIANT& held) const {
    Value vValue = halvane::com::toValue(held);
    const auto* pObject = std::get_if<ObjectPtr>(&vValue);
    if (isEmpty(vValue) || (pObject != nullptr && *pObject == nullptr))
        return Null{};
    if (pObject != nullptr &&
        pFields_->field(lIndex).typeCode() == static_cast<std::int32_t>(FieldType::Geometry))
        return ObjectPtr(std::make_shared<ComGeometry>(context(), dispatchIn(held)));
    return vValue;
}

GisGeometryPtr ComRow::shape() const {
    return object().has("Shape") ? roleOf<ComGeometry>(object(), "Shape") : nullptr;
}

GisCursorPtr cursorOver(const ContextPtr& pContext, const Variant& rows, GisFieldsPtr pFields) {
    if ((V_VT(&rows.get()) & VT_ARRAY) == 0) {
        if (auto pDispatch = dispatchIn(rows.get())) {
            auto pCursor = std::make_shared<MethodCursor>(pContext, std::move(pDispatch), pFields);
            if (pCursor->canMove())
                return pCursor;
        }
    }
    return std::make_shared<ListCursor>(pContext, itemsOf(pContext, rows.get()), std::move(pFields));
}

} // namespace halvane::host::com
