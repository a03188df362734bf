#pragma once
// Whether the viewer starts with the 3D view or the 2D picture, and why.
#include <QString>

class ViewerOptions;

class ViewModeChoice {
 public:
  // --2d and --3d decide; otherwise the 3D view, unless the last 3D start-up
  // did not finish (see StartupMarker).
  static ViewModeChoice choose(const ViewerOptions& options);

  bool use3DView = true;
  QString reason;  // set when the 2D view replaces the 3D view the user did not refuse
};
