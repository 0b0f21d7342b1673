// What a service answers: the bytes on the wire as a whole, and the number in the report's answer.
#include <arpa/inet.h>
#include <atomic>
#include <netinet/in.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

#include "fuzzing.h"
#include "services/http_client.h"
#include "services/tracker.h"

namespace {

using namespace velmara;
using fuzzing::require;

// Answers every connection to a port of loopback with the same bytes.
class Server {
 public:
  Server() {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof(address);
    auto* any = reinterpret_cast<sockaddr*>(&address);
    require(::bind(socket_, any, length) == 0 && ::listen(socket_, 16) == 0 &&
                ::getsockname(socket_, any, &length) == 0,
            "there is a port on loopback");
    port_ = ntohs(address.sin_port);
    std::thread([this] { serve(); }).detach();
  }
  int port() const { return port_; }
  void answerWith(const std::string& bytes) { answer_ = std::make_shared<std::string>(bytes); }

 private:
  [[noreturn]] void serve() {
    for (;;) {
      const int client = ::accept(socket_, nullptr, nullptr);
      if (client < 0) continue;
      char request[4096];
      (void)!::recv(client, request, sizeof(request), 0);
      const auto answer = answer_.load();
      (void)!::send(client, answer->data(), answer->size(), MSG_NOSIGNAL);
      ::shutdown(client, SHUT_WR);
      while (::recv(client, request, sizeof(request), 0) > 0) {
      }
      ::close(client);
    }
  }

  int socket_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  int port_ = 0;
  std::atomic<std::shared_ptr<std::string>> answer_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Server& server = *new Server;
  const std::string bytes(fuzzing::textOf(data, size));
  (void)trackingIdIn(bytes);

  server.answerWith(bytes);
  HttpRequest request =
      jsonRequest("http://127.0.0.1:" + std::to_string(server.port()) + "/", "{}");
  const HttpOptions options{
      .timeout = std::chrono::seconds(10), .largestAnswer = 4096, .certificates = {}};
  const HttpAnswer answer = post(request, options, {});
  require(answer.body.size() <= options.largestAnswer, "no more is taken than wanted");
  const bool isFinished = answer.end == HttpAnswer::End::kFinished;
  require(isFinished || !answer.reason.empty(), "what failed says why");
  require(!isFinished || answer.status >= 200, "what finished has a status");
  return 0;
}
