#include "fiohost/view/action_state.h"

namespace fiohost::view {

bool isEnabled(Action action, const ViewerState& state) {
  switch (action) {
    case Action::open:
    case Action::leave:
    case Action::filmStrip:
      return true;
    case Action::reload:
      return state.hasNamed;
    case Action::saveAs:
      return state.hasFile && !state.isSaving;
    case Action::stop:
      return state.isWorking;
    case Action::nextFile:
    case Action::lastFile:
      return state.hasNextFile;
    case Action::previousFile:
    case Action::firstFile:
      return state.hasPreviousFile;
    case Action::nextImage:
      return state.hasNextImage;
    case Action::previousImage:
      return state.hasPreviousImage;
    case Action::stereoOff:
    case Action::anaglyph:
    case Action::sideBySide:
    case Action::crossEyed:
    case Action::wiggle:
      return state.hasPair;
    case Action::moreParallax:
    case Action::lessParallax:
    case Action::noParallax:
      return state.hasPair && state.stereo != StereoMode::off;
    default:
      return state.hasFile;
  }
}

bool isChecked(Action action, const ViewerState& state) {
  switch (action) {
    case Action::fit:
      return state.fitted;
    case Action::actualSize:
      return state.actualSize;
    case Action::filmStrip:
      return state.filmStrip;
    case Action::stereoOff:
    case Action::anaglyph:
    case Action::sideBySide:
    case Action::crossEyed:
    case Action::wiggle:
      return state.hasPair && state.stereo == stereoModeOf(action);
    default:
      return false;
  }
}

StereoMode stereoModeOf(Action action) {
  return static_cast<StereoMode>(static_cast<int>(action) - static_cast<int>(Action::stereoOff));
}

}  // namespace fiohost::view
