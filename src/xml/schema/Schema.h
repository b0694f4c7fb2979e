#pragma once

#include "io/OutputBuffer.h"
#include "xml/schema/SchemaFiles.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace halvane::dom {

/// Hears of a document while it is validated. Does not throw.
class SchemaListener {
public:
    SchemaListener() = default;
    SchemaListener(const SchemaListener&) = delete;
    SchemaListener& operator=(const SchemaListener&) = delete;
    virtual ~SchemaListener() = default;

    /// @param sName with its prefix.
    virtual void elementBegins(std::string_view sName) noexcept = 0;
    /// Comes after the errors that were found at its end.
    virtual void elementEnds() noexcept = 0;
    /// Of the innermost element that has begun and not ended.
    /// @param nLine on which it begins, from 1. @param sAttribute without its prefix, where an attribute's
    ///        value or the attribute itself is wrong; else "". @param sMessage one line.
    virtual void schemaError(std::uint64_t nLine, std::string_view sAttribute,
                             std::string_view sMessage) noexcept = 0;
};

/// A schema that documents can be validated by.
class Schema {
public:
    /// @param problems gets a line when it is none. @returns nothing then.
    [[nodiscard]] static std::unique_ptr<Schema> compile(const SchemaFiles& files,
                                                         std::vector<std::string>& problems);
    Schema() = default;
    Schema(const Schema&) = delete;
    Schema& operator=(const Schema&) = delete;
    virtual ~Schema() = default;

    /// Validates one document, whose bytes are written to it in order: in memory that does not grow with the
    /// document, but for the values of keys. Locations that the document names are not heeded.
    class Validation : public io::ByteSink {
    public:
        /// Call once, after the last byte.
        /// @throws std::bad_alloc where memory ran out: what was told is then not all.
        virtual void finish() = 0;
    };
    /// @param listener borrowed. The schema outlives the validation.
    [[nodiscard]] virtual std::unique_ptr<Validation> validate(SchemaListener& listener) const = 0;
};

} // namespace halvane::dom
