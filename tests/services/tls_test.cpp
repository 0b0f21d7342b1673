#include <gtest/gtest.h>

#include <QFile>
#include <QSslCertificate>
#include <QSslKey>
#include <QSslServer>

#include <optional>

#include "services/event_loop.h"
#include "services/http_connection.h"
#include "services/recording_server.h"
#include "support/run_program.h"

namespace velmara {
namespace {

using testing_support::Peer;
using testing_support::RecordingServer;
using testing_support::runProgram;
using testing_support::runUntil;
using testing_support::ScratchFolder;
using End = HttpOutcome::End;

std::vector<QHostAddress> loopback(const std::string&) {
  return {QHostAddress(QHostAddress::LocalHost)};
}

HttpOutcome post(const std::string& url, HttpOptions options) {
  options.resolver = loopback;
  HttpRequest request;
  request.url = QUrl(QString::fromStdString(url));
  request.body = "secret";
  std::optional<HttpOutcome> end;
  HttpEvents events;
  events.ended = [&](const HttpOutcome& outcome) { end = outcome; };
  HttpConnection connection(request, std::move(options), std::move(events));
  connection.start();
  runUntil([&] { return end.has_value(); });
  return end.value_or(HttpOutcome{});
}

// A server with a certificate for feedback.test that nobody has signed but itself.
class TlsServer {
 public:
  TlsServer() {
    const ScratchFolder folder;
    const auto made =
        runProgram({"openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-keyout",
                    folder.file("key"), "-out", folder.file("cert"), "-days", "2", "-subj",
                    "/CN=feedback.test", "-addext", "subjectAltName=DNS:feedback.test"});
    EXPECT_EQ(made.exitCode, 0) << made.errors;
    QFile certificateFile(QString::fromStdString(folder.file("cert")));
    QFile keyFile(QString::fromStdString(folder.file("key")));
    EXPECT_TRUE(certificateFile.open(QIODevice::ReadOnly) && keyFile.open(QIODevice::ReadOnly));
    certificate_ = QSslCertificate(&certificateFile);
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(certificate_);
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
  const QSslCertificate& certificate() const { return certificate_; }

  std::string received;

 private:
  QSslServer server_;
  QSslCertificate certificate_;
};

TEST(Tls, SendsOnlyToACertificateThatIsTrustedForTheHost) {
  TlsServer server;
  HttpOptions trusting;
  trusting.tls.setCaCertificates({server.certificate()});

  const HttpOutcome unknown = post(server.url("feedback.test"), {});
  EXPECT_EQ(unknown.end, End::kFailed);
  EXPECT_FALSE(unknown.reason.empty());
  EXPECT_EQ(post(server.url("other.test"), trusting).end, End::kFailed);
  EXPECT_EQ(server.received, "");

  const HttpOutcome trusted = post(server.url("feedback.test"), trusting);
  EXPECT_EQ(trusted.end, End::kFinished) << trusted.reason;
  EXPECT_TRUE(server.received.starts_with("POST / HTTP/1.1\r\nHost: feedback.test"));
}

TEST(Tls, ABrokenHandshakeEndsTheRequestAndNothingIsSentInTheClear) {
  for (const std::string& nonsense :
       {std::string("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n"), std::string(5000, '\x16'),
        std::string("\x15\x03\x03\x00\x02\x02\x28", 7), std::string()}) {
    const RecordingServer server([&](Peer& peer) {
      peer.send(nonsense);
      return nonsense.empty() ? std::string() : peer.readUntil("secret");
    });
    const std::string url = "https://feedback.test:" + std::to_string(server.port());
    EXPECT_EQ(post(url, {}).end, End::kFailed);
    ASSERT_TRUE(runUntil([&] { return !server.requests().empty(); }));
    EXPECT_EQ(server.requests().front().find("secret"), std::string::npos);
  }
}

}  // namespace
}  // namespace velmara
