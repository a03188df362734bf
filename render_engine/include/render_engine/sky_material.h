#pragma once

#include <string>

namespace VX::NextGenView {

// The material "sky" computes its gradient with GLSL programs. On a render
// system that cannot run them, the six faces generated at build time
// ("sky_faces") are copied into "sky", so that the sky box keeps its
// material's name. Only the technique that is drawn is loaded: where GLSL
// runs, the faces' textures never take memory. Needs the resources
// initialised. Returns false, with an error record, when the sky cannot be
// drawn at all.
bool prepareSkyMaterial(const std::string& group);

}  // namespace VX::NextGenView
