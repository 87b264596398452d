// The XML log, LTA.

#include <unistd.h>

#include <utility>

#include <trelvo/DebugCommon.h>

namespace trelvo {

void DebugCommon::startLTALogVa() { addLTAXMLFile("/var/log/kvt/", "Trelvo_Lta_%t.xml"); }

void DebugCommon::checkLTAFileHandleVa() {
  if (access(m_ltaFileName.c_str(), F_OK) == 0) return;
  writeLogEll(Debug::LogLevelNote, false, DebugDefaultComponent,
              "ltalogging, check lta file, no log file\n");
  closeLTAFileHandleVa();
  startLTALogVa();
  writeXmlEll("<log>\n");
}

void DebugCommon::closeLTAFileHandleVa() { closeWhenUnused(std::exchange(m_ltaFile, nullptr)); }

void DebugCommon::writeXmlEll(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  writeXmlVa(format, arguments);
  va_end(arguments);
}

}  // namespace trelvo
