#pragma once

#include <vector>

#include "robot_joint_model.h"
#include "urdf_annotations.h"

namespace VX::NextGenView {

// Makes twins of the joint controllers on either side of the robot: the
// annotated pairs, then the pairs named alike but for a side marker
// (LShoulderPitch and RShoulderPitch; l_, left_, Left prefixes; _l, _left
// suffixes). Each twin points at the other.
//
// A twin is reversed when a mirrored motion needs opposite joint values. The
// robot faces +X with +Y on its left, so mirroring goes through the X-Z
// plane; an axis of rotation is a pseudo-vector, so the mirror image of the
// axis a is (-ax, ay, -az). Axes are compared in the root link's frame with
// every joint at zero: a twin whose axis is that image is not reversed, one
// whose axis is its opposite is reversed, anything else is logged and taken
// as not reversed.
void pairMirrorJoints(const std::vector<Robot::JointModel>& joints, const std::vector<MirrorAnnotation>& annotated);

}  // namespace VX::NextGenView
