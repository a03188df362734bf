#include "sentence_fitting.h"

#include <gtest/gtest.h>

#include <stdexcept>

using VX::NextGenView::sentenceCharacterHeight;
using VX::NextGenView::shortenedSentence;

namespace {

// Words of four letters and a space: a space every fifth byte.
std::string words(std::size_t length) {
  std::string text;
  while (text.size() < length) text += (text.size() % 5 == 4) ? ' ' : 'a' + static_cast<char>(text.size() % 26);
  return text;
}

TEST(SentenceFitting, TenCharactersAt400PixelsAreBigAndWhole) {
  const std::string sentence = "Hello you!";
  EXPECT_FLOAT_EQ(sentenceCharacterHeight(sentence.size(), 400), 32.0f);
  EXPECT_EQ(shortenedSentence(sentence, 400), sentence);
}

TEST(SentenceFitting, FortyCharactersAt400PixelsAreSmallAndWhole) {
  const std::string sentence = words(40);
  EXPECT_FLOAT_EQ(sentenceCharacterHeight(sentence.size(), 400), 16.0f);
  EXPECT_EQ(shortenedSentence(sentence, 400), sentence);
}

TEST(SentenceFitting, HundredCharactersAt400PixelsAreCutAtTheLastSpace) {
  const std::string sentence = words(100);
  EXPECT_FLOAT_EQ(sentenceCharacterHeight(sentence.size(), 400), 16.0f);
  // limit = trunc(400 / 7.1666665) - 5 = 50; the last space in the first 50 bytes is at 49.
  const std::string first50 = sentence.substr(0, 50);
  EXPECT_EQ(shortenedSentence(sentence, 400), first50.substr(0, first50.rfind(' ')) + "...");
  EXPECT_EQ(shortenedSentence(sentence, 400).size(), 49u + 3u);
}

TEST(SentenceFitting, NoSpaceInTheLimitGivesDotsOnly) {
  EXPECT_EQ(shortenedSentence(std::string(100, 'x'), 400), "...");
  EXPECT_EQ(shortenedSentence(std::string(60, 'x') + " tail" + std::string(35, 'y'), 400), "...");
}

TEST(SentenceFitting, LimitOfZeroToThreeLeavesTheSentenceWhole) {
  // trunc(50 / 7.1666665) = 6: a limit of 1.
  const std::string sentence = words(100);
  EXPECT_EQ(shortenedSentence(sentence, 50), sentence);
  // trunc(36 / 7.1666665) = 5: a limit of 0.
  EXPECT_EQ(shortenedSentence(sentence, 36), sentence);
  // trunc(63 / 7.1666665) = 8: a limit of 3.
  EXPECT_EQ(shortenedSentence(sentence, 63), sentence);
}

TEST(SentenceFitting, LimitOfFourCuts) {
  // trunc(65 / 7.1666665) = 9: a limit of 4; "abcd" holds no space.
  EXPECT_EQ(shortenedSentence(words(100), 65), "...");
  EXPECT_EQ(shortenedSentence("ab cdefghijklmnop", 65), "ab...");
}

TEST(SentenceFitting, NarrowerThan36PixelsThrowsALengthError) {
  EXPECT_THROW(shortenedSentence(words(100), 35), std::length_error);
  EXPECT_THROW(shortenedSentence(words(100), 10), std::length_error);
}

TEST(SentenceFitting, CharacterHeightBoundary) {
  // 15 pixels per character is big; 14 is not.
  EXPECT_FLOAT_EQ(sentenceCharacterHeight(10, 150), 32.0f);
  EXPECT_FLOAT_EQ(sentenceCharacterHeight(10, 149), 16.0f);
}

}  // namespace
