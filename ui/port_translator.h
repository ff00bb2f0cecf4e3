#pragma once

#include <QTranslator>

#include "support/ports/translations.h"

namespace reelvane {

/// Lets tr() ask the program's own catalogues, so that window and core share one. The context is
/// ignored. Main thread, and as long as the application object.
class PortTranslator final : public QTranslator {
public:
    explicit PortTranslator(const Translations& translations) : translations_(translations) {}

    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char* context, const char* sourceText,
                                    const char* disambiguation, int n) const override;

private:
    const Translations& translations_;
};

}  // namespace reelvane
