#include "run/PartFiles.h"

#include "base/Failure.h"
#include "engine/second/SecondEdition.h"
#include "telling/DocumentLoading.h"
#include "telling/DocumentOrder.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace halvane {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t nMostElements = 100'000;
constexpr std::size_t nDeepest = 16;

class Descriptor {
public:
    explicit Descriptor(int nDescriptor) : nDescriptor_(nDescriptor) {}
    Descriptor(Descriptor&& other) noexcept : nDescriptor_(std::exchange(other.nDescriptor_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(nDescriptor_, other.nDescriptor_);
        return *this;
    }
    ~Descriptor() {
        if (nDescriptor_ >= 0)
            ::close(nDescriptor_);
    }

    [[nodiscard]] int get() const { return nDescriptor_; }

private:
    int nDescriptor_;
};

[[noreturn]] void refuse(const std::string& sWhat) {
    throw Failure(FailureNumber::DocumentFailure, sWhat);
}

/// Opens one step of a path after the other, so that none of them can be a link.
Descriptor openBelow(const fs::path& folder, const fs::path& relative) {
    Descriptor at(::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    for (auto step = relative.begin(); at.get() >= 0 && step != relative.end(); ++step) {
        const bool bLast = std::next(step) == relative.end();
        const int nFlags = bLast ? O_RDONLY | O_NONBLOCK : O_PATH | O_DIRECTORY;
        at = Descriptor(::openat(at.get(), step->c_str(), nFlags | O_NOFOLLOW | O_CLOEXEC));
    }
    if (at.get() < 0)
        refuse(errno == ELOOP || errno == ENOTDIR
                   ? "no link is followed to a part; give the path of the file itself"
                   : std::strerror(errno));
    return at;
}

std::string contentOf(const fs::path& folder, const fs::path& relative) {
    const Descriptor file = openBelow(folder, relative);
    struct stat status = {};
    if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        refuse("this is no file");
    std::string sContent;
    constexpr std::size_t nPiece = 64U << 10U;
    while (sContent.size() <= dom::Document::largestLoaded) {
        const std::size_t nBefore = sContent.size();
        sContent.resize(nBefore + nPiece);
        const auto nRead = ::read(file.get(), sContent.data() + nBefore, nPiece);
        const int nError = errno;
        sContent.resize(nBefore + static_cast<std::size_t>(std::max<ssize_t>(nRead, 0)));
        if (nRead == 0)
            break;
        if (nRead < 0 && nError != EINTR)
            refuse(std::strerror(nError));
    }
    return sContent;
}

std::vector<dom::Node> inclusionsIn(dom::Node oRoot) {
    std::vector<dom::Node> found;
    for (dom::Node oNode = oRoot; oNode; oNode = nextInDocument(oNode, oRoot))
        if (isElement(oNode) && secondAttribute(oNode, "Include"))
            found.push_back(oNode);
    return found;
}

std::size_t elementsIn(dom::Node oRoot) {
    std::size_t nElements = 0;
    for (dom::Node oNode = oRoot; oNode; oNode = nextInDocument(oNode, oRoot))
        nElements += isElement(oNode) ? 1 : 0;
    return nElements;
}

/// Gives the attribute that names a part another value.
void rename(dom::Node oElement, const std::string& sPath) {
    for (dom::Node oAttribute : oElement.attributes())
        if (oAttribute.baseName() == "Include" && oAttribute.nodeName() != "Include")
            oAttribute.setText(sPath);
}

class Inclusion {
public:
    explicit Inclusion(const fs::path& control) : folder_(control.parent_path()) {
        open_.push_back(control.filename());
    }

    /// @param file that the element is the root of, seen from the control file's folder.
    void includeIn(dom::Node oRoot) {
        for (const dom::Node oElement : inclusionsIn(oRoot)) {
            try {
                include(oElement);
            } catch (const Failure& failure) {
                problems_.push_back(
                    {oElement, fmt::format("h:Include=\"{}\": {}", *secondAttribute(oElement, "Include"),
                                           failure.description())});
            }
        }
    }

    [[nodiscard]] std::vector<SecondProblem> takeProblems() { return std::move(problems_); }

private:
    void include(dom::Node oElement) {
        const fs::path path = partPath(*secondAttribute(oElement, "Include"));
        for (dom::Node oChild = oElement.firstChild(); oChild; oChild = oChild.nextSibling())
            if (isElement(oChild))
                refuse("the part takes the place of what stands in the element; take that away");
        if (std::ranges::find(open_, path) != open_.end())
            refuse("it would include itself");
        if (open_.size() > nDeepest)
            refuse("parts are included in each other more than 16 deep");
        const dom::Node oPart = load(path);
        nElements_ += elementsIn(oPart);
        if (nElements_ > nMostElements)
            refuse("the parts have more than 100,000 elements together");
        oElement.appendChild(oPart);
        rename(oElement, path.generic_string());
        open_.push_back(path);
        includeIn(oPart);
        open_.pop_back();
    }

    /// Seen from the control file's folder.
    [[nodiscard]] fs::path partPath(std::string_view sPath) const {
        const fs::path given(sPath);
        if (sPath.empty() || sPath.find('\0') != std::string_view::npos || !given.has_filename())
            refuse("it is the path of a file");
        const fs::path path = (open_.back().parent_path() / given).lexically_normal();
        if (given.is_absolute() || *path.begin() == "..")
            refuse("parts stand in the control file's folder or below it");
        return path;
    }

    [[nodiscard]] dom::Node load(const fs::path& path) {
        const auto oDocument = dom::Document::create();
        if (!oDocument->loadBytes(contentOf(folder_, path)))
            refuse(parseProblem(path.generic_string(), oDocument->parseError()));
        documents_.push_back(oDocument);
        return oDocument->documentElement();
    }

    fs::path folder_;
    std::vector<fs::path> open_; ///< the files around the one that is read, the control file first
    std::vector<dom::DocumentPtr> documents_;
    std::vector<SecondProblem> problems_;
    std::size_t nElements_ = 0;
};

} // namespace

std::vector<SecondProblem> PartFiles::include(dom::Node oControlRoot, std::string_view sControlPath) {
    const fs::path control(sControlPath);
    if (!control.is_absolute()) {
        std::vector<SecondProblem> problems;
        for (const dom::Node oElement : inclusionsIn(oControlRoot))
            problems.push_back(
                {oElement, "h:Include: a control file that is no file of this machine has no parts"});
        return problems;
    }
    Inclusion inclusion(control);
    inclusion.includeIn(oControlRoot);
    return inclusion.takeProblems();
}

} // namespace halvane
