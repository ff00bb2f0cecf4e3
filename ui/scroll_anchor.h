#pragma once

namespace reelvane {

/// Which row stands at the top of a list's view, and how much of it is scrolled away. It stays with
/// its row while others come and go above; a list that shows its beginning goes on doing so.
struct ScrollAnchor {
    int row = 0;
    int offset = 0;

    void rowsInserted(int first, int count) {
        if (!isAtBeginning() && first <= row) row += count;
    }
    void rowsRemoved(int first, int count) {
        if (first + count <= row) {
            row -= count;
        } else if (first < row) {
            row = first;
        }
    }

private:
    [[nodiscard]] bool isAtBeginning() const { return row == 0 && offset == 0; }
};

}  // namespace reelvane
