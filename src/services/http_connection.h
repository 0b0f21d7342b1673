#pragma once

#include <QObject>
#include <QSslConfiguration>
#include <QTcpSocket>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "services/host_lookup.h"
#include "services/http_answer.h"
#include "services/http_request.h"
#include "services/reset_watch.h"

namespace velmara {

/// How an exchange ended.
struct HttpOutcome {
  enum class End {
    kFinished,   ///< the answer came whole, whatever its status
    kFailed,     ///< it did not; see `reason`
    kCancelled,  ///< the owner ended it
  };
  End end = End::kFailed;
  std::string reason;  ///< for kFailed, in words
};

/// What happens during an exchange, in this order. None may throw; `ended` may destroy the
/// connection, the others may not.
struct HttpEvents {
  /// Some of the body went out.
  std::function<void()> didSendBodyData = [] {};
  /// The head of the final answer came.
  std::function<void(int status)> didReceiveResponse = [](int) {};
  /// A piece of its body, which is dropped after the call.
  std::function<void(std::string_view)> didReceiveData = [](std::string_view) {};
  /// The end: exactly once, on every path.
  std::function<void(const HttpOutcome&)> ended = [](const HttpOutcome&) {};
};

struct HttpOptions {
  /// The longest wait without progress while connecting and sending, and the longest time for the
  /// whole answer after that.
  std::chrono::milliseconds timeout{std::chrono::seconds(30)};
  HostResolver resolver = systemAddressesOf;
  QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
};

/// One request and its answer over a socket of ours. The client class of the library would correct
/// the Content-Length of a request; here the bytes go out as they are given. Follows redirects
/// within the host only, keeps no cookies, answers no question for credentials, and ends at the
/// first fault of TLS. Runs in the event loop of its thread; destroying it ends it at once, as
/// cancelled.
class HttpConnection {
 public:
  HttpConnection(HttpRequest request, HttpOptions options, HttpEvents events);
  HttpConnection(const HttpConnection&) = delete;
  HttpConnection& operator=(const HttpConnection&) = delete;
  ~HttpConnection();

  /// Begins; everything else comes from the event loop.
  void start();

  /// Ends the exchange now, as cancelled, if it has not ended.
  void cancel();

 private:
  void later(std::function<void()> step);
  void lookUpHost();
  void connectToNext();
  void connected();
  void sendMore();
  void bytesWritten(std::size_t count);
  void readMore();
  void socketFailed(QAbstractSocket::SocketError error);
  void timedOut();
  void answerHead(int status);
  void answerProgress(HttpAnswerReader::State state);
  void silenceSocket();
  void conclude(HttpOutcome outcome);
  void fail(std::string reason) { conclude({HttpOutcome::End::kFailed, std::move(reason)}); }
  void deliver(const HttpOutcome& outcome);

  HttpRequest request_;
  HttpOptions options_;
  HttpEvents events_;
  QTimer timer_;
  std::unique_ptr<HostLookup> lookup_;
  std::vector<QHostAddress> addresses_;
  std::size_t nextAddress_ = 0;
  std::unique_ptr<QTcpSocket> socket_;
  ResetWatch resetWatch_;
  bool isConnected_ = false;
  std::string head_;
  std::size_t sent_ = 0;     ///< bytes of head and body handed to the socket
  std::size_t written_ = 0;  ///< bytes of them that have left
  std::optional<HttpAnswerReader> answer_;
  std::optional<HttpRequest> redirect_;  ///< what the answer being read sends us to
  int redirects_ = 0;
  bool concluded_ = false;
  bool delivered_ = false;
  QObject context_;  ///< last, so that what is queued for this object ends first
};

}  // namespace velmara
