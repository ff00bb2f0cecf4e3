#pragma once

#include "support/ports/panels.h"

namespace reelvane {

/// Panels where nobody can choose: every one is cancelled at once.
class DecliningPanels final : public Panels {
public:
    void open(const OpenPanelRequest& /*request*/,
              std::function<void(std::vector<std::filesystem::path>)> answer) override {
        answer({});
    }
    void save(const SavePanelRequest& /*request*/,
              std::function<void(std::optional<std::filesystem::path>)> answer) override {
        answer(std::nullopt);
    }
};

}  // namespace reelvane
