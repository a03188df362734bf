#pragma once
// The check mode: loads a robot description and every mesh it names, as the
// scene view would, without a display, and says what could not be shown.
#include <ostream>
#include <string>
#include <vector>

class RobotCheck {
 public:
  enum ExitStatus { Showable = 0, GeometryMissing = 1, NotLoaded = 2 };

  // One summary line, then one line per problem.
  static int run(const std::string& urdfFile, std::ostream& out);
};
