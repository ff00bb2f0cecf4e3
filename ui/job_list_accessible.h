#pragma once

class QItemSelection;

namespace reelvane {

class JobListView;
class JobRow;

/// Lets assistive programs see the job list as a list of the rows that are visible, each with its
/// buttons in it, as the program's users see it. Once per process is enough.
void describeJobLists();

/// The keyboard has come to a row of the list.
void tellRowFocus(const JobListView& list);
/// What there is to say of a row has changed.
void tellRowChange(JobRow& row);
/// Rows have been selected or are so no longer.
void tellSelection(const JobListView& list, const QItemSelection& selected,
                   const QItemSelection& deselected);

}  // namespace reelvane
