#include "urdf_outline.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <sstream>

#include <tinyxml2.h>

namespace VX::NextGenView {
namespace {

using tinyxml2::XMLElement;

std::string lineOf(const XMLElement& element) { return "line " + std::to_string(element.GetLineNum()) + ": "; }

std::string attribute(const XMLElement* element, const char* name) {
  const char* value = element ? element->Attribute(name) : nullptr;
  return value ? std::string(value) : std::string();
}

bool isBlank(const std::string& text) {
  return std::all_of(text.begin(), text.end(), [](unsigned char c) { return std::isspace(c) != 0; });
}

std::string readLinks(const XMLElement& robot, UrdfOutline& outline) {
  std::set<std::string> names;
  for (const XMLElement* link = robot.FirstChildElement("link"); link; link = link->NextSiblingElement("link")) {
    const std::string name = attribute(link, "name");
    if (name.empty()) return lineOf(*link) + "a <link> has no name";
    if (!names.insert(name).second) return lineOf(*link) + "the link \"" + name + "\" is defined twice";
    outline.links.push_back(name);
  }
  if (outline.links.empty()) return "the robot \"" + outline.robotName + "\" has no link";
  return {};
}

// Floating and planar joints are accepted here and held fixed by the builder.
std::string checkJointType(const XMLElement& joint, const std::string& name, const std::string& type) {
  for (const char* known : {"revolute", "continuous", "prismatic", "fixed", "floating", "planar"}) {
    if (type == known) return {};
  }
  if (type.empty()) return lineOf(joint) + "the joint \"" + name + "\" has no type";
  return lineOf(joint) + "the joint \"" + name + "\" has the unknown type \"" + type + "\"";
}

std::string readJoints(const XMLElement& robot, UrdfOutline& outline) {
  const std::set<std::string> links(outline.links.begin(), outline.links.end());
  std::set<std::string> names;
  std::map<std::string, std::string> parentJointOfLink;
  for (const XMLElement* joint = robot.FirstChildElement("joint"); joint; joint = joint->NextSiblingElement("joint")) {
    UrdfJointOutline entry{attribute(joint, "name"), attribute(joint, "type"),
                           attribute(joint->FirstChildElement("parent"), "link"),
                           attribute(joint->FirstChildElement("child"), "link"), joint->GetLineNum()};
    if (entry.name.empty()) return lineOf(*joint) + "a <joint> has no name";
    if (!names.insert(entry.name).second) return lineOf(*joint) + "the joint \"" + entry.name + "\" is defined twice";
    const std::string typeError = checkJointType(*joint, entry.name, entry.type);
    if (!typeError.empty()) return typeError;
    for (const auto& [role, link] : {std::make_pair("parent", entry.parent), std::make_pair("child", entry.child)}) {
      if (link.empty()) return lineOf(*joint) + "the joint \"" + entry.name + "\" names no " + role + " link";
      if (!links.count(link)) {
        return lineOf(*joint) + "the joint \"" + entry.name + "\" names the unknown " + role + " link \"" + link + "\"";
      }
    }
    if (entry.parent == entry.child) {
      return lineOf(*joint) + "the joint \"" + entry.name + "\" joins the link \"" + entry.child + "\" to itself";
    }
    const auto [previous, inserted] = parentJointOfLink.emplace(entry.child, entry.name);
    if (!inserted) {
      return lineOf(*joint) + "the link \"" + entry.child + "\" is the child of both joints \"" + previous->second +
             "\" and \"" + entry.name + "\"";
    }
    outline.joints.push_back(entry);
  }
  return {};
}

// Exactly one link is nobody's child, and every link hangs from it.
std::string findRoot(UrdfOutline& outline) {
  std::set<std::string> children;
  for (const UrdfJointOutline& joint : outline.joints) children.insert(joint.child);
  std::vector<std::string> roots;
  for (const std::string& link : outline.links) {
    if (!children.count(link)) roots.push_back(link);
  }
  if (roots.empty()) return "the robot \"" + outline.robotName + "\" has no root link: every link is a joint's child";
  if (roots.size() > 1) {
    std::ostringstream list;
    for (std::size_t i = 0; i < roots.size(); ++i) list << (i ? ", " : "") << "\"" << roots[i] << "\"";
    return "the robot \"" + outline.robotName + "\" has several root links (" + list.str() +
           "); joints must connect them into one tree";
  }
  outline.rootLink = roots.front();

  std::set<std::string> reached{outline.rootLink};
  for (bool grew = true; grew;) {
    grew = false;
    for (const UrdfJointOutline& joint : outline.joints) {
      if (reached.count(joint.parent) && reached.insert(joint.child).second) grew = true;
    }
  }
  for (const std::string& link : outline.links) {
    if (!reached.count(link)) {
      return "the link \"" + link + "\" is not connected to the root link \"" + outline.rootLink + "\" (a loop of joints)";
    }
  }
  return {};
}

bool readColor(const XMLElement* material, Eigen::Vector4f& rgba) {
  std::istringstream values(attribute(material ? material->FirstChildElement("color") : nullptr, "rgba"));
  return static_cast<bool>(values >> rgba[0] >> rgba[1] >> rgba[2] >> rgba[3]);
}

void addMaterial(const XMLElement* material, UrdfOutline& outline) {
  Eigen::Vector4f rgba;
  const std::string name = attribute(material, "name");
  if (!name.empty() && readColor(material, rgba)) outline.materialColors.emplace(name, rgba);
  const std::string texture = attribute(material ? material->FirstChildElement("texture") : nullptr, "filename");
  if (!name.empty() && !texture.empty()) outline.materialTextures.emplace(name, texture);
}

// Robot-level materials first, so that they win over a link's redefinition.
void readMaterials(const XMLElement& robot, UrdfOutline& outline) {
  for (const XMLElement* material = robot.FirstChildElement("material"); material;
       material = material->NextSiblingElement("material")) {
    addMaterial(material, outline);
  }
  for (const XMLElement* link = robot.FirstChildElement("link"); link; link = link->NextSiblingElement("link")) {
    for (const XMLElement* visual = link->FirstChildElement("visual"); visual;
         visual = visual->NextSiblingElement("visual")) {
      addMaterial(visual->FirstChildElement("material"), outline);
    }
  }
}

std::string checkAnnotations(const UrdfOutline& outline) {
  const std::set<std::string> links(outline.links.begin(), outline.links.end());
  std::map<std::string, std::string> jointTypes;
  for (const UrdfJointOutline& joint : outline.joints) jointTypes[joint.name] = joint.type;
  for (const ChainAnnotation& chain : outline.annotations.chains) {
    if (!links.count(chain.rootLink)) {
      return "line " + std::to_string(chain.line) + ": the chain \"" + chain.name + "\" starts at the unknown link \"" +
             chain.rootLink + "\"";
    }
  }
  for (const MirrorAnnotation& mirror : outline.annotations.mirrors) {
    for (const std::string& name : {mirror.joint, mirror.twin}) {
      const auto type = jointTypes.find(name);
      const std::string prefix = "line " + std::to_string(mirror.line) + ": the <mirror> annotation names ";
      if (type == jointTypes.end()) return prefix + "the unknown joint \"" + name + "\"";
      if (type->second == "fixed" || type->second == "floating" || type->second == "planar") {
        return prefix + "the " + type->second + " joint \"" + name + "\", which does not move";
      }
    }
  }
  return {};
}

}  // namespace

std::string readUrdfOutline(const std::string& xml, UrdfOutline& outline) {
  outline = UrdfOutline();
  if (isBlank(xml)) return "the robot description is empty";

  tinyxml2::XMLDocument document;
  if (document.Parse(xml.data(), xml.size()) != tinyxml2::XML_SUCCESS) {
    // ErrorStr() ends with what tinyxml2 knows of the place, e.g. "XMLElement name=visual".
    const std::string details = document.ErrorStr() ? document.ErrorStr() : "";
    const std::string::size_type place = details.find(": ", details.find("Line number="));
    return "XML syntax error at line " + std::to_string(document.ErrorLineNum()) + ": " + document.ErrorName() +
           (place == std::string::npos ? std::string() : " (" + details.substr(place + 2) + ")");
  }
  const XMLElement* robot = document.RootElement();
  if (!robot || std::string(robot->Name()) != "robot") {
    return "the description's top element is <" + std::string(robot ? robot->Name() : "") + ">, not <robot>";
  }
  outline.robotName = attribute(robot, "name");
  if (outline.robotName.empty()) return lineOf(*robot) + "the <robot> element has no name";

  std::string error = readLinks(*robot, outline);
  if (error.empty()) error = readJoints(*robot, outline);
  if (error.empty()) error = findRoot(outline);
  if (error.empty()) error = readUrdfAnnotations(*robot, outline.annotations);
  if (error.empty()) error = checkAnnotations(outline);
  if (error.empty()) readMaterials(*robot, outline);
  return error;
}

}  // namespace VX::NextGenView
