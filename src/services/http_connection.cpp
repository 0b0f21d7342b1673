#include "services/http_connection.h"

#include <QSslSocket>

#include <algorithm>
#include <array>
#include <utility>

namespace velmara {
namespace {

constexpr std::size_t kPiece = std::size_t{64} * 1024;
constexpr int kMostRedirects = 5;

}  // namespace

HttpConnection::HttpConnection(HttpRequest request, HttpOptions options, HttpEvents events)
    : request_(std::move(request)), options_(std::move(options)), events_(std::move(events)) {
  timer_.setSingleShot(true);
  QObject::connect(&timer_, &QTimer::timeout, &context_, [this] { timedOut(); });
}

HttpConnection::~HttpConnection() {
  cancel();
}

void HttpConnection::start() {
  later([this] { lookUpHost(); });
}

void HttpConnection::cancel() {
  if (delivered_) return;
  concluded_ = true;
  timer_.stop();
  lookup_.reset();
  silenceSocket();
  deliver({HttpOutcome::End::kCancelled, {}});
}

// Steps that replace the socket, or end everything, never run from within the socket's own signals.
void HttpConnection::later(std::function<void()> step) {
  QMetaObject::invokeMethod(&context_, std::move(step), Qt::QueuedConnection);
}

void HttpConnection::lookUpHost() {
  if (concluded_) return;
  if (!isUsableUrl(request_.url)) {
    fail("not a usable address");
    return;
  }
  timer_.start(options_.timeout);
  lookup_ =
      std::make_unique<HostLookup>(request_.url.host(QUrl::FullyEncoded).toStdString(),
                                   options_.resolver, [this](std::vector<QHostAddress> addresses) {
                                     addresses_ = std::move(addresses);
                                     nextAddress_ = 0;
                                     if (addresses_.empty()) {
                                       fail("host not found");
                                     } else {
                                       connectToNext();
                                     }
                                   });
}

void HttpConnection::connectToNext() {
  if (concluded_) return;
  silenceSocket();
  const QHostAddress address = addresses_[nextAddress_];
  // An address that does not answer must leave time for the others.
  timer_.start(options_.timeout / static_cast<int>(addresses_.size() - nextAddress_));
  ++nextAddress_;
  head_ = requestHead(request_);
  sent_ = 0;
  written_ = 0;
  isConnected_ = false;
  redirect_.reset();
  answer_.emplace(HttpAnswerReader::Sink{[this](int status) { answerHead(status); },
                                         [this](std::string_view piece) {
                                           if (!redirect_) events_.didReceiveData(piece);
                                         }});

  const bool encrypted = request_.url.scheme() == QLatin1String("https");
  auto* tlsSocket = encrypted ? new QSslSocket : nullptr;
  socket_.reset(encrypted ? tlsSocket : new QTcpSocket);
  socket_->setReadBufferSize(static_cast<qint64>(kPiece));
  QTcpSocket* const socket = socket_.get();
  QObject::connect(socket, &QTcpSocket::bytesWritten, &context_,
                   [this](qint64 count) { bytesWritten(static_cast<std::size_t>(count)); });
  QObject::connect(socket, &QTcpSocket::readyRead, &context_, [this] { readMore(); });
  QObject::connect(socket, &QTcpSocket::errorOccurred, &context_,
                   [this](QAbstractSocket::SocketError error) { socketFailed(error); });
  const auto port = static_cast<quint16>(portOf(request_.url));
  if (encrypted) {
    QObject::connect(tlsSocket, &QSslSocket::encrypted, &context_, [this] { connected(); });
    // Faults of the certificate are never ignored, so the handshake fails by itself.
    tlsSocket->setSslConfiguration(options_.tls);
    tlsSocket->connectToHostEncrypted(address.toString(), port, request_.url.host());
  } else {
    QObject::connect(socket, &QTcpSocket::connected, &context_, [this] { connected(); });
    socket->connectToHost(address, port);
  }
}

void HttpConnection::connected() {
  isConnected_ = true;
  resetWatch_.start(static_cast<int>(socket_->socketDescriptor()));
  timer_.start(options_.timeout);
  sendMore();
}

// Hands the socket a little at a time: it would copy all it is given.
void HttpConnection::sendMore() {
  const std::size_t all = head_.size() + request_.body.size();
  while (!concluded_ && sent_ < all && static_cast<std::size_t>(socket_->bytesToWrite()) < kPiece) {
    const bool inHead = sent_ < head_.size();
    const std::string& source = inHead ? head_ : request_.body;
    const std::size_t offset = inHead ? sent_ : sent_ - head_.size();
    const std::size_t count = std::min(kPiece, source.size() - offset);
    if (socket_->write(source.data() + offset, static_cast<qint64>(count)) < 0) return;
    sent_ += count;
  }
}

void HttpConnection::bytesWritten(std::size_t count) {
  if (concluded_) return;
  timer_.start(options_.timeout);
  written_ += count;
  if (written_ > head_.size()) events_.didSendBodyData();
  sendMore();
}

void HttpConnection::readMore() {
  std::array<char, kPiece> buffer;  // NOLINT(cppcoreguidelines-pro-type-member-init)
  while (!concluded_ && !redirect_ && socket_->bytesAvailable() > 0) {
    const qint64 count = socket_->read(buffer.data(), static_cast<qint64>(buffer.size()));
    if (count <= 0) return;
    answerProgress(answer_->feed({buffer.data(), static_cast<std::size_t>(count)}));
  }
}

void HttpConnection::socketFailed(QAbstractSocket::SocketError error) {
  if (concluded_ || redirect_) return;
  if (!isConnected_) {
    // Another address is no way around a fault of TLS.
    const bool tlsFault = error == QAbstractSocket::SslHandshakeFailedError ||
                          error == QAbstractSocket::SslInternalError ||
                          error == QAbstractSocket::SslInvalidUserDataError;
    if (tlsFault || nextAddress_ >= addresses_.size()) {
      fail(socket_->errorString().toStdString());
    } else {
      later([this] { connectToNext(); });
    }
    return;
  }
  readMore();  // What came before the end.
  if (concluded_ || redirect_) return;
  if (error == QAbstractSocket::RemoteHostClosedError && !resetWatch_.wasReset()) {
    answerProgress(answer_->endOfStream());
  } else {
    fail(socket_->errorString().toStdString());
  }
}

void HttpConnection::timedOut() {
  if (concluded_) return;
  if (!isConnected_ && nextAddress_ < addresses_.size()) {
    connectToNext();
  } else {
    fail("timed out");
  }
}

void HttpConnection::answerHead(int status) {
  if (isRedirect(status) && redirects_ < kMostRedirects) {
    HttpRequest next = redirectedRequest(request_, status, answer_->location());
    if (isUsableUrl(next.url)) {
      redirect_ = std::move(next);
      return;
    }
  }
  events_.didReceiveResponse(status);
}

void HttpConnection::answerProgress(HttpAnswerReader::State state) {
  if (concluded_) return;
  if (redirect_) {
    // The rest of such an answer is of no interest.
    ++redirects_;
    timer_.stop();
    later([this] {
      if (concluded_) return;
      silenceSocket();
      request_ = std::move(*redirect_);
      redirect_.reset();
      lookUpHost();
    });
  } else if (state == HttpAnswerReader::State::kComplete) {
    conclude({HttpOutcome::End::kFinished, {}});
  } else if (state == HttpAnswerReader::State::kFaulty) {
    fail("the answer makes no sense or ends too early");
  }
}

void HttpConnection::silenceSocket() {
  if (socket_ == nullptr) return;
  socket_->disconnect(&context_);
  socket_->abort();
  resetWatch_.stop();
}

void HttpConnection::conclude(HttpOutcome outcome) {
  if (concluded_) return;
  concluded_ = true;
  timer_.stop();
  silenceSocket();
  later([this, outcome = std::move(outcome)] { deliver(outcome); });
}

// The owner may destroy this object, and with it the outcome, in its callback.
void HttpConnection::deliver(const HttpOutcome& outcome) {
  if (std::exchange(delivered_, true)) return;
  const auto ended = std::move(events_.ended);
  const HttpOutcome copy = outcome;  // NOLINT(performance-unnecessary-copy-initialization)
  ended(copy);
}

}  // namespace velmara
