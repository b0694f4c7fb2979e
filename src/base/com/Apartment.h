#pragma once

namespace halvane::com {

/// A single-threaded apartment for this thread, for as long as it lives. Where the thread has an apartment
/// already it is that one, whichever it is.
class Apartment {
public:
    enum class For {
        Components,
        Dialogs ///< what dragging, the clipboard and the shell's dialogs need besides
    };

    explicit Apartment(For use) noexcept;
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
    ~Apartment();

    /// Not on a thread that shares the apartment of many.
    [[nodiscard]] bool entered() const noexcept { return bEntered_; }

private:
    For use_;
    bool bEntered_;
};

} // namespace halvane::com
