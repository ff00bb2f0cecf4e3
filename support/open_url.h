#pragma once

#include <string>

namespace reelvane {

class Vantor;

/// The links that a menu offers. Stored nowhere, but menus and interface files name the numbers.
enum URLChoice : int {
    kSupportRequestURL = 1,    ///< a mail to the support
    kBetaTestURL = 2,          ///< a request for beta versions
    kProductPageURL = 3,       ///< the product's web page
    kStorePageURL = 4,         ///< its page in the store, in a web browser
    kStoreApplicationURL = 5,  ///< the same in the store application
    kMacupdatePageURL = 6      ///< its page in a software directory
};

/// The link of choices 2 to 6, not yet percent-encoded; empty for other choices and where the
/// information file names no page.
[[nodiscard]] std::string linkForChoice(const Vantor& vantor, int choice);

/// Opens one of the links with the user's program for it. Main thread only.
void openURL(Vantor& vantor, int choice);

}  // namespace reelvane
