#pragma once
// Window and GUI sizes. The GUI has as many of its own pixels as fit the window at a scale in half steps, so that texts and pictures stay
// crisp: at 1280 x 720 the scale is 1, at 2560 x 1440 it is 2, never less than 704 x 396 GUI pixels.
#include "toolkit/names.h"

namespace game {

// The one manager: window_width, window_height, gui_width, gui_height, scale; and the methods
//   update()             once a step: follows the window
//   setScale(scale)      a scale of one's own; 0 for the automatic one
//   setFullscreen(on), toggleFullscreen(), isFullscreen(), setWindowSize(width, height)
//   fitRoom()            the first view shows the whole room in its middle, undistorted in any window; for rooms without a camera
//   guiRectangle()       {x, y, width, height} of the GUI in window pixels
extern const Script<Value()> getTarnResolutionManager;
inline const Variable fitRoom{"fitRoom"};

}  // namespace game
