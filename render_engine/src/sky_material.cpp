#include "render_engine/sky_material.h"

#include <exception>

#include <OgreMaterial.h>
#include <OgreMaterialManager.h>

#include <ku/log.h>

namespace VX::NextGenView {
namespace {

const char* const a_sky = "sky";
const char* const a_faces = "sky_faces";

void log(int level, const std::string& text) {
  ku::log::LogStream(level, "prepareSkyMaterial", "rdr.engine", __FILE__, __LINE__) << text << std::endl;
}

}  // namespace

bool prepareSkyMaterial(const std::string& group) {
  try {
    Ogre::MaterialManager& materials = Ogre::MaterialManager::getSingleton();
    Ogre::MaterialPtr sky = materials.getByName(a_sky, group);
    if (!sky) {
      log(ku::log::Error, std::string("No material \"") + a_sky + "\" in the resource group " + group);
      return false;
    }
    sky->load();
    if (!sky->getSupportedTechniques().empty()) return true;
    Ogre::MaterialPtr faces = materials.getByName(a_faces, group);
    if (!faces) {
      log(ku::log::Error, std::string("The render system cannot draw the material \"") + a_sky + "\", and there is no \"" +
                              a_faces + "\" to take its place");
      return false;
    }
    sky->unload();
    faces->copyDetailsTo(sky);
    sky->load();
    log(ku::log::Warning, std::string("The render system cannot run the sky's GLSL programs: the sky shows the "
                                      "generated faces of \"") + a_faces + "\"");
    return !sky->getSupportedTechniques().empty();
  } catch (const std::exception& exception) {
    log(ku::log::Error, std::string("Cannot prepare the sky material: ") + exception.what());
    return false;
  }
}

}  // namespace VX::NextGenView
