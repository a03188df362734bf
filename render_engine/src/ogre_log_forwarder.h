#pragma once

#include <OgreLog.h>

namespace VX::NextGenView {

// Passes OGRE's critical log messages on as warning records (category
// "rdr.ogre"), so that they reach the host's log and not only OGRE's file.
class OgreLogForwarder : public Ogre::LogListener {
 public:
  void messageLogged(const Ogre::String& message, Ogre::LogMessageLevel level, bool maskDebug,
                     const Ogre::String& logName, bool& skipThisMessage) override;
};

}  // namespace VX::NextGenView
