#pragma once

#include <QProxyStyle>

namespace reelvane {

/// The program's style with plain outlines round check boxes and radio buttons: on a dark window
/// the style that Qt falls back on draws them darker still, and nobody sees an empty one. In high
/// contrast buttons and pop-up menus have them too.
class IndicatorStyle final : public QProxyStyle {
public:
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
};

}  // namespace reelvane
