// Robot::loadFromUrdfFile and Robot::loadFromUrdfString: the description is
// checked with tinyxml2 first (clear messages with line numbers), then parsed
// by urdfdom, then turned into a Robot. Nothing is thrown out of here.
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include <ku/log.h>

#include "robot_builder.h"
#include "urdf_model_parser.h"
#include "urdf_outline.h"
#include "world_model/robot.h"

namespace fs = std::filesystem;

namespace VX::NextGenView {
namespace {

RobotLoadResult failure(const std::string& source, const std::string& error) {
  const std::string message = source.empty() ? error : source + ": " + error;
  ku::log::LogStream(ku::log::Error, "loadRobot", "world.model", __FILE__, __LINE__)
      << "Cannot load the robot: " << message << std::endl;
  return RobotLoadResult{nullptr, message};
}

// source names the file in messages; empty for a description given as text.
RobotLoadResult loadDescription(const std::string& xml, const std::string& baseFolder, const std::string& source) {
  try {
    UrdfOutline outline;
    std::string error = readUrdfOutline(xml, outline);
    if (!error.empty()) return failure(source, error);
    const urdf::ModelInterfaceSharedPtr model = parseUrdfModel(xml, error);
    if (!model) return failure(source, error);
    RobotLoadResult result = RobotBuilder::build(outline, *model, baseFolder);
    if (!result.robot) return failure(source, result.error);
    return result;
  } catch (const std::exception& exception) {
    return failure(source, std::string("unexpected failure: ") + exception.what());
  } catch (...) {
    return failure(source, "unexpected failure");
  }
}

}  // namespace

RobotLoadResult Robot::loadFromUrdfString(const std::string& xml, const std::string& baseFolder) {
  return loadDescription(xml, baseFolder, std::string());
}

RobotLoadResult Robot::loadFromUrdfFile(const std::string& path) {
  try {
    if (path.empty()) return failure(path, "no robot description file given");
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (error || !fs::exists(status)) return failure(path, "the file does not exist");
    if (fs::is_directory(status)) return failure(path, "this is a folder, not a robot description file");
    std::ifstream file(path, std::ios::binary);
    if (!file) return failure(path, "the file cannot be opened");
    const std::string content{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (file.bad()) return failure(path, "the file cannot be read");
    const fs::path folder = fs::absolute(fs::path(path), error).parent_path();
    return loadDescription(content, error ? fs::path(path).parent_path().string() : folder.string(), path);
  } catch (const std::exception& exception) {
    return failure(path, std::string("unexpected failure: ") + exception.what());
  } catch (...) {
    return failure(path, "unexpected failure");
  }
}

}  // namespace VX::NextGenView
