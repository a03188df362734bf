// How mesh files look in a rendered picture: image textures of OBJ and
// COLLADA files, vertex colours, the description's texture on a mesh with
// texture coordinates, a zero-opacity material drawn opaque, and a missing
// texture falling back to the material's colour with a warning.
#include <gtest/gtest.h>

#include <OgreEntity.h>

#include <scene_view/link_3d_view.h>

#include "looks_fixture.h"

namespace VX::NextGenView {
namespace {

using testing::sameColour;

const Ogre::ColourValue a_red(1, 0, 0);
const Ogre::ColourValue a_green(0, 1, 0);
const Ogre::ColourValue a_blue(0, 0, 1);
const Ogre::ColourValue a_yellow(1, 1, 0);

class MeshLooks : public testing::LooksFixture {
 protected:
  void SetUp() override {
    LooksFixture::SetUp();
    show("looks.urdf", 0.075f);
    picture = render("mesh_looks.png");
  }
  Ogre::Image picture;
};

// Each square spans 10 cm around its link's y; these points lie a quarter in from either side.
TEST_F(MeshLooks, ObjImageTextureShowsBothHalves) {
  EXPECT_TRUE(sameColour(at(picture, -0.325f, 0.0f), a_red));
  EXPECT_TRUE(sameColour(at(picture, -0.275f, 0.0f), a_green));
}

TEST_F(MeshLooks, ColladaImageTextureShowsBothHalves) {
  EXPECT_TRUE(sameColour(at(picture, -0.175f, 0.02f), a_blue));
  EXPECT_TRUE(sameColour(at(picture, -0.125f, -0.02f), a_yellow));
}

TEST_F(MeshLooks, VertexColoursAreShown) {
  // The colours blend across the square: near each side, that side's colour.
  EXPECT_TRUE(sameColour(at(picture, -0.045f, 0.0f), a_red, 0.15f));
  EXPECT_TRUE(sameColour(at(picture, 0.045f, 0.0f), a_blue, 0.15f));
}

TEST_F(MeshLooks, TheDescriptionsTextureCoversAMeshWithoutOne) {
  EXPECT_TRUE(sameColour(at(picture, 0.125f, 0.0f), a_red));
  EXPECT_TRUE(sameColour(at(picture, 0.175f, 0.0f), a_green));
}

TEST_F(MeshLooks, ZeroOpacityIsDrawnOpaqueWithAWarning) {
  EXPECT_TRUE(sameColour(at(picture, 0.3f, 0.0f), Ogre::ColourValue(1, 0, 1)));
  // Over a white background too: nothing of it shows through.
  const Ogre::Image onWhite = render("mesh_looks_on_white.png", Ogre::ColourValue::White);
  EXPECT_TRUE(sameColour(at(onWhite, 0.3f, 0.0f), Ogre::ColourValue(1, 0, 1)));
  EXPECT_EQ(warningsContaining("zero_opacity_quad.dae has opacity 0; it is drawn opaque"), 1);
}

TEST_F(MeshLooks, AMissingTextureLeavesTheMaterialColourAndAWarning) {
  EXPECT_TRUE(sameColour(at(picture, 0.45f, 0.0f), Ogre::ColourValue(0.2f, 0.3f, 0.9f)));
  EXPECT_EQ(warningsContaining("texture file not found: " + testing::looksData("no_such_texture.png")), 1);
}

TEST_F(MeshLooks, TheBackgroundShowsBetweenTheSquares) {
  EXPECT_TRUE(sameColour(at(picture, -0.225f, 0.0f), Ogre::ColourValue::Black));
  EXPECT_TRUE(sameColour(at(picture, 0.0f, 0.15f), Ogre::ColourValue::Black));
}

}  // namespace
}  // namespace VX::NextGenView
