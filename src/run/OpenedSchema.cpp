#include "run/OpenedSchema.h"

#include "run/Overwriting.h"
#include "telling/Paths.h"
#include "xml/schema/SchemaAddress.h"

#include <fmt/format.h>

#include <utility>

namespace halvane {

namespace {

using Problems = std::vector<std::string>;

/// At most so many lines: a schema of a hundred files may lack them all.
constexpr std::size_t mostProblems = 10;

void tell(const char* sOption, Problems found, Problems& problems) {
    const std::size_t nMore = found.size() > mostProblems ? found.size() - mostProblems : 0;
    found.resize(found.size() - nMore);
    for (const auto& sProblem : found)
        problems.push_back(fmt::format("{}: {}", sOption, sProblem));
    if (nMore > 0)
        problems.push_back(fmt::format("{}: {} more of this kind", sOption, nMore));
}

dom::SchemaCatalog openCatalog(const std::optional<std::string>& sCatalog, Problems& problems) {
    if (!sCatalog)
        return {};
    Problems found;
    dom::SchemaCatalog catalog(absolutePath(*sCatalog), *sCatalog, found);
    tell("--schema-catalog", std::move(found), problems);
    return catalog;
}

dom::SchemaFiles filesOf(const std::string& sSchema, const dom::SchemaCatalog& catalog, Problems& found) {
    return {dom::hasScheme(sSchema) ? sSchema : absolutePath(sSchema), sSchema, catalog, found};
}

} // namespace

std::optional<dom::SchemaFiles> readSchema(const std::string& sSchema,
                                           const std::optional<std::string>& sCatalog, Problems& problems) {
    const auto catalog = openCatalog(sCatalog, problems);
    if (!problems.empty())
        return std::nullopt;
    Problems found;
    auto files = filesOf(sSchema, catalog, found);
    if (found.empty())
        static_cast<void>(dom::Schema::compile(files, found));
    tell("--schema", std::move(found), problems);
    return files;
}

OpenedSchema openSchema(const ExportArguments& arguments, const OutputTarget& output, Problems& problems) {
    if (!arguments.sSchema)
        return {};
    const auto catalog = openCatalog(arguments.sSchemaCatalog, problems);
    if (!problems.empty())
        return {};
    OpenedSchema opened{*arguments.sSchema, {}, catalog.files(), nullptr};
    Problems found;
    const auto files = filesOf(opened.sShown, catalog, found);
    opened.sPath = files.root();
    const auto parts = files.paths();
    opened.files.insert(opened.files.end(), parts.begin(), parts.end());
    if (found.empty())
        found = checkSchemaIsNotReplaced(output, parts, catalog.files());
    if (found.empty())
        opened.pSchema = dom::Schema::compile(files, found);
    tell("--schema", std::move(found), problems);
    return opened;
}

} // namespace halvane
