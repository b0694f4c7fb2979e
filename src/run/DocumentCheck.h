#pragma once

#include "run/OpenedSchema.h"
#include "telling/SchemaErrors.h"

#include <memory>
#include <optional>
#include <string>

namespace halvane {

/// The check of a document against its schema, as its bytes come by or once it stands.
class DocumentCheck final : public io::ByteSink {
public:
    /// @param schema,log borrowed. @param oControlRoot borrowed, with its document.
    DocumentCheck(const OpenedSchema& schema, dom::Node oControlRoot, const ExportLog& log)
        : schema_(schema), oControlRoot_(oControlRoot), log_(log) {}

    /// Throws nothing: a check that breaks off says why.
    void write(std::string_view sBytes) override;
    /// Reads a document that stands, unless an orderly end is asked for.
    void read(const std::string& sPath);
    /// Call once, after all of it.
    void finish();

    /// Whether all of the document was looked at, and nothing found.
    [[nodiscard]] bool valid() const;
    /// Why not all of it was looked at; "" when it was.
    [[nodiscard]] const std::string& whyBrokenOff() const noexcept { return sWhyBrokenOff_; }
    /// Nothing before the first byte.
    [[nodiscard]] const SchemaErrors* errors() const noexcept { return errors_ ? &*errors_ : nullptr; }

private:
    template<class Body>
    void guarded(const Body& body);

    const OpenedSchema& schema_;
    dom::Node oControlRoot_;
    const ExportLog& log_;
    std::optional<SchemaErrors> errors_;
    std::unique_ptr<dom::Schema::Validation> pValidation_; ///< from the first byte to the last
    std::string sWhyBrokenOff_;
};

} // namespace halvane
