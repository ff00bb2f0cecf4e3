#pragma once

#include "support/ports/translations.h"

namespace reelvane {

/// The texts as they stand, in English: for what scripts read. Any thread.
class Untranslated final : public Translations {
public:
    [[nodiscard]] std::string localized(std::string_view text) const override {
        return std::string(text);
    }
};

/// One for all: it holds nothing.
inline const Untranslated kUntranslated{};

}  // namespace reelvane
