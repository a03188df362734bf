#pragma once
// Log records for the project's libraries and for their host application.
//
// A record is built by streaming text into a LogStream and is emitted once,
// when the stream object is destroyed:
//
//   ku::log::LogStream(2, "initWorldView", "rdr.widget", "", 0)
//       << "Failed to create world view ! " << std::endl;
//
// Records go to every registered sink whose level passes the verbosity
// threshold. The default sink writes one readable line per record to stderr.

#include <chrono>
#include <functional>
#include <ostream>
#include <sstream>
#include <string>

namespace ku::log {

// Levels, most severe first.
enum Level : int { Fatal = 1, Error = 2, Warning = 3, Info = 4, Verbose = 5, Debug = 6 };

struct Record {
  int level = Error;
  std::string category;
  std::string function;
  std::string file;
  int line = 0;
  std::string text;  // exactly what was streamed, line breaks included
  std::chrono::system_clock::time_point time;
};

using Sink = std::function<void(const Record&)>;
using SinkId = int;

// Registers a sink that receives every record passing the threshold.
SinkId addSink(Sink sink);
// Removes a sink; it receives nothing afterwards. Unknown ids are ignored.
void removeSink(SinkId id);

// The sink installed at start-up, writing to stderr; removable like any other.
SinkId defaultSinkId();

// Records whose level is greater than the threshold are dropped (default: Info).
void setVerbosity(int threshold);
int verbosity();

// One readable line for a record: "<time> [<level name>] <category> <function> (<file>:<line>): <text>"
std::string format(const Record& record);
const char* levelName(int level);

class LogStream : public std::ostream {
 public:
  LogStream(int level, const std::string& function, const std::string& category,
            const std::string& file, int line);
  ~LogStream() override;

  LogStream(const LogStream&) = delete;
  LogStream& operator=(const LogStream&) = delete;

 private:
  std::stringbuf m_buffer;
  Record m_record;
};

}  // namespace ku::log
