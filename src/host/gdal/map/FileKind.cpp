#include "host/gdal/map/FileKind.h"

#include "base/Owned.h"
#include "host/gdal/source/Locations.h"

#include <libxml/xmlreader.h>

#include <fstream>
#include <string_view>

namespace halvane::host::gdal {

namespace {

bool beginsLikeMarkup(const std::string& sPath) {
    std::ifstream stream(sPath, std::ios::binary);
    std::string sStart(64, '\0');
    stream.read(sStart.data(), static_cast<std::streamsize>(sStart.size()));
    sStart.resize(static_cast<std::size_t>(stream.gcount()));
    // Zeros belong to two-byte encodings, the others to byte order marks.
    const std::size_t nFirst =
        sStart.find_first_not_of(std::string_view(" \t\r\n\0\xEF\xBB\xBF\xFE\xFF", 10));
    return nFirst != std::string::npos && sStart[nFirst] == '<';
}

} // namespace

bool isProjectArchive(const std::string& sPath) {
    return extensionOf(sPath) == "qgz" && isFile(sPath);
}

FileKind fileKindOf(const std::string& sPath) {
    if (isProjectArchive(sPath))
        return FileKind::Project;
    if (!isFile(sPath) || !beginsLikeMarkup(sPath))
        return FileKind::Other;
    const Owned<xmlTextReader, xmlFreeTextReader> pReader(
        xmlReaderForFile(sPath.c_str(), nullptr, XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING));
    if (pReader == nullptr)
        return FileKind::BrokenMarkup;
    const auto ignore = [](void*, xmlError*) {};
    xmlTextReaderSetStructuredErrorHandler(pReader.get(), ignore, nullptr);
    while (xmlTextReaderRead(pReader.get()) == 1) {
        if (xmlTextReaderNodeType(pReader.get()) == XML_READER_TYPE_ELEMENT) {
            const std::string_view sName =
                reinterpret_cast<const char*>(xmlTextReaderConstLocalName(pReader.get()));
            return sName == "MapDocument" ? FileKind::MapDocument
                   : sName == "qgis"      ? FileKind::Project
                                          : FileKind::OtherMarkup;
        }
    }
    return FileKind::BrokenMarkup;
}

} // namespace halvane::host::gdal
