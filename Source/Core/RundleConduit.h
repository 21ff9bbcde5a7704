#pragma once

#include <Tova/Tova.hpp>
#include <cstdint>
#include <mutex>

/// How long each step of a request may take, in seconds.
struct RundleConduitLimits {
  double connect = 10;
  double send = 20;
  double receive = 60;
};

/// The asking side of the conduit, the service that knows which fonts are installed. Requests and replies are XML
/// property lists, sent through a message port that is connected at the first request, kept, and given up after one
/// that failed. Any thread may ask; requests wait for each other.
class RundleConduit {
 public:
  /// An empty name is that of no port.
  explicit RundleConduit(Tova::String iPortName, RundleConduitLimits iLimits = {})
      : _fPortName(std::move(iPortName)), _fLimits(iLimits) {}

  /// Connects, trying for as long as the limit says. Starts no process. Says in the system log when it could not.
  void Launch();
  /// True when the request and its reply went through; then oReply, where given, holds the data that came, if any. Of
  /// two attempts, the second is made where the conduit of the first turns out to be gone.
  bool SendMessage(int32_t iMessageId, TovaDataRef iData, Tova::Data* oReply);
  /// Whether an installed font has the PostScript name, other than the one in the file asked for. oDuplicateURL, where
  /// given, receives that font's URL as text, none where there is none.
  bool SendIsDuplicateFontMessage(TovaURLRef iFileURL, TovaStringRef iPostScriptName, Tova::String* oDuplicateURL);

 private:
  void Connect();

  const Tova::String _fPortName;
  const RundleConduitLimits _fLimits;
  std::mutex _fMutex;
  Tova::MessagePort _fPort;
};

// The same through the conduit of this process, whose port ConduitPortName of ConduitProtocol.hpp names.

void LaunchRundleConduit();
bool SendRundleConduitMessage(int32_t iMessageId, TovaDataRef iData, Tova::Data* oReply);
bool SendIsDuplicateFontMessage(TovaURLRef iFileURL, TovaStringRef iPostScriptName, Tova::String* oDuplicateURL);
