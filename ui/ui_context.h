#pragma once

namespace reelvane {

class AppDelegate;
class DesktopAppearance;
class Icons;
class Vantor;

/// What the views of the window are made with. All of it outlives them.
struct UiContext {
    Vantor& vantor;
    AppDelegate& controller;
    const Icons& icons;
    DesktopAppearance& appearance;
};

}  // namespace reelvane
