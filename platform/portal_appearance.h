#pragma once

#include <functional>
#include <memory>

#include "platform/appearance_settings.h"
#include "platform/background_thread.h"
#include "support/observable.h"
#include "support/ports/desktop_appearance.h"
#include "support/ports/dispatcher.h"
#include "support/ports/system_log.h"

namespace reelvane {

/// What the settings portal (org.freedesktop.portal.Settings) says, as it changes. It is asked in
/// the background from the start on. Where there is none, GNOME's settings answer if their schema
/// is installed; until one of them does, and without a bus, GTK_THEME alone.
class PortalAppearance final : public DesktopAppearance {
public:
    PortalAppearance(SystemLog& log, Dispatcher& dispatcher);
    PortalAppearance(const PortalAppearance&) = delete;
    PortalAppearance& operator=(const PortalAppearance&) = delete;
    PortalAppearance(PortalAppearance&&) = delete;
    PortalAppearance& operator=(PortalAppearance&&) = delete;
    ~PortalAppearance() override;

    [[nodiscard]] bool prefersDark() const override;
    [[nodiscard]] bool reducedMotion() const override;
    [[nodiscard]] Subscription observe(std::function<void()> changed) override;

private:
    class Settings;
    std::shared_ptr<Observable<Appearance>> shown_;  // news on its way holds it weakly
    std::shared_ptr<Settings> settings_;  // used by the thread alone, which may be left behind
    BackgroundThread thread_;
};

}  // namespace reelvane
