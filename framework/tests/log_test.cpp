#include "ku/log.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

// Captures every record while alive.
class CapturedRecords {
 public:
  CapturedRecords() : m_id(ku::log::addSink([this](const ku::log::Record& r) { records.push_back(r); })) {}
  ~CapturedRecords() { ku::log::removeSink(m_id); }
  std::vector<ku::log::Record> records;

 private:
  ku::log::SinkId m_id;
};

TEST(LogStream, RecordCarriesExactFields) {
  CapturedRecords captured;
  {
    ku::log::LogStream(2, "initWorldView", "rdr.widget", "", 0) << "Failed to create world view ! " << std::endl;
  }
  ASSERT_EQ(captured.records.size(), 1u);
  const ku::log::Record& record = captured.records.front();
  EXPECT_EQ(record.level, 2);
  EXPECT_EQ(record.category, "rdr.widget");
  EXPECT_EQ(record.function, "initWorldView");
  EXPECT_EQ(record.file, "");
  EXPECT_EQ(record.line, 0);
  EXPECT_EQ(record.text, "Failed to create world view ! \n");
}

TEST(LogStream, FileAndLineAreKept) {
  CapturedRecords captured;
  ku::log::LogStream(3, "f", "cat", "file.cpp", 42) << "x";
  ASSERT_EQ(captured.records.size(), 1u);
  EXPECT_EQ(captured.records[0].file, "file.cpp");
  EXPECT_EQ(captured.records[0].line, 42);
  EXPECT_EQ(captured.records[0].level, 3);
}

TEST(LogStream, EmittedOnceAtDestructionNotBefore) {
  CapturedRecords captured;
  {
    ku::log::LogStream stream(2, "updateView", "rdr.widget", "", 0);
    stream << "RenderWidget2d doesn't support multi robot " << 2 << std::endl;
    EXPECT_TRUE(captured.records.empty()) << "a record must not leave before its stream is destroyed";
    stream << "Only the first will be visible." << std::endl;
    EXPECT_TRUE(captured.records.empty());
  }
  ASSERT_EQ(captured.records.size(), 1u);
  EXPECT_EQ(captured.records[0].text,
            "RenderWidget2d doesn't support multi robot 2\nOnly the first will be visible.\n");
}

TEST(LogStream, TwoStreamsGiveTwoRecords) {
  CapturedRecords captured;
  ku::log::LogStream(2, "a", "c", "", 0) << "first";
  ku::log::LogStream(2, "b", "c", "", 0) << "second";
  ASSERT_EQ(captured.records.size(), 2u);
  EXPECT_EQ(captured.records[0].text, "first");
  EXPECT_EQ(captured.records[1].text, "second");
}

TEST(LogStream, RemovedSinkReceivesNothing) {
  std::vector<std::string> texts;
  const ku::log::SinkId id = ku::log::addSink([&](const ku::log::Record& r) { texts.push_back(r.text); });
  ku::log::LogStream(2, "f", "c", "", 0) << "seen";
  ku::log::removeSink(id);
  ku::log::LogStream(2, "f", "c", "", 0) << "unseen";
  ASSERT_EQ(texts.size(), 1u);
  EXPECT_EQ(texts[0], "seen");
}

TEST(LogStream, VerbosityThresholdFilters) {
  CapturedRecords captured;
  const int saved = ku::log::verbosity();
  ku::log::setVerbosity(ku::log::Warning);
  ku::log::LogStream(ku::log::Info, "f", "c", "", 0) << "too detailed";
  ku::log::LogStream(ku::log::Warning, "f", "c", "", 0) << "kept";
  ku::log::LogStream(ku::log::Error, "f", "c", "", 0) << "kept too";
  ku::log::setVerbosity(saved);
  ASSERT_EQ(captured.records.size(), 2u);
  EXPECT_EQ(captured.records[0].text, "kept");
  EXPECT_EQ(captured.records[1].level, ku::log::Error);
}

TEST(LogStream, ThrowingSinkDoesNotEscape) {
  CapturedRecords captured;
  const ku::log::SinkId id = ku::log::addSink([](const ku::log::Record&) { throw std::runtime_error("sink"); });
  EXPECT_NO_THROW({ ku::log::LogStream(2, "f", "c", "", 0) << "text"; });
  ku::log::removeSink(id);
  EXPECT_EQ(captured.records.size(), 1u);
}

TEST(LogFormat, OneReadableLine) {
  ku::log::Record record;
  record.level = 2;
  record.category = "rdr.widget";
  record.function = "initRenderWindow";
  record.text = "Error when creating render window: boom\n";
  const std::string line = ku::log::format(record);
  EXPECT_NE(line.find("[error] rdr.widget initRenderWindow: Error when creating render window: boom"),
            std::string::npos)
      << line;
  EXPECT_EQ(line.find('\n'), std::string::npos);
}

}  // namespace
