#include "ku/record_capture.h"

#include <algorithm>

namespace ku::log {

RecordCapture::RecordCapture()
    : m_id(addSink([this](const Record& record) {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_records.push_back(record);
      })) {}

RecordCapture::~RecordCapture() { removeSink(m_id); }

std::vector<Record> RecordCapture::records() const {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_records;
}

int RecordCapture::count(int level, const std::string& category, const std::string& fragment) const {
  std::lock_guard<std::mutex> lock(m_mutex);
  return static_cast<int>(std::count_if(m_records.begin(), m_records.end(), [&](const Record& record) {
    return record.level == level && record.category == category && record.text.find(fragment) != std::string::npos;
  }));
}

std::optional<Record> RecordCapture::firstFrom(const std::string& function) const {
  std::lock_guard<std::mutex> lock(m_mutex);
  const auto found = std::find_if(m_records.begin(), m_records.end(),
                                  [&](const Record& record) { return record.function == function; });
  if (found == m_records.end()) return std::nullopt;
  return *found;
}

}  // namespace ku::log
