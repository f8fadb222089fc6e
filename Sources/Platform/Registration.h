#pragma once

#include <functional>
#include <utility>

namespace orvane {

/// Keeps something registered (a timer, a watch, a subscription) for as long as it lives; destroying or resetting it
/// takes the registration back. That is allowed at any time, also inside the registered callback and after the object
/// it was registered with is gone.
class [[nodiscard]] Registration {
 public:
    Registration() = default;
    explicit Registration(std::move_only_function<void()> cancel) : cancel_(std::move(cancel)) {}
    Registration(Registration&& other) noexcept : cancel_(std::exchange(other.cancel_, nullptr)) {}
    Registration& operator=(Registration&& other) noexcept {
        if (this != &other) {
            reset();
            cancel_ = std::exchange(other.cancel_, nullptr);
        }
        return *this;
    }
    ~Registration() { reset(); }

    void reset() {
        if (auto cancel = std::exchange(cancel_, nullptr)) cancel();
    }

    explicit operator bool() const { return static_cast<bool>(cancel_); }

 private:
    std::move_only_function<void()> cancel_;
};

}  // namespace orvane
