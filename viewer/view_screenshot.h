#pragma once
// Saves what a container shows: the 3D view's render window through the
// container, or a grab of the 2D picture view.
#include <QString>

namespace VX {
class WorldViewContainer;
}

class ViewScreenshot {
 public:
  // The file format follows the extension. False, with `error` saying why,
  // when no picture was written; never throws (OGRE does, on an unknown
  // extension or a folder it cannot write to).
  static bool save(VX::WorldViewContainer* container, const QString& fileName, bool backgroundHidden, QString* error);
};
