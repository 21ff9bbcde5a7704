#include <Tova/Tova.h>
#include <syslog.h>

#include <mutex>

namespace {

/// Where lines go: to the sink, or to the system log without one.
struct ErrorLog {
  std::mutex mutex;
  TovaLogSink sink = nullptr;
  void* context = nullptr;
};

ErrorLog& GetErrorLog() {
  static auto* log = new ErrorLog;
  return *log;
}

}  // namespace

void TovaLogError(TovaStringRef text) {
  if (!text) return;
  ErrorLog& log = GetErrorLog();
  const std::lock_guard lock(log.mutex);
  if (log.sink) {
    log.sink(text, log.context);
  } else {
    syslog(LOG_ERR, "%s", TovaStringGetUTF8(text));
  }
}

void TovaLogErrorSetSink(TovaLogSink sink, void* context) {
  ErrorLog& log = GetErrorLog();
  const std::lock_guard lock(log.mutex);
  log.sink = sink;
  log.context = context;
}
