#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

#include "services/text.h"

namespace velmara {

/// Header fields in the order in which they go out.
using HttpFields = std::vector<std::pair<std::string, std::string>>;

/// A POST as the program wants it on the wire. A Content-Length among the fields goes out as it is,
/// whatever it says, and the body goes out whole after it.
struct HttpRequest {
  /// An address of http or https, and fields beside those every request has.
  std::string url;
  HttpFields fields;
  std::uint64_t bodySize = 0;  ///< in bytes
  TextSource body;             ///< called on the thread that sends
};

/// How patient and how trusting an exchange is.
struct HttpOptions {
  /// The longest time to connect, without progress while sending, and for the whole answer after
  /// that.
  std::chrono::milliseconds timeout{std::chrono::seconds(30)};
  /// The most bytes of an answer, head and body; a longer one is a failure.
  std::size_t largestAnswer = std::size_t{256} * 1024;
  /// A file of the certificates to trust instead of the system's.
  std::string certificates;
};

/// How an exchange ended, and with what.
struct HttpAnswer {
  /// How it ended.
  enum class End {
    kFinished,   ///< the answer came whole, whatever its status
    kFailed,     ///< it did not; see `reason`
    kCancelled,  ///< it was asked to stop
  };
  /// How this one ended.
  End end = End::kFailed;
  std::string reason = {};  ///< for kFailed, in words
  /// Of the answer; empty if none came.
  int status = 0;
  std::string body = {};
};

/// What is told of an exchange while it runs, in this order.
enum class HttpStep {
  kDidSendBodyData,     ///< a piece of the body went out
  kDidReceiveResponse,  ///< the head of the final answer came
  kDidReceiveData,      ///< a piece of its body came: its first byte, then each 16 KiB
};

/// Sends a request and waits for the answer; a stop ends it within moments. Goes through the proxy
/// that the environment names, trusts the certificates of the system, follows the redirects that
/// are answered by a GET (301, 302, 303) within the host only and never sends the body twice, keeps
/// no cookies and answers no question for credentials. Not on the main thread.
HttpAnswer post(const HttpRequest& request, const HttpOptions& options, const std::stop_token& stop,
                const std::function<void(HttpStep)>& told = {});

}  // namespace velmara
