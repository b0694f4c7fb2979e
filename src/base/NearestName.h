#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace halvane {

/// Which of some names a person most likely meant who wrote another one. Letter case does not count; a letter
/// too many, too few, wrong, or changed places with its neighbour counts one. A name is near if at most a
/// third of its letters are wrong.
class NearestName {
public:
    explicit NearestName(std::string_view sWritten);

    void offer(std::string_view sName);
    template<class Names>
    NearestName& offerAll(const Names& names) {
        for (const auto& sName : names)
            offer(sName);
        return *this;
    }

    /// The nearest name offered so far, of several the first; "" when none is near.
    [[nodiscard]] const std::string& name() const noexcept { return sNearest_; }
    /// Whether that one was meant, behind what a message has before the question; "" when none is near.
    [[nodiscard]] std::string question(std::string_view sBefore) const;

private:
    using Letters = std::vector<std::int32_t>;
    [[nodiscard]] static Letters lettersOf(std::string_view sText);
    [[nodiscard]] std::size_t distanceTo(const Letters& name) const;

    Letters written_; ///< in capitals
    std::string sNearest_;
    std::size_t nNearest_ = 0; ///< its distance
};

} // namespace halvane
