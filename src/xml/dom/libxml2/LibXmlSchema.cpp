// Validation by a schema, with libxml2.

#include "xml/dom/libxml2/LibXmlErrors.h"
#include "xml/dom/libxml2/LibXmlParsing.h"
#include "xml/schema/Schema.h"

#include <libxml/parserInternals.h>
#include <libxml/uri.h>
#include <libxml/xmlschemas.h>

#include <algorithm>
#include <new>
#include <utility>

namespace halvane::dom {

namespace libxml {
namespace {

using SchemaPtr = Owned<xmlSchema, xmlSchemaFree>;
using SchemaParserPtr = Owned<xmlSchemaParserCtxt, xmlSchemaFreeParserCtxt>;
using ValidatorPtr = Owned<xmlSchemaValidCtxt, xmlSchemaFreeValidCtxt>;

// ---- Reading

// The library asks one function of the whole process for every file that it reads.
thread_local const SchemaFiles* pFilesRead = nullptr; // NOLINT(*-avoid-non-const-global-variables)

/// Nothing but the files that were read beforehand is ever given to it.
xmlParserInput* loadFile(const char* pAddress, const char* /*pPublicId*/, xmlParserCtxt* pParser) noexcept {
    try {
        const std::string* const pPath =
            pFilesRead == nullptr || pAddress == nullptr ? nullptr : pFilesRead->pathOf(pAddress);
        if (pPath == nullptr)
            return nullptr;
        const std::string& sBytes = pFilesRead->bytesOf(*pPath);
        auto* const pBuffer = xmlParserInputBufferCreateMem(sBytes.data(), static_cast<int>(sBytes.size()),
                                                            XML_CHAR_ENCODING_NONE);
        xmlParserInput* const pInput =
            pBuffer == nullptr ? nullptr : xmlNewIOInputStream(pParser, pBuffer, XML_CHAR_ENCODING_NONE);
        if (pInput == nullptr)
            xmlFreeParserInputBuffer(pBuffer);
        else
            pInput->filename =
                reinterpret_cast<char*>(xmlCanonicPath(reinterpret_cast<const xmlChar*>(pPath->c_str())));
        return pInput;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

class ReadingFiles {
public:
    explicit ReadingFiles(const SchemaFiles& files) noexcept
        : pOuter_(std::exchange(pFilesRead, &files)), fnOuter_(xmlGetExternalEntityLoader()) {
        xmlSetExternalEntityLoader(&loadFile);
    }
    ReadingFiles(const ReadingFiles&) = delete;
    ReadingFiles& operator=(const ReadingFiles&) = delete;
    ~ReadingFiles() {
        xmlSetExternalEntityLoader(fnOuter_);
        pFilesRead = pOuter_;
    }

private:
    const SchemaFiles* pOuter_;
    xmlExternalEntityLoader fnOuter_;
};

struct FirstError {
    const std::string& sRoot; ///< where an error is that the library tells no file of
    std::string sText;
    std::size_t nMore = 0;
    ErrorScope& scope;
};

void noteSchemaProblem(void* pContext, xmlErrorPtr pError) noexcept {
    auto& first = *static_cast<FirstError*>(pContext);
    first.scope.note(pError);
    if (pError->level < XML_ERR_ERROR)
        return;
    if (!first.sText.empty()) {
        ++first.nMore;
        return;
    }
    try {
        first.sText = pError->file == nullptr ? first.sRoot : pError->file;
        if (pError->line > 0)
            first.sText += ":" + std::to_string(pError->line);
        first.sText += ": " + oneLine(pError->message);
    } catch (const std::bad_alloc&) {
        first.sText.clear();
    }
}

// ---- Validating

/// The library tells the attribute in its text alone: "Element '{…}a', attribute '{…}b': …".
std::string_view attributeIn(std::string_view sMessage) noexcept {
    constexpr std::string_view before = "', attribute '";
    const auto nBegin = sMessage.find(before);
    if (nBegin == std::string_view::npos || nBegin > sMessage.find(": "))
        return {};
    auto sName = sMessage.substr(nBegin + before.size());
    sName = sName.substr(0, sName.find('\''));
    return sName.substr(sName.rfind('}') + 1); // npos + 1 is 0
}

/// Gives bytes to the parser, whose events go to the listener and then to the library's validator.
class StreamValidation final : public Schema::Validation {
public:
    StreamValidation(xmlSchema& schema, SchemaListener& listener)
        : listener_(listener), pValidator_(xmlSchemaNewValidCtxt(&schema)),
          pParser_(xmlCreatePushParserCtxt(nullptr, nullptr, nullptr, 0, nullptr)) {
        if (pValidator_ == nullptr || pParser_ == nullptr)
            throw std::bad_alloc();
        errors_.requireMemory(); // a validator may lack a part that it then looks for
        xmlSchemaSetValidStructuredErrors(pValidator_.get(), &onError, this);
        // It is the export's own document, whose texts may be long.
        xmlCtxtUseOptions(pParser_.get(), XML_PARSE_HUGE | XML_PARSE_NONET);
        callbacks_.initialized = XML_SAX2_MAGIC;
        callbacks_.startElementNs = &onStart;
        callbacks_.endElementNs = &onEnd;
        callbacks_.serror = nullptr;
        pOwnCallbacks_ = std::exchange(pParser_->sax, &callbacks_);
        pParser_->userData = this;
        pPlug_ = xmlSchemaSAXPlug(pValidator_.get(), &pParser_->sax, &pParser_->userData);
        if (pPlug_ == nullptr) {
            pParser_->sax = pOwnCallbacks_;
            throw std::bad_alloc();
        }
    }
    StreamValidation(const StreamValidation&) = delete;
    StreamValidation& operator=(const StreamValidation&) = delete;
    ~StreamValidation() override {
        xmlSchemaSAXUnplug(pPlug_);
        pParser_->sax = pOwnCallbacks_;
    }

    void write(std::string_view sBytes) override {
        constexpr std::size_t most = 1U << 20U; // the library counts in int
        for (; !sBytes.empty(); sBytes.remove_prefix(std::min(most, sBytes.size())))
            parse(sBytes.substr(0, most), false);
    }

    void finish() override { parse({}, true); }

private:
    static StreamValidation& self(void* pContext) noexcept {
        return *static_cast<StreamValidation*>(pContext);
    }

    static void onStart(void* pContext, const xmlChar* pName, const xmlChar* pPrefix, const xmlChar* /*pUri*/,
                        int /*nNamespaces*/, const xmlChar** /*ppNamespaces*/, int /*nAttributes*/,
                        int /*nDefaulted*/, const xmlChar** /*ppAttributes*/) noexcept {
        StreamValidation& validation = self(pContext);
        validation.leaveEnded();
        try {
            const xmlParserInput& input = *validation.pParser_->input;
            validation.lines_.push_back(static_cast<std::uint64_t>(input.line) - linesOfStartTag(input));
            std::string& sName = validation.sName_;
            sName.clear();
            if (pPrefix != nullptr)
                sName.append(view(pPrefix)).append(":");
            sName.append(view(pName));
        } catch (const std::bad_alloc&) {
            validation.bRanOut_ = true;
            return;
        }
        validation.listener_.elementBegins(validation.sName_);
    }

    // The validator looks at the end after this.
    static void onEnd(void* pContext, const xmlChar* /*pName*/, const xmlChar* /*pPrefix*/,
                      const xmlChar* /*pUri*/) noexcept {
        StreamValidation& validation = self(pContext);
        validation.leaveEnded();
        validation.bEnded_ = true;
    }

    void leaveEnded() noexcept {
        if (!std::exchange(bEnded_, false))
            return;
        if (!lines_.empty())
            lines_.pop_back();
        listener_.elementEnds();
    }

    static void onError(void* pContext, xmlErrorPtr pError) noexcept {
        StreamValidation& validation = self(pContext);
        validation.errors_.note(pError);
        validation.tell(pError->message);
    }

    void tell(const char* pMessage) noexcept {
        try {
            const std::string sMessage = oneLine(pMessage);
            listener_.schemaError(lines_.empty() ? 1 : lines_.back(), attributeIn(sMessage), sMessage);
        } catch (const std::bad_alloc&) {
            bRanOut_ = true;
        }
    }

    void parse(std::string_view sBytes, bool bLast) {
        if (bBroken_)
            return;
        const int nError =
            xmlParseChunk(pParser_.get(), sBytes.data(), static_cast<int>(sBytes.size()), bLast ? 1 : 0);
        errors_.requireMemory();
        if (pParser_->wellFormed == 0) {
            bBroken_ = true;
            const xmlError* const pError = xmlCtxtGetLastError(pParser_.get());
            tell(pError == nullptr || nError == 0 ? "the document is not well-formed" : pError->message);
        }
        if (bRanOut_)
            throw std::bad_alloc();
    }

    SchemaListener& listener_;
    ErrorScope errors_;
    ValidatorPtr pValidator_;
    Owned<xmlParserCtxt, xmlFreeParserCtxt> pParser_;
    xmlSAXHandler callbacks_{};
    xmlSAXHandler* pOwnCallbacks_ = nullptr; ///< the parser's, which it frees
    xmlSchemaSAXPlugStruct* pPlug_ = nullptr;
    std::vector<std::uint64_t> lines_; ///< on which the open elements begin
    std::string sName_;
    bool bEnded_ = false; ///< the innermost element's end tag was read; its errors may still come
    bool bRanOut_ = false;
    bool bBroken_ = false;
};

class LibrarySchema final : public Schema {
public:
    explicit LibrarySchema(SchemaPtr pSchema) : pSchema_(std::move(pSchema)) {}

    [[nodiscard]] std::unique_ptr<Validation> validate(SchemaListener& listener) const override {
        return std::make_unique<StreamValidation>(*pSchema_, listener);
    }

private:
    SchemaPtr pSchema_;
};

} // namespace
} // namespace libxml

std::unique_ptr<Schema> Schema::compile(const SchemaFiles& files, std::vector<std::string>& problems) {
    libxml::initialise();
    libxml::ErrorScope errors;
    libxml::FirstError first{files.root(), {}, 0, errors};
    libxml::SchemaPtr pSchema;
    {
        const libxml::ReadingFiles reading(files);
        const libxml::SchemaParserPtr pParser(xmlSchemaNewParserCtxt(files.root().c_str()));
        if (pParser == nullptr)
            throw std::bad_alloc();
        xmlSchemaSetParserStructuredErrors(pParser.get(), &libxml::noteSchemaProblem, &first);
        pSchema.reset(xmlSchemaParse(pParser.get()));
    }
    errors.requireMemory();
    if (pSchema != nullptr && first.sText.empty())
        return std::make_unique<libxml::LibrarySchema>(std::move(pSchema));
    if (first.sText.empty())
        first.sText = files.root() + ": the schema cannot be understood";
    if (first.nMore > 0)
        first.sText += " (and " + std::to_string(first.nMore) + " more)";
    problems.push_back(std::move(first.sText));
    return nullptr;
}

} // namespace halvane::dom
