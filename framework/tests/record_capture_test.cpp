#include "ku/record_capture.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

TEST(RecordCapture, CollectsWhileAliveOnly) {
  ku::log::LogStream(2, "before", "c", "", 0) << "missed";
  std::vector<ku::log::Record> kept;
  {
    ku::log::RecordCapture capture;
    ku::log::LogStream(2, "during", "c", "", 0) << "seen";
    kept = capture.records();
  }
  ku::log::LogStream(2, "after", "c", "", 0) << "missed too";
  ASSERT_EQ(kept.size(), 1u);
  EXPECT_EQ(kept[0].function, "during");
}

TEST(RecordCapture, CountsByLevelCategoryAndFragment) {
  ku::log::RecordCapture capture;
  ku::log::LogStream(2, "f", "rdr.widget", "", 0) << "Failed to create world view ! ";
  ku::log::LogStream(3, "f", "rdr.widget", "", 0) << "Failed to create world view ! ";
  ku::log::LogStream(2, "f", "other", "", 0) << "Failed";
  EXPECT_EQ(capture.count(2, "rdr.widget"), 1);
  EXPECT_EQ(capture.count(2, "rdr.widget", "world view"), 1);
  EXPECT_EQ(capture.count(2, "rdr.widget", "camera"), 0);
  EXPECT_EQ(capture.count(3, "rdr.widget", "Failed"), 1);
}

TEST(RecordCapture, FirstFromAFunction) {
  ku::log::RecordCapture capture;
  EXPECT_FALSE(capture.firstFrom("updateView"));
  ku::log::LogStream(2, "updateView", "c", "", 0) << "one";
  ku::log::LogStream(2, "updateView", "c", "", 0) << "two";
  ASSERT_TRUE(capture.firstFrom("updateView"));
  EXPECT_EQ(capture.firstFrom("updateView")->text, "one");
}

TEST(RecordCapture, RecordsFromOtherThreadsArrive) {
  ku::log::RecordCapture capture;
  std::thread worker([] { ku::log::LogStream(2, "worker", "c", "", 0) << "from a thread"; });
  worker.join();
  EXPECT_EQ(capture.count(2, "c", "from a thread"), 1);
}

}  // namespace
