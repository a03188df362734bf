#include "ogre_log_forwarder.h"

#include <ku/log.h>

namespace VX::NextGenView {

void OgreLogForwarder::messageLogged(const Ogre::String& message, Ogre::LogMessageLevel level,
                                     bool /*maskDebug*/, const Ogre::String& /*logName*/,
                                     bool& /*skipThisMessage*/) {
  if (level < Ogre::LML_CRITICAL) return;
  ku::log::LogStream(ku::log::Warning, "OGRE", "rdr.ogre", "", 0) << message << std::endl;
}

}  // namespace VX::NextGenView
