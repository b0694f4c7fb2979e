#pragma once

#include "engine/second/SecondEdition.h"
#include "expression/sqlite/SqliteEvaluator.h"
#include "run/PartFiles.h"

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace halvane {

/// All that control files of the second edition are exported with. The moment of the export is that of its
/// making, in the system's time zone; where the environment variable SOURCE_DATE_EPOCH holds seconds since
/// 1970, that moment, in UTC.
class SecondEditionKit {
public:
    SecondEditionKit();

    /// @param values "name=value" each, as the person gave them.
    /// @returns a line for each that is none.
    [[nodiscard]] std::vector<std::string> setValues(const std::vector<std::string>& values);
    /// Where the spatial references that control files name are looked up.
    void setRegister(std::function<host::GisSpatialReferencePtr(std::string_view sCode)> fnReferenceOf) {
        edition_.fnReferenceOf = std::move(fnReferenceOf);
    }
    /// Those of the values that no control file has asked for since they were set.
    [[nodiscard]] const std::set<std::string, std::less<>>& valuesLeft() const noexcept { return *pLeft_; }
    [[nodiscard]] const SecondEdition& edition() const noexcept { return edition_; }

private:
    struct Moment;
    explicit SecondEditionKit(const Moment& moment);

    std::unique_ptr<expression::sqlite::SqliteEvaluator> pEvaluator_; ///< keeps its place
    std::unique_ptr<PartFiles> pParts_;                               ///< likewise
    SecondEdition edition_;
    std::shared_ptr<std::set<std::string, std::less<>>> pLeft_; ///< likewise
};

} // namespace halvane
