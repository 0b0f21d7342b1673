#include <gtest/gtest.h>

#include <QFile>
#include <QSslCertificate>
#include <QSslKey>
#include <QSslServer>

#include <future>

#include "services/event_loop.h"
#include "services/http_client.h"
#include "support/recording_server.h"
#include "support/run_program.h"

namespace velmara {
namespace {

using testing_support::Peer;
using testing_support::RecordingServer;
using testing_support::runProgram;
using testing_support::runUntil;
using testing_support::ScratchFolder;
using End = HttpAnswer::End;

// Sends while the event loop serves the other side.
HttpAnswer postBeside(const std::string& url, const HttpOptions& options) {
  const HttpRequest request{.url = url, .fields = {}, .bodySize = 6, .body = textSource("secret")};
  auto answer = std::async(std::launch::async, [&] { return post(request, options, {}); });
  EXPECT_TRUE(runUntil(
      [&] { return answer.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
  return answer.get();
}

// A server with a certificate for localhost that nobody has signed but itself.
class TlsServer {
 public:
  TlsServer() {
    const auto made =
        runProgram({"openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-keyout",
                    folder_.file("key"), "-out", folder_.file("cert"), "-days", "2", "-subj",
                    "/CN=localhost", "-addext", "subjectAltName=DNS:localhost"});
    EXPECT_EQ(made.exitCode, 0) << made.errors;
    QFile certificateFile(QString::fromStdString(folder_.file("cert")));
    QFile keyFile(QString::fromStdString(folder_.file("key")));
    EXPECT_TRUE(certificateFile.open(QIODevice::ReadOnly) && keyFile.open(QIODevice::ReadOnly));
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(QSslCertificate(&certificateFile));
    configuration.setPrivateKey(QSslKey(&keyFile, QSsl::Rsa));
    server_.setSslConfiguration(configuration);
    EXPECT_TRUE(server_.listen(QHostAddress::LocalHost));
    QObject::connect(&server_, &QTcpServer::pendingConnectionAvailable, [this] {
      QTcpSocket* socket = server_.nextPendingConnection();
      QObject::connect(socket, &QTcpSocket::readyRead, [this, socket] {
        received += socket->readAll().toStdString();
        if (!received.ends_with("secret")) return;
        socket->write("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n");
      });
    });
  }

  std::string url(const std::string& host) const {
    return "https://" + host + ':' + std::to_string(server_.serverPort()) + '/';
  }
  std::string certificate() const { return folder_.file("cert"); }

  std::string received;

 private:
  const ScratchFolder folder_;
  QSslServer server_;
};

TEST(Tls, SendsOnlyToACertificateThatIsTrustedForTheHost) {
  ::setenv("NO_PROXY", "127.0.0.1,localhost", 1);
  TlsServer server;
  HttpOptions trusting;
  trusting.certificates = server.certificate();

  const HttpAnswer unknown = postBeside(server.url("localhost"), {});
  EXPECT_EQ(unknown.end, End::kFailed);
  EXPECT_FALSE(unknown.reason.empty());
  EXPECT_EQ(postBeside(server.url("127.0.0.1"), trusting).end, End::kFailed);
  EXPECT_EQ(server.received, "");

  const HttpAnswer trusted = postBeside(server.url("localhost"), trusting);
  EXPECT_EQ(trusted.end, End::kFinished) << trusted.reason;
  EXPECT_TRUE(server.received.starts_with("POST / HTTP/1.1\r\nHost: localhost"));
}

TEST(Tls, ABrokenHandshakeEndsTheRequestAndNothingIsSentInTheClear) {
  for (const std::string& nonsense :
       {std::string("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n"), std::string(5000, '\x16'),
        std::string("\x15\x03\x03\x00\x02\x02\x28", 7), std::string()}) {
    const RecordingServer server([&](Peer& peer) {
      peer.send(nonsense);
      return nonsense.empty() ? std::string() : peer.readUntil("secret");
    });
    const std::string url = "https://localhost:" + std::to_string(server.port());
    EXPECT_EQ(postBeside(url, {}).end, End::kFailed);
    ASSERT_TRUE(server.waitForRequests(1));
    EXPECT_EQ(server.requests().front().find("secret"), std::string::npos);
  }
}

}  // namespace
}  // namespace velmara
