// The picture window of a build that has none.
#include "fiohost/failure.h"
#include "fiohost/view/view_run.h"

namespace fiohost::view {

void runViewer(const Session&, const std::vector<std::string>&) {
  throw Failure("this build has no windows", "use the Windows build");
}

}  // namespace fiohost::view
