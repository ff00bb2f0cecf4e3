#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <utility>

namespace reelvane {

/// Cancels one registration when it goes; move-only, so that one owner decides.
class Subscription {
public:
    Subscription() = default;
    explicit Subscription(std::function<void()> cancel) : cancel_(std::move(cancel)) {}
    Subscription(Subscription&& other) noexcept : cancel_(std::exchange(other.cancel_, {})) {}
    Subscription& operator=(Subscription&& other) noexcept {
        if (this != &other) {
            if (cancel_) cancel_();
            cancel_ = std::exchange(other.cancel_, {});
        }
        return *this;
    }
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;
    ~Subscription() {
        if (cancel_) cancel_();
    }

private:
    std::function<void()> cancel_;
};

/// A list of call-backs that want to know of a change; main thread only. Registering and cancelling
/// are safe inside a call-back, and a subscription may outlive the list.
template <typename... Arguments>
class Observers {
public:
    using Callback = std::function<void(Arguments...)>;

    [[nodiscard]] Subscription add(Callback callback) {
        const auto number = next_++;
        callbacks_->emplace(number, std::move(callback));
        // Shared, because the subscription may outlive this list.
        return Subscription([list = std::weak_ptr(callbacks_), number] {
            if (const auto alive = list.lock()) alive->erase(number);
        });
    }

    void notify(Arguments... arguments) const {
        const auto list = callbacks_;  // the owner may go inside a call-back
        std::uint64_t reached = 0;
        for (auto it = list->begin(); it != list->end(); it = list->upper_bound(reached)) {
            reached = it->first;
            const auto callback = it->second;  // it may cancel itself
            callback(arguments...);
        }
    }

private:
    std::shared_ptr<std::map<std::uint64_t, Callback>> callbacks_ =
        std::make_shared<std::map<std::uint64_t, Callback>>();
    std::uint64_t next_ = 1;
};

/// A value that others watch; main thread only.
template <typename T>
class Observable {
public:
    Observable() = default;
    explicit Observable(T value) : value_(std::move(value)) {}

    [[nodiscard]] const T& get() const { return value_; }
    void set(T value) {
        if (value == value_) return;
        value_ = std::move(value);
        observers_.notify();
    }
    [[nodiscard]] Subscription observe(std::function<void()> changed) {
        return observers_.add(std::move(changed));
    }

private:
    T value_{};
    Observers<> observers_;
};

}  // namespace reelvane
