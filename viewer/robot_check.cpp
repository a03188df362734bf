#include "robot_check.h"

#include <map>
#include <utility>

#include <ku/log.h>
#include <ku/record_capture.h>
#include <scene_view/visual_inspection.h>
#include <world_model/robot.h>

using VX::NextGenView::JointDescription;
using VX::NextGenView::Link;
using VX::NextGenView::Robot;
using VX::NextGenView::RobotLoadResult;
using VX::NextGenView::Visual;
using VX::NextGenView::VisualInspection;

namespace {

const char* const a_jointTypes[] = {"revolute", "continuous", "prismatic", "fixed", "floating", "planar"};

std::string plural(std::size_t count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

// A record's text on one line.
std::string oneLine(std::string text) {
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
  for (char& c : text) {
    if (c == '\n') c = ' ';
  }
  return text;
}

}  // namespace

int RobotCheck::run(const std::string& urdfFile, std::ostream& out) {
  std::vector<std::string> problems;
  RobotLoadResult loaded;
  {
    // The loader's warnings (joints held fixed, mimics of unknown joints...) are problems too.
    ku::log::RecordCapture records;
    loaded = Robot::loadFromUrdfFile(urdfFile);
    for (const ku::log::Record& record : records.records()) {
      if (record.level <= ku::log::Warning && record.category == "world.model") problems.push_back(oneLine(record.text));
    }
  }
  if (!loaded.robot) {
    out << urdfFile << ": cannot be loaded: " << loaded.error << std::endl;
    return NotLoaded;
  }
  const Robot& robot = *loaded.robot;

  std::size_t linksWithGeometry = 0;
  std::size_t triangles = 0;
  std::size_t meshesMissing = 0;
  bool geometryMissing = false;
  std::map<std::string, VisualInspection> meshFiles;  // a file shared by several visuals is read once
  for (const auto& link : robot.links()) {
    bool shown = false;
    int index = 0;
    for (const Visual& visual : link->visuals()) {
      VisualInspection inspection;
      if (visual.shape == Visual::Shape::Mesh && visual.meshFileFound) {
        auto known = meshFiles.find(visual.meshFile);
        if (known == meshFiles.end()) {
          known = meshFiles.emplace(visual.meshFile, VX::NextGenView::inspectVisual(visual)).first;
        }
        inspection = known->second;
      } else {
        inspection = VX::NextGenView::inspectVisual(visual);
      }
      if (inspection.error.empty()) {
        shown = true;
        triangles += inspection.triangles;
      } else {
        geometryMissing = true;
        if (visual.shape == Visual::Shape::Mesh) ++meshesMissing;
        problems.push_back("link " + link->name() + ", visual " + std::to_string(index) + ": " + inspection.error);
      }
      ++index;
    }
    if (shown) ++linksWithGeometry;
  }

  std::map<std::string, std::size_t> jointsByType;
  std::size_t mimics = 0;
  for (const JointDescription& joint : robot.joints()) {
    ++jointsByType[joint.type];
    if (joint.isMimic()) ++mimics;
  }
  out << "robot " << robot.name() << ": " << plural(robot.links().size(), "link") << ", " << linksWithGeometry
      << " with geometry; " << plural(robot.joints().size(), "joint") << " (";
  bool first = true;
  for (const char* type : a_jointTypes) {
    out << (first ? "" : ", ") << jointsByType[type] << " " << type;
    first = false;
  }
  out << "), " << mimics << " mimic; " << plural(triangles, "triangle") << "; "
      << meshesMissing << (meshesMissing == 1 ? " mesh" : " meshes") << " missing" << std::endl;
  for (const std::string& problem : problems) out << "problem: " << problem << std::endl;
  return geometryMissing ? GeometryMissing : Showable;
}
