#include "ui/port_translator.h"

#include "ui/qt_text.h"

namespace reelvane {

QString PortTranslator::translate(const char* /*context*/, const char* sourceText,
                                  const char* /*disambiguation*/, int /*n*/) const {
    const auto translated = translations_.localized(sourceText);
    // No text tells Qt to ask the next translator, which may know Qt's own texts.
    return translated == sourceText ? QString() : toQString(translated);
}

}  // namespace reelvane
