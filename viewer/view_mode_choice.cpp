#include "view_mode_choice.h"

#include "startup_marker.h"
#include "viewer_options.h"

ViewModeChoice ViewModeChoice::choose(const ViewerOptions& options) {
  ViewModeChoice choice;
  if (options.force2D) {
    choice.use3DView = false;
  } else if (!options.force3D && StartupMarker::lastStartFailed()) {
    choice.use3DView = false;
    choice.reason = QString(
                        "The last 3D start-up did not finish (%1=false in %2): showing the 2D view. "
                        "Start with --3d to try the 3D view again.")
                        .arg(StartupMarker::a_key, StartupMarker::settingsFile());
  }
  return choice;
}
