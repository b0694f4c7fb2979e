// A map document: read, and its objects made. Its data is not opened.

#include "base/Failure.h"
#include "fuzz/Check.h"
#include "fuzz/Target.h"
#include "host/Map.h"
#include "host/gdal/GdalHost.h"
#include "host/gdal/map/FileKind.h"
#include "host/gdal/map/MapDocumentReader.h"
#include "support/TemporaryFolder.h"

#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t nSize) {
    using namespace halvane;
    static const test::TemporaryFolder folder;
    const std::string sPath =
        folder.write("map.xml", std::string_view(reinterpret_cast<const char*>(pBytes), nSize));
    if (host::gdal::fileKindOf(sPath) != host::gdal::FileKind::MapDocument)
        return 0;
    try {
        const auto pDocument = host::gdal::GdalHost::create()->openMapDocument(sPath);
        fuzz::check(pDocument->mapCount() > 0, "A map document has a map");
        for (std::int32_t lMap = 0; lMap < pDocument->mapCount(); ++lMap)
            static_cast<void>(pDocument->map(lMap)->name());
        fuzz::check(pDocument->focusMap() != nullptr, "A map document shows a map");
    } catch (const Failure& failure) {
        fuzz::check(failure.description().find("map.xml") != std::string::npos ||
                        failure.context().find("map.xml") != std::string::npos,
                    "A map document that is refused is named", failure.description());
    }
    return 0;
}
