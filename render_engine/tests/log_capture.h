#pragma once
// Test helper: collects the log records emitted while it lives.

#include <algorithm>
#include <mutex>
#include <string>
#include <vector>

#include <ku/log.h>

namespace VX::NextGenView::testing {

class LogCapture {
 public:
  LogCapture() {
    m_id = ku::log::addSink([this](const ku::log::Record& record) {
      std::lock_guard<std::mutex> lock(m_mutex);
      m_records.push_back(record);
    });
  }
  ~LogCapture() { ku::log::removeSink(m_id); }

  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  std::vector<ku::log::Record> records() const {
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_records;
  }

  // Records of that level and category whose text contains `fragment`.
  int count(int level, const std::string& category, const std::string& fragment = "") const {
    const std::vector<ku::log::Record> all = records();
    return static_cast<int>(std::count_if(all.begin(), all.end(), [&](const ku::log::Record& record) {
      return record.level == level && record.category == category &&
             record.text.find(fragment) != std::string::npos;
    }));
  }

 private:
  mutable std::mutex m_mutex;
  std::vector<ku::log::Record> m_records;
  ku::log::SinkId m_id = 0;
};

}  // namespace VX::NextGenView::testing
