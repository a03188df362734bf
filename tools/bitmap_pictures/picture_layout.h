#pragma once

namespace VX::NextGenView {

// Where the robot lands in the 2D view's pictures. The camera looks at the
// robot's front orthographically, so one metre is `pixelsPerMetre` pixels
// everywhere and the picture is a plain drawing of the robot: the 2D view's
// clickable rectangles are fixed in picture pixels and were fitted to it.
struct PictureLayout {
  int width = 800;
  int height = 1000;
  float pixelsPerMetre = 1450.0f;
  // The picture pixel where the robot's root link (the torso) appears.
  float torsoColumn = 404.0f;
  float torsoRow = 415.0f;
};

}  // namespace VX::NextGenView
