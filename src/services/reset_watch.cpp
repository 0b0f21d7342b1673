#include "services/reset_watch.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

namespace velmara {

void ResetWatch::start(int socket) {
  stop();
  socket_ = ::fcntl(socket, F_DUPFD_CLOEXEC, 0);
}

void ResetWatch::stop() {
  if (socket_ >= 0) ::close(socket_);
  socket_ = -1;
}

bool ResetWatch::wasReset() const {
  tcp_info info{};
  socklen_t length = sizeof(info);
  if (socket_ < 0 || ::getsockopt(socket_, IPPROTO_TCP, TCP_INFO, &info, &length) != 0)
    return false;
  return info.tcpi_state == TCP_CLOSE;
}

}  // namespace velmara
