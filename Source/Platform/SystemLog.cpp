#include <Tova/Tova.h>
#include <syslog.h>

void TovaLogError(TovaStringRef text) {
  if (text) syslog(LOG_ERR, "%s", TovaStringGetUTF8(text));
}
