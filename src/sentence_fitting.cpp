#include "sentence_fitting.h"

#include "render_widget.h"

namespace VX::NextGenView {
namespace {

float pixelsPerCharacter(std::size_t length, int width) {
  return static_cast<float>(static_cast<unsigned int>(width) / static_cast<unsigned int>(length));
}

}  // namespace

float sentenceCharacterHeight(std::size_t length, int width) {
  return pixelsPerCharacter(length, width) >= RenderWidget::a_bigCharSize ? 32.0f : 16.0f;
}

std::string shortenedSentence(const std::string& sentence, int width) {
  if (pixelsPerCharacter(sentence.size(), width) >= RenderWidget::a_smallCharSize) return sentence;

  const std::size_t limit = static_cast<std::size_t>(static_cast<int>(width / RenderWidget::a_smallCharSize) - 5);
  if (limit <= 3) return sentence;

  std::string cut = sentence;
  cut.resize(limit);  // throws std::length_error when the limit wrapped around
  const std::size_t lastSpace = cut.rfind(' ');
  if (lastSpace == std::string::npos) return "...";
  cut.resize(lastSpace);
  return cut + "...";
}

}  // namespace VX::NextGenView
