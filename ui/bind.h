#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "support/observable.h"

namespace reelvane {

/// What a widget watches; the watching ends with the widget.
using Subscriptions = std::vector<Subscription>;

/// Shows the value now and after every change.
template <typename T, typename Show>
[[nodiscard]] Subscription bind(Observable<T>& value, Show show) {
    show(value.get());
    return value.observe([&value, show = std::move(show)] { show(value.get()); });
}

}  // namespace reelvane
