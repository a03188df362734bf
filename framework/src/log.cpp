#include "ku/log.h"

#include <algorithm>
#include <ctime>
#include <iomanip>
#include <iostream>
#include <mutex>
#include <utility>
#include <vector>

namespace ku::log {
namespace {

void writeToStderr(const Record& record) { std::cerr << format(record) << '\n'; }

// Sinks and threshold shared by every stream of the process. Records may be
// emitted from any thread, so the registry is guarded.
class Registry {
 public:
  static Registry& instance() {
    static Registry registry;
    return registry;
  }

  SinkId add(Sink sink) {
    std::lock_guard<std::mutex> lock(m_mutex);
    const SinkId id = m_nextId++;
    m_sinks.emplace_back(id, std::move(sink));
    return id;
  }

  void remove(SinkId id) {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_sinks.erase(std::remove_if(m_sinks.begin(), m_sinks.end(),
                                 [id](const auto& entry) { return entry.first == id; }),
                  m_sinks.end());
  }

  void emit(const Record& record) {
    std::vector<Sink> receivers;
    {
      std::lock_guard<std::mutex> lock(m_mutex);
      if (record.level > m_threshold) return;
      for (const auto& entry : m_sinks) receivers.push_back(entry.second);
    }
    // Sinks run outside the lock so that a sink may itself add or remove sinks.
    for (const Sink& sink : receivers) {
      try {
        sink(record);
      } catch (...) {
        // A failing sink must not take the emitting code down.
      }
    }
  }

  void setThreshold(int threshold) {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_threshold = threshold;
  }
  int threshold() {
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_threshold;
  }
  SinkId defaultId() const { return m_defaultId; }

 private:
  Registry() { m_defaultId = add(writeToStderr); }

  std::mutex m_mutex;
  std::vector<std::pair<SinkId, Sink>> m_sinks;
  SinkId m_nextId = 1;
  SinkId m_defaultId = 0;
  int m_threshold = Info;
};

}  // namespace

SinkId addSink(Sink sink) { return Registry::instance().add(std::move(sink)); }
void removeSink(SinkId id) { Registry::instance().remove(id); }
SinkId defaultSinkId() { return Registry::instance().defaultId(); }
void setVerbosity(int threshold) { Registry::instance().setThreshold(threshold); }
int verbosity() { return Registry::instance().threshold(); }

const char* levelName(int level) {
  switch (level) {
    case Fatal: return "fatal";
    case Error: return "error";
    case Warning: return "warning";
    case Info: return "info";
    case Verbose: return "verbose";
    case Debug: return "debug";
    default: return "level?";
  }
}

std::string format(const Record& record) {
  const std::time_t seconds = std::chrono::system_clock::to_time_t(record.time);
  std::tm local{};
  localtime_r(&seconds, &local);

  std::string text = record.text;
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
  std::replace(text.begin(), text.end(), '\n', ' ');

  std::ostringstream line;
  line << std::put_time(&local, "%Y-%m-%d %H:%M:%S") << " [" << levelName(record.level) << "] "
       << record.category << ' ' << record.function;
  if (!record.file.empty()) line << " (" << record.file << ':' << record.line << ')';
  line << ": " << text;
  return line.str();
}

LogStream::LogStream(int level, const std::string& function, const std::string& category,
                     const std::string& file, int line)
    : std::ostream(nullptr) {
  rdbuf(&m_buffer);
  m_record.level = level;
  m_record.function = function;
  m_record.category = category;
  m_record.file = file;
  m_record.line = line;
  m_record.time = std::chrono::system_clock::now();
}

LogStream::~LogStream() {
  try {
    m_record.text = m_buffer.str();
    Registry::instance().emit(m_record);
  } catch (...) {
    // Logging never throws out of a destructor.
  }
}

}  // namespace ku::log
