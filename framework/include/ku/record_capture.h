#pragma once
// Collects the log records emitted while it lives: for tests that assert a
// record's exact text, and for hosts that show recent errors.

#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "ku/log.h"

namespace ku::log {

class RecordCapture {
 public:
  RecordCapture();
  ~RecordCapture();

  RecordCapture(const RecordCapture&) = delete;
  RecordCapture& operator=(const RecordCapture&) = delete;

  // A copy of the records so far, in emission order.
  std::vector<Record> records() const;
  // Records of that level and category whose text contains `fragment`.
  int count(int level, const std::string& category, const std::string& fragment = "") const;
  // The first record emitted from `function`, if any.
  std::optional<Record> firstFrom(const std::string& function) const;

 private:
  mutable std::mutex m_mutex;
  std::vector<Record> m_records;
  SinkId m_id;
};

}  // namespace ku::log
