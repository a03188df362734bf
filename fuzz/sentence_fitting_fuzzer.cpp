// Fits arbitrary sentences into arbitrary widths: the shown text is the
// sentence, "...", or a prefix ending before a space followed by "..."; only
// widgets narrower than 36 pixels overflow the limit; the overlay's UTF-8
// conversion either accepts the text or reports invalid data.
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

#include <ku/log.h>

#include <Overlay/OgreUTFString.h>

#include "sentence_fitting.h"

namespace {

void check(bool condition) {
  if (!condition) __builtin_trap();
}

bool endsWithDots(const std::string& text) { return text.size() >= 3 && text.compare(text.size() - 3, 3, "...") == 0; }

}  // namespace

// Records of rejected input would flood the output: keep them off stderr.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
  ku::log::removeSink(ku::log::defaultSinkId());
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 3) return 0;
  const int width = data[0] | (data[1] << 8);
  const std::string sentence(reinterpret_cast<const char*>(data + 2), size - 2);

  const float height = VX::NextGenView::sentenceCharacterHeight(sentence.size(), width);
  check(height == 16.0f || height == 32.0f);
  try {
    const std::string shown = VX::NextGenView::shortenedSentence(sentence, width);
    if (shown != sentence) {
      check(endsWithDots(shown));
      const std::string kept = shown.substr(0, shown.size() - 3);
      check(sentence.compare(0, kept.size(), kept) == 0);
      check(kept.empty() || sentence[kept.size()] == ' ');
    }
    try {
      const Ogre::UTFString caption(shown);
      check(caption.size() <= shown.size());
    } catch (const Ogre::UTFString::invalid_data&) {
      // The view keeps its old caption.
    }
  } catch (const std::length_error&) {
    check(width < 36);
  }
  return 0;
}
