// The picker's geometry: meshes flattened to world-space triangles, and the
// angle a cursor sweeps around a joint axis while dragging.
#include "selection.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "support/pick_scene.h"

using testing_support::buildMesh;
using testing_support::lShape;
using testing_support::MeshPart;
using testing_support::PickScene;
using testing_support::square;

namespace {

// What getMeshInformation hands back, released with delete[].
struct Flattened {
  ~Flattened() {
    delete[] vertices;
    delete[] indices;
  }
  unsigned int vertexCount = 0;
  unsigned int indexCount = 0;
  Ogre::Vector3* vertices = nullptr;
  unsigned long* indices = nullptr;
  std::vector<unsigned long> indexList() const { return {indices, indices + indexCount}; }
};

using MeshInformation = PickScene;

void flatten(VX::NextGenView::Selection& selection, const Ogre::MeshPtr& mesh, Flattened& out,
             const Ogre::Vector3& position = Ogre::Vector3::ZERO,
             const Ogre::Quaternion& orientation = Ogre::Quaternion::IDENTITY,
             const Ogre::Vector3& scale = Ogre::Vector3::UNIT_SCALE) {
  selection.getMeshInformation(mesh, out.vertexCount, out.vertices, out.indexCount, out.indices, position,
                               orientation, scale);
}

TEST_F(MeshInformation, VerticesAreScaledThenTurnedThenMoved) {
  Flattened flat;
  const Ogre::Quaternion quarterTurn(Ogre::Degree(90), Ogre::Vector3::UNIT_Z);
  flatten(*selection, buildMesh("square", {square(1.0f, 0.5f)}), flat, Ogre::Vector3(10, 20, 30), quarterTurn,
          Ogre::Vector3(2, 3, 4));
  ASSERT_EQ(flat.vertexCount, 4u);
  const MeshPart part = square(1.0f, 0.5f);
  for (unsigned i = 0; i < 4; ++i) {
    const Ogre::Vector3 expected = quarterTurn * (part.vertices[i] * Ogre::Vector3(2, 3, 4)) + Ogre::Vector3(10, 20, 30);
    EXPECT_TRUE(flat.vertices[i].positionEquals(expected, 1e-4f)) << i << ": " << flat.vertices[i];
  }
  EXPECT_TRUE(flat.vertices[0].positionEquals(Ogre::Vector3(13, 18, 32), 1e-4f)) << flat.vertices[0];
  EXPECT_EQ(flat.indexList(), (std::vector<unsigned long>{0, 1, 2, 0, 2, 3}));
}

TEST_F(MeshInformation, ThirtyTwoBitIndicesAboveSixteenBitsAreReadWhole) {
  Flattened flat;
  flatten(*selection, buildMesh("wide", {lShape(true, 70000)}), flat);
  EXPECT_EQ(flat.vertexCount, 70007u);
  EXPECT_EQ(flat.indexList(), (std::vector<unsigned long>{70000, 70001, 70002, 70000, 70002, 70006, 70006, 70003,
                                                          70004, 70006, 70004, 70005}));
  EXPECT_EQ(flat.vertices[70004], Ogre::Vector3(0, 1, 0));
}

TEST_F(MeshInformation, SharedVerticesAreCopiedOnceAndIndexedFromTheirBlock) {
  const std::vector<Ogre::Vector3> shared = {{0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};
  MeshPart before;
  before.vertices = {{5, 0, 0}, {6, 0, 0}, {6, 1, 0}};
  before.indices = {0, 1, 2};
  MeshPart sharedA;
  sharedA.indices = {0, 1, 2};
  MeshPart sharedB;
  sharedB.indices = {1, 2, 3};
  sharedB.wide = true;
  MeshPart after;
  after.vertices = {{7, 0, 0}, {8, 0, 0}, {8, 1, 0}};
  after.indices = {2, 1, 0};
  Flattened flat;
  flatten(*selection, buildMesh("shared", {before, sharedA, sharedB, after}, shared), flat, Ogre::Vector3(0, 0, 10));

  ASSERT_EQ(flat.vertexCount, 10u) << "the shared block once, each own block once";
  const std::vector<Ogre::Vector3> expected = {{5, 0, 10}, {6, 0, 10}, {6, 1, 10}, {0, 0, 11}, {1, 0, 11},
                                               {1, 1, 11}, {0, 1, 11}, {7, 0, 10}, {8, 0, 10}, {8, 1, 10}};
  for (unsigned i = 0; i < 10; ++i) EXPECT_EQ(flat.vertices[i], expected[i]) << i;
  EXPECT_EQ(flat.indexList(), (std::vector<unsigned long>{0, 1, 2, 3, 4, 5, 4, 5, 6, 9, 8, 7}));
}

TEST_F(MeshInformation, TrailingPartialTrianglesAreDropped) {
  MeshPart seven = square(1.0f);
  seven.indices.push_back(1);
  MeshPart five;
  five.vertices = {{3, 0, 0}, {4, 0, 0}, {4, 1, 0}};
  five.indices = {0, 1, 2, 2, 1};
  five.wide = true;
  MeshPart two;
  two.vertices = {{9, 9, 9}, {9, 8, 9}};
  two.indices = {0, 1};
  Flattened flat;
  flatten(*selection, buildMesh("partial", {seven, five, two}), flat);
  EXPECT_EQ(flat.vertexCount, 9u);
  EXPECT_EQ(flat.indexCount, 9u) << "whole triangles only";
  EXPECT_EQ(flat.indexList(), (std::vector<unsigned long>{0, 1, 2, 0, 2, 3, 4, 5, 6}));
}

// ---- moveAngle ---------------------------------------------------------------
// The rotation axis is +Z through the origin; the camera looks straight at the
// point the cursor should reach, so the centre pixel's ray passes through it.

using MoveAngle = PickScene;
constexpr int a_centreX = 160;
constexpr int a_centreY = 120;
const Ogre::Plane a_rotationPlane(Ogre::Vector3::UNIT_Z, Ogre::Vector3::ZERO);
const float a_fifthOfPi = Ogre::Math::PI * 0.2f;

TEST_F(MoveAngle, ChordAsLongAsTheRadiusTurnsAFifthOfPiCounterClockwisePositive) {
  *selection->pickPoint = Ogre::Vector3(0, 1, 0);
  *selection->dragPoint = Ogre::Vector3(0, 1, 0);
  // The grab plane is y = 1; (-1, 1, 0.5) projects to (-1, 1, 0): a chord of 1.
  lookFrom(Ogre::Vector3(-1, 5, 3), Ogre::Vector3(-1, 1, 0.5f));
  float angle = 0;
  ASSERT_TRUE(selection->moveAngle(angle, a_centreX, a_centreY, &surface, a_rotationPlane, Ogre::Vector3::UNIT_Z,
                                   Ogre::Vector3::ZERO));
  EXPECT_NEAR(angle, a_fifthOfPi, 1e-4f);
  EXPECT_TRUE(selection->dragPoint->positionEquals(Ogre::Vector3(-1, 1, 0.5f), 1e-4f)) << *selection->dragPoint;
  EXPECT_EQ(*selection->pickPoint, Ogre::Vector3(0, 1, 0)) << "the grab point stays";

  // Back the other way: clockwise, negative; the chord now runs from the new drag point.
  lookFrom(Ogre::Vector3(0, 5, 3), Ogre::Vector3(0, 1, -0.5f));
  ASSERT_TRUE(selection->moveAngle(angle, a_centreX, a_centreY, &surface, a_rotationPlane, Ogre::Vector3::UNIT_Z,
                                   Ogre::Vector3::ZERO));
  EXPECT_NEAR(angle, -a_fifthOfPi, 1e-4f);
}

TEST_F(MoveAngle, ClockwiseAboutTheAxisIsNegative) {
  *selection->pickPoint = Ogre::Vector3(0, 1, 0);
  *selection->dragPoint = Ogre::Vector3(0, 1, 0);
  lookFrom(Ogre::Vector3(1, 5, 3), Ogre::Vector3(1, 1, 0.5f));
  float angle = 0;
  ASSERT_TRUE(selection->moveAngle(angle, a_centreX, a_centreY, &surface, a_rotationPlane, Ogre::Vector3::UNIT_Z,
                                   Ogre::Vector3::ZERO));
  EXPECT_NEAR(angle, -a_fifthOfPi, 1e-4f);
  // The same motion about the opposite axis is counter-clockwise.
  *selection->dragPoint = Ogre::Vector3(0, 1, 0);
  ASSERT_TRUE(selection->moveAngle(angle, a_centreX, a_centreY, &surface, a_rotationPlane, -Ogre::Vector3::UNIT_Z,
                                   Ogre::Vector3::ZERO));
  EXPECT_NEAR(angle, a_fifthOfPi, 1e-4f);
}

TEST_F(MoveAngle, RadiusComesFromTheGrabPointChordFromTheDragPoint) {
  *selection->pickPoint = Ogre::Vector3(0, 2, 0);    // radius 2, grab plane y = 2
  *selection->dragPoint = Ogre::Vector3(0.5f, 2, 0);  // the cursor already moved
  lookFrom(Ogre::Vector3(-1.5f, 6, 2), Ogre::Vector3(-1.5f, 2, 1));
  float angle = 0;
  ASSERT_TRUE(selection->moveAngle(angle, a_centreX, a_centreY, &surface, a_rotationPlane, Ogre::Vector3::UNIT_Z,
                                   Ogre::Vector3::ZERO));
  // Chord |(-1.5, 2) - (0.5, 2)| = 2 over radius 2.
  EXPECT_NEAR(angle, a_fifthOfPi, 1e-4f);
}

TEST_F(MoveAngle, RayMissingTheGrabPlaneLeavesAngleAndDragPointAlone) {
  *selection->pickPoint = Ogre::Vector3(0, 1, 0);
  const Ogre::Vector3 dragPoint(0.25f, 1, 0);
  *selection->dragPoint = dragPoint;
  float angle = 0.125f;

  // The plane y = 1 lies behind a camera at y = 5 looking toward +Y.
  lookFrom(Ogre::Vector3(0, 5, 0), Ogre::Vector3(0, 10, 0));
  EXPECT_FALSE(selection->moveAngle(angle, a_centreX, a_centreY, &surface, a_rotationPlane, Ogre::Vector3::UNIT_Z,
                                    Ogre::Vector3::ZERO));
  EXPECT_EQ(angle, 0.125f);
  EXPECT_EQ(*selection->dragPoint, dragPoint);

  // A ray parallel to the plane (to within OGRE's tolerance): straight down
  // -Z from above the origin.
  lookFrom(Ogre::Vector3(0, 0, 10), Ogre::Vector3(0, 0, 0));
  ASSERT_LT(std::fabs(rayAt(a_centreX, a_centreY).getDirection().y), std::numeric_limits<float>::epsilon());
  EXPECT_FALSE(selection->moveAngle(angle, a_centreX, a_centreY, &surface, a_rotationPlane, Ogre::Vector3::UNIT_Z,
                                    Ogre::Vector3::ZERO));
  EXPECT_EQ(angle, 0.125f);
  EXPECT_EQ(*selection->dragPoint, dragPoint);
}

TEST_F(MoveAngle, ZeroTripleProductGivesNotANumber) {
  *selection->pickPoint = Ogre::Vector3(0, 1, 0);
  *selection->dragPoint = Ogre::Vector3::ZERO;  // on the axis: no direction to turn from
  lookFrom(Ogre::Vector3(-1, 5, 3), Ogre::Vector3(-1, 1, 0.5f));
  float angle = 0;
  EXPECT_TRUE(selection->moveAngle(angle, a_centreX, a_centreY, &surface, a_rotationPlane, Ogre::Vector3::UNIT_Z,
                                   Ogre::Vector3::ZERO));
  EXPECT_TRUE(std::isnan(angle)) << angle;
  EXPECT_TRUE(selection->dragPoint->positionEquals(Ogre::Vector3(-1, 1, 0.5f), 1e-4f));
}

TEST_F(MoveAngle, TheCursorIsProjectedOntoTheRotationPlane) {
  // The same chord whatever the cursor's height above the rotation plane.
  *selection->pickPoint = Ogre::Vector3(0, 1, 0);
  for (float height : {-3.0f, 0.0f, 2.0f}) {
    *selection->dragPoint = Ogre::Vector3(0, 1, 5);
    lookFrom(Ogre::Vector3(-1, 5, height + 1), Ogre::Vector3(-1, 1, height));
    float angle = 0;
    ASSERT_TRUE(selection->moveAngle(angle, a_centreX, a_centreY, &surface, a_rotationPlane, Ogre::Vector3::UNIT_Z,
                                     Ogre::Vector3::ZERO));
    EXPECT_NEAR(angle, a_fifthOfPi, 1e-4f) << height;
  }
}

}  // namespace
