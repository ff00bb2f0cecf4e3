#pragma once

#include <gio/gio.h>
#include <memory>
#include <string>

/// Owners for what GLib and GIO hand out, so that nothing is freed by hand.
namespace reelvane {

struct GObjectRelease {
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <class T>
using GObjectHandle = std::unique_ptr<T, GObjectRelease>;

struct VariantRelease {
    void operator()(GVariant* value) const { g_variant_unref(value); }
};
using VariantHandle = std::unique_ptr<GVariant, VariantRelease>;

struct GLibRelease {
    void operator()(gpointer memory) const { g_free(memory); }
};
using GLibText = std::unique_ptr<char, GLibRelease>;

struct ContextRelease {
    void operator()(GMainContext* context) const { g_main_context_unref(context); }
};
using ContextHandle = std::unique_ptr<GMainContext, ContextRelease>;

/// Receives the error of one call: `GLibError error; call(..., error.out());`
class GLibError {
public:
    GLibError() = default;
    GLibError(const GLibError&) = delete;
    GLibError& operator=(const GLibError&) = delete;
    GLibError(GLibError&&) = delete;
    GLibError& operator=(GLibError&&) = delete;
    ~GLibError() { g_clear_error(&error_); }

    [[nodiscard]] GError** out() { return &error_; }
    /// Empty when the call went well.
    [[nodiscard]] std::string message() const { return error_ != nullptr ? error_->message : ""; }
    [[nodiscard]] bool is(GQuark domain, int code) const {
        return g_error_matches(error_, domain, code) != FALSE;
    }

private:
    GError* error_ = nullptr;
};

/// The text with whatever is not UTF-8 replaced, as D-Bus demands: a file name may hold any bytes.
[[nodiscard]] inline std::string validUtf8(const std::string& text) {
    const GLibText valid(g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())));
    return valid.get();
}

}  // namespace reelvane
