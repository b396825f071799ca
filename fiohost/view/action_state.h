// Which commands make sense at the moment, and which show that they are on.
#pragma once

#include "fiohost/view/actions.h"
#include "fiohost/view/stereo.h"

namespace fiohost::view {

struct ViewerState {
  bool hasFile = false;    // one that could be read
  bool hasNamed = false;   // any, even an unreadable one
  bool isWorking = false;  // decoding or saving
  bool isSaving = false;
  bool hasNextFile = false;
  bool hasPreviousFile = false;
  bool hasNextImage = false;
  bool hasPreviousImage = false;
  bool hasPair = false;
  bool fitted = false;
  bool actualSize = false;
  bool filmStrip = false;
  StereoMode stereo = StereoMode::off;  // as it is shown
};

[[nodiscard]] bool isEnabled(Action action, const ViewerState& state);
[[nodiscard]] bool isChecked(Action action, const ViewerState& state);

// The mode that one of the stereo commands chooses.
[[nodiscard]] StereoMode stereoModeOf(Action action);

}  // namespace fiohost::view
