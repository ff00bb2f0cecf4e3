#include "support/bounded_text.h"

#include "support/make_string.h"

namespace reelvane {

void BoundedText::append(std::string_view text) {
    text_.append(text);
    // Seldom, so that a long text of short pieces is not moved with each of them.
    if (text_.size() - markLength_ <= 4 * part_) return;
    const auto middle = text_.size() - 2 * part_;
    omitted_ += middle - markLength_;
    const auto mark = makeString("\n[%lu bytes were left out here]\n", omitted_);
    text_.replace(part_, middle, mark);
    markLength_ = mark.size();
}

}  // namespace reelvane
