#include "collection/ValueCollection.h"

#include "base/CaseFolding.h"
#include "base/Conversions.h"
#include "base/Failure.h"
#include "base/Text.h"
#include "collection/KeyIndex.h"

#include <algorithm>

namespace halvane {

namespace {

// The size of a set of attributes: most collections never grow beyond it.
constexpr std::size_t nFirstCapacity = 12;
// Measured: finding an absent key among this many takes 240 ns key by key (they begin alike), 40 ns by hash;
// below, the index would cost more to fill than it saves.
constexpr std::size_t nIndexFrom = 16;

// A cheap test that settles most comparisons: both begin with an ASCII character, and not with the same
// letter.
bool beginDifferently(std::string_view sLeft, std::string_view sRight) noexcept {
    return sLeft.empty() || (isAscii(sLeft.front()) && isAscii(sRight.front()) &&
                             asciiUpper(sLeft.front()) != asciiUpper(sRight.front()));
}

} // namespace

ValueCollection::ValueCollection() = default;
ValueCollection::~ValueCollection() = default;

bool ValueCollection::tryAdd(Value vValue, std::string_view sKey) {
    if (!sKey.empty() && positionOf(sKey) != 0)
        return false;
    // Whatever can fail comes first, so that a failure leaves values and keys in step.
    std::string sOwnKey(sKey);
    makeRoom();
    if (pIndex_)
        pIndex_->append(sKey);
    values_.push_back(std::move(vValue));
    keys_.push_back(std::move(sOwnKey));
    return true;
}

void ValueCollection::add(Value vValue, std::string_view sKey) {
    if (!tryAdd(std::move(vValue), sKey))
        throw Failure::of(FailureNumber::DuplicateKey);
}

std::int32_t ValueCollection::positionOf(std::string_view sKey) const {
    if (sKey.empty())
        return 0;
    if (pIndex_)
        return static_cast<std::int32_t>(pIndex_->find(sKey, keys_) + 1);
    // Keys are unique ignoring case, so the one that is spelled alike is the one, and it is found without
    // folding.
    const auto same = std::find(keys_.begin(), keys_.end(), sKey);
    if (same != keys_.end())
        return static_cast<std::int32_t>(same - keys_.begin() + 1);
    const auto alike = std::find_if(keys_.begin(), keys_.end(), [sKey](const std::string& sFiled) {
        return !beginDifferently(sFiled, sKey) && equalIgnoringCase(sFiled, sKey);
    });
    return alike == keys_.end() ? 0 : static_cast<std::int32_t>(alike - keys_.begin() + 1);
}

const Value* ValueCollection::find(std::string_view sKey) const {
    const std::int32_t lPosition = positionOf(sKey);
    return lPosition == 0 ? nullptr : &values_[static_cast<std::size_t>(lPosition - 1)];
}

const Value& ValueCollection::item(std::int32_t lPosition) const {
    if (lPosition < 1 || lPosition > count())
        throw Failure::of(FailureNumber::SubscriptOutOfRange);
    return values_[static_cast<std::size_t>(lPosition - 1)];
}

const Value& ValueCollection::item(std::string_view sKey) const {
    const Value* pValue = find(sKey);
    if (pValue == nullptr)
        throw Failure::of(FailureNumber::InvalidProcedureCall);
    return *pValue;
}

const Value& ValueCollection::entry(const Value& vIndexOrKey) const {
    if (const auto* sKey = std::get_if<std::string>(&vIndexOrKey))
        return item(std::string_view(*sKey));
    return item(wholeNumberOf(toView(vIndexOrKey)));
}

void ValueCollection::remove(std::int32_t lPosition) {
    if (lPosition < 1 || lPosition > count())
        throw Failure::of(FailureNumber::SubscriptOutOfRange);
    const std::ptrdiff_t nOffset = lPosition - 1;
    if (pIndex_)
        pIndex_->remove(static_cast<std::size_t>(nOffset), keys_[static_cast<std::size_t>(nOffset)]);
    values_.erase(values_.begin() + nOffset);
    keys_.erase(keys_.begin() + nOffset);
}

void ValueCollection::remove(std::string_view sKey) {
    const std::int32_t lPosition = positionOf(sKey);
    if (lPosition == 0)
        throw Failure::of(FailureNumber::InvalidProcedureCall);
    remove(lPosition);
}

void ValueCollection::clear() noexcept {
    pIndex_.reset();
    values_.clear();
    keys_.clear();
}

void ValueCollection::makeRoom() {
    if (values_.size() == values_.capacity())
        values_.reserve(values_.empty() ? nFirstCapacity : 2 * values_.size());
    if (keys_.size() == keys_.capacity())
        keys_.reserve(keys_.empty() ? nFirstCapacity : 2 * keys_.size());
    if (!pIndex_ && keys_.size() >= nIndexFrom)
        pIndex_ = std::make_unique<KeyIndex>(keys_);
}

const Value* ValueEnumerator::next() {
    return lPosition_ < pValues_->count() ? &pValues_->item(++lPosition_) : nullptr;
}

bool ValueEnumerator::skip(std::int32_t lCount) {
    const std::int32_t lLeft = pValues_->count() - lPosition_;
    lPosition_ += lCount < lLeft ? lCount : lLeft;
    return lCount <= lLeft;
}

} // namespace halvane
