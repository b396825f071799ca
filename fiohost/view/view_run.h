// The picture window as the program starts it.
#pragma once

#include <string>
#include <vector>

#include "fiohost/session.h"

namespace fiohost::view {

// Shows the files, or an empty window for none, and returns when the window is closed. Throws
// Failure when no window can be opened.
void runViewer(const Session& session, const std::vector<std::string>& files);

}  // namespace fiohost::view
