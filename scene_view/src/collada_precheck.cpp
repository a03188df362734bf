#include "collada_precheck.h"

#include <algorithm>
#include <cctype>

namespace VX::NextGenView {
namespace {

bool containsNoCase(const std::string& text, const std::string& word) {
  const auto found = std::search(text.begin(), text.end(), word.begin(), word.end(), [](char a, char b) {
    return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
  });
  return found != text.end();
}

// The count as Assimp reads it: leading blanks skipped, then decimal digits.
unsigned long long countOf(const std::string& tag) {
  std::size_t at = tag.find("count");
  while (at != std::string::npos && at > 0 && !std::isspace(static_cast<unsigned char>(tag[at - 1]))) {
    at = tag.find("count", at + 1);
  }
  if (at == std::string::npos) return 0;
  at = tag.find_first_of("\"'", at);
  if (at == std::string::npos) return 0;
  ++at;
  while (at < tag.size() && std::isspace(static_cast<unsigned char>(tag[at]))) ++at;
  unsigned long long value = 0;
  while (at < tag.size() && std::isdigit(static_cast<unsigned char>(tag[at])) && value < 1000000000ull) {
    value = value * 10 + static_cast<unsigned long long>(tag[at++] - '0');
  }
  return value;
}

// Assimp reads an index list (<p>) by skipping blanks and reading numbers: any
// other character stops it in place, and it then appends zeros until memory runs out.
std::string indexListHazard(const std::string& text) {
  for (std::size_t at = text.find("<p"); at != std::string::npos; at = text.find("<p", at + 2)) {
    const std::size_t end = at + 2;
    if (end >= text.size() || (text[end] != '>' && !std::isspace(static_cast<unsigned char>(text[end])))) continue;
    const std::size_t open = text.find('>', end);
    if (open == std::string::npos) break;
    if (text[open - 1] == '/') continue;  // <p/>: no indices
    for (std::size_t i = open + 1; i < text.size() && text[i] != '<'; ++i) {
      const char c = text[i];
      if (c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '+' || c == '-' ||
          std::isdigit(static_cast<unsigned char>(c))) {
        continue;
      }
      return "a COLLADA index list (<p>) holds the character " + std::to_string(static_cast<unsigned char>(c)) +
             ", not a number; Assimp cannot read it safely";
    }
  }
  return {};
}

bool hasIndexList(const std::string& text, std::size_t from, std::size_t to) {
  for (std::size_t at = text.find("<p", from); at != std::string::npos && at < to; at = text.find("<p", at + 2)) {
    if (at + 2 < text.size() && (text[at + 2] == '>' || std::isspace(static_cast<unsigned char>(text[at + 2])))) {
      return true;
    }
  }
  return false;
}

// Assimp aborts the process on a primitive that announces primitives (a count
// above zero) but gives no index list.
std::string primitiveHazard(const std::string& text) {
  for (const std::string name : {"triangles", "polylist", "polygons", "trifans", "tristrips", "lines", "linestrips"}) {
    const std::string open = "<" + name;
    for (std::size_t at = text.find(open); at != std::string::npos; at = text.find(open, at + open.size())) {
      const std::size_t end = at + open.size();
      if (end >= text.size() || (text[end] != '>' && !std::isspace(static_cast<unsigned char>(text[end])))) continue;
      const std::size_t close = text.find('>', end);
      if (close == std::string::npos) break;
      if (countOf(text.substr(at, close - at)) == 0) continue;
      const bool empty = text[close - 1] == '/';
      const std::size_t finish = text.find("</" + name, close);
      if (empty || !hasIndexList(text, close, finish == std::string::npos ? text.size() : finish)) {
        return "a COLLADA <" + name + "> announces primitives but has no index list (<p>); Assimp cannot read it safely";
      }
    }
  }
  return {};
}

}  // namespace

std::string colladaHazard(const std::string& text) {
  if (!containsNoCase(text, "collada")) return {};
  for (const std::string& hazard : {indexListHazard(text), primitiveHazard(text)}) {
    if (!hazard.empty()) return hazard;
  }
  for (std::size_t at = text.find("_array"); at != std::string::npos; at = text.find("_array", at + 6)) {
    // Only opening tags: "<name_array" followed by a blank or the tag's end.
    const std::size_t open = text.rfind('<', at);
    if (open == std::string::npos || text.find_first_of("<> \t\r\n", open + 1) < at) continue;
    if (open + 1 < text.size() && text[open + 1] == '/') continue;
    const std::size_t close = text.find('>', at);
    if (close == std::string::npos) break;
    const std::string tag = text.substr(open, close - open);
    if (tag.size() > at - open + 6 && !std::isspace(static_cast<unsigned char>(tag[at - open + 6]))) continue;
    if (countOf(tag) == 0) {
      return "a COLLADA data array (" + tag.substr(0, 80) + ">) declares no values; Assimp cannot read it safely";
    }
  }
  return {};
}

}  // namespace VX::NextGenView
