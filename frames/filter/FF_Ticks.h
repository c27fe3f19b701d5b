#pragma once

namespace frames {

// Suspends ticking a filter's cbSet while the frame changes its own content (reading its lists,
// restoring a layout, clearing): only the user's changes switch a filter on.
class TickGate {
public:
    bool open() const { return held_ == 0; }
    // Runs f with ticking suspended (nested holds count).
    template <typename F> void hold(F&& f) {
        ++held_;
        struct Release {
            int& held;
            ~Release() { --held; }
        } release{held_};
        f();
    }

private:
    int held_ = 0;
};

} // namespace frames
