#pragma once

#include "support/ports/desktop_appearance.h"
#include "tests/app/app_fixture.h"
#include "ui/ui_context.h"
#include "ui/widgets/icons.h"

namespace reelvane {

class FakeAppearance final : public DesktopAppearance {
public:
    [[nodiscard]] bool prefersDark() const override { return dark; }
    [[nodiscard]] bool reducedMotion() const override { return still; }
    [[nodiscard]] Subscription observe(std::function<void()> changed) override {
        return observers.add(std::move(changed));
    }

    bool dark = false;
    bool still = true;
    Observers<> observers;
};

/// The views on the real controller, which stands on fakes. Files are not queued by themselves.
class UiFixture : public AppFixture {
protected:
    UiFixture() { set(kAutoAdd.key, 0); }

    UiContext context() {
        if (!app_) launch();
        return {.vantor = platform_.vantor,
                .controller = *app_,
                .icons = icons_,
                .appearance = appearance_};
    }

    Icons icons_{fs::path(REELVANE_RESOURCES) / "icons"};
    FakeAppearance appearance_;
};

}  // namespace reelvane
