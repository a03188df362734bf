#include "urdf_model_parser.h"

#include <exception>
#include <mutex>

#include <console_bridge/console.h>
#include <urdf_parser/urdf_parser.h>

namespace VX::NextGenView {
namespace {

// urdfdom explains a rejection only through console_bridge messages; they
// are collected here, while a parse runs, instead of going to the console.
class ParserMessages : public console_bridge::OutputHandler {
 public:
  void log(const std::string& text, console_bridge::LogLevel level, const char*, int) override {
    if (level < console_bridge::CONSOLE_BRIDGE_LOG_ERROR) return;
    if (!m_text.empty()) m_text += "; ";
    m_text += text;
  }
  const std::string& text() const { return m_text; }

 private:
  std::string m_text;
};

// console_bridge has a single process-wide output handler.
std::mutex& parserMutex() {
  static std::mutex mutex;
  return mutex;
}

}  // namespace

urdf::ModelInterfaceSharedPtr parseUrdfModel(const std::string& xml, std::string& error) {
  error.clear();
  std::lock_guard<std::mutex> lock(parserMutex());
  ParserMessages messages;
  console_bridge::useOutputHandler(&messages);
  urdf::ModelInterfaceSharedPtr model;
  try {
    model = urdf::parseURDF(xml);
  } catch (const std::exception& exception) {
    error = exception.what();
  } catch (...) {
    error = "unknown failure";
  }
  console_bridge::restorePreviousOutputHandler();
  if (!model) {
    if (error.empty()) error = messages.text().empty() ? "the description is not valid URDF" : messages.text();
    error = "the URDF parser rejected the description: " + error;
  }
  return model;
}

}  // namespace VX::NextGenView
