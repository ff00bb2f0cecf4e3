#pragma once

namespace reelvane {

/// Lets assistive programs see each job list as a list of the rows that are visible, each with its
/// buttons in it, as the program's users see it. Once per process is enough.
void describeJobLists();

}  // namespace reelvane
