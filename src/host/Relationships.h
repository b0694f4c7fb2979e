#pragma once

// Relationship classes.

#include "base/Value.h"
#include "host/Forward.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace halvane::host {

class GisRelationshipClass : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisRelationshipClass"; }
    [[nodiscard]] virtual std::string name() const = 0;
    [[nodiscard]] virtual std::string forwardPathLabel() const = 0;
    [[nodiscard]] virtual std::string backwardPathLabel() const = 0;
    /// "" when it is in none.
    [[nodiscard]] virtual std::string featureDatasetName() const = 0;
    [[nodiscard]] virtual bool isAttributed() const = 0;
    [[nodiscard]] virtual bool isComposite() const = 0;
    /// 1 none, 2 forward, 3 backward, 4 both.
    [[nodiscard]] virtual std::int32_t notification() const = 0;
    /// 1 one to one, 2 one to many, 3 many to many.
    [[nodiscard]] virtual std::int32_t cardinality() const = 0;
    [[nodiscard]] virtual std::string originClassName() const = 0;
    [[nodiscard]] virtual std::string destinationClassName() const = 0;
    [[nodiscard]] virtual std::string originPrimaryKey() const = 0;
    [[nodiscard]] virtual std::string originForeignKey() const = 0;
    [[nodiscard]] virtual std::string destinationPrimaryKey() const = 0;
    [[nodiscard]] virtual std::string destinationForeignKey() const = 0;
    /// The table whose rows link those of a class that is many to many; "" where the host does not tell.
    [[nodiscard]] virtual std::string linkTableName() const { return {}; }
};

class GisEnumRelationshipClass : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisEnumRelationshipClass"; }
    [[nodiscard]] virtual GisRelationshipClassPtr next() = 0;
};

} // namespace halvane::host
