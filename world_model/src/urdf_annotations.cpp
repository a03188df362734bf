#include "urdf_annotations.h"

#include <cmath>

#include <tinyxml2.h>

namespace VX::NextGenView {
namespace {

std::string lineOf(const tinyxml2::XMLElement& element) {
  return "line " + std::to_string(element.GetLineNum()) + ": ";
}

std::string attribute(const tinyxml2::XMLElement& element, const char* name) {
  const char* value = element.Attribute(name);
  return value ? std::string(value) : std::string();
}

// An optional number; a present attribute that is not a finite number is an error.
std::string readNumber(const tinyxml2::XMLElement& element, const char* name, float& value) {
  if (!element.Attribute(name)) return {};
  float number = 0.0f;
  if (element.QueryFloatAttribute(name, &number) != tinyxml2::XML_SUCCESS || !std::isfinite(number)) {
    return lineOf(element) + "the <base> annotation's " + name + " \"" + attribute(element, name) +
           "\" is not a number";
  }
  value = number;
  return {};
}

std::string readChain(const tinyxml2::XMLElement& element, UrdfAnnotations& annotations) {
  ChainAnnotation chain{attribute(element, "name"), attribute(element, "root"), element.GetLineNum()};
  if (chain.name.empty() || chain.rootLink.empty()) {
    return lineOf(element) + "a <chain> annotation needs a name and a root link";
  }
  for (const ChainAnnotation& other : annotations.chains) {
    if (other.name == chain.name) return lineOf(element) + "the chain \"" + chain.name + "\" is defined twice";
    if (other.rootLink == chain.rootLink) {
      return lineOf(element) + "the chains \"" + other.name + "\" and \"" + chain.name + "\" start at the same link \"" +
             chain.rootLink + "\"";
    }
  }
  annotations.chains.push_back(chain);
  return {};
}

std::string readMirror(const tinyxml2::XMLElement& element, UrdfAnnotations& annotations) {
  MirrorAnnotation mirror{attribute(element, "joint"), attribute(element, "twin"), element.GetLineNum()};
  if (mirror.joint.empty() || mirror.twin.empty()) {
    return lineOf(element) + "a <mirror> annotation needs a joint and a twin";
  }
  if (mirror.joint == mirror.twin) {
    return lineOf(element) + "the joint \"" + mirror.joint + "\" cannot be its own twin";
  }
  for (const MirrorAnnotation& other : annotations.mirrors) {
    for (const std::string& name : {mirror.joint, mirror.twin}) {
      if (name == other.joint || name == other.twin) {
        return lineOf(element) + "the joint \"" + name + "\" already has a twin";
      }
    }
  }
  annotations.mirrors.push_back(mirror);
  return {};
}

std::string readBase(const tinyxml2::XMLElement& element, UrdfAnnotations& annotations) {
  annotations.baseGiven = true;
  for (const auto& [name, value] : {std::make_pair("x", &annotations.basePosition.x),
                                    std::make_pair("y", &annotations.basePosition.y),
                                    std::make_pair("z", &annotations.basePosition.z),
                                    std::make_pair("heading", &annotations.baseHeading)}) {
    const std::string error = readNumber(element, name, *value);
    if (!error.empty()) return error;
  }
  return {};
}

}  // namespace

std::string readUrdfAnnotations(const tinyxml2::XMLElement& robot, UrdfAnnotations& annotations) {
  annotations = UrdfAnnotations();
  for (const tinyxml2::XMLElement* element = robot.FirstChildElement(); element;
       element = element->NextSiblingElement()) {
    const std::string tag = element->Name();
    std::string error;
    if (tag == "chain") {
      error = readChain(*element, annotations);
    } else if (tag == "mirror") {
      error = readMirror(*element, annotations);
    } else if (tag == "base") {
      error = readBase(*element, annotations);
    }
    if (!error.empty()) return error;
  }
  return {};
}

}  // namespace VX::NextGenView
