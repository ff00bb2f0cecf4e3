#pragma once

#include <string>

namespace reelvane {

class Vantor;

/// The links that a menu offers. Stored nowhere, but menus and interface files name the numbers.
enum URLChoice : int {
    SupportRequestURL = 1,    ///< a mail to the support
    BetaTestURL = 2,          ///< a request for beta versions
    ProductPageURL = 3,       ///< the product's web page
    StorePageURL = 4,         ///< its page in the store, in a web browser
    StoreApplicationURL = 5,  ///< the same in the store application
    MacupdatePageURL = 6      ///< its page in a software directory
};

/// The link of choices 2 to 6, not yet percent-encoded; empty for other choices and where the
/// information file names no page.
[[nodiscard]] std::string linkForChoice(const Vantor& vantor, int choice);

/// Opens one of the links with the user's program for it. Main thread only.
void openURL(Vantor& vantor, int choice);

}  // namespace reelvane
