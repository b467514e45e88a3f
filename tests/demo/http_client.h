#pragma once

#include <netdb.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <memory>
#include <string>
#include <string_view>

namespace orvalle::demo {

/// A connected socket, closed at the end.
class Connection {
 public:
  Connection(const char* address, unsigned port) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_NUMERICHOST;
    addrinfo* found = nullptr;
    if (getaddrinfo(address, std::to_string(port).c_str(), &hints, &found) != 0) return;
    const std::unique_ptr<addrinfo, void (*)(addrinfo*)> owner(found, &freeaddrinfo);
    socket_ = ::socket(found->ai_family, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const timeval patience{10, 0};
    setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    connected_ = connect(socket_, found->ai_addr, found->ai_addrlen) == 0;
  }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection() {
    if (socket_ >= 0) close(socket_);
  }

  bool connected() const { return connected_; }

  /// Sends the bytes and reads until the server closes.
  std::string exchange(std::string_view bytes) const {
    if (send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL) != static_cast<ssize_t>(bytes.size()))
      return {};
    std::string answer;
    char chunk[65536];
    for (ssize_t length = 0; (length = recv(socket_, chunk, sizeof chunk, 0)) > 0;) {
      answer.append(chunk, static_cast<std::size_t>(length));
    }
    return answer;
  }

 private:
  int socket_ = -1;
  bool connected_ = false;
};

/// An answer as it came over the wire.
struct Answer {
  int status = 0;
  std::string head;
  std::string body;

  /// A header's value; empty when it is absent.
  std::string header(std::string_view name) const {
    const auto sameLetter = [](char a, char b) {
      return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
    };
    const std::string wanted = "\r\n" + std::string(name) + ": ";
    const auto at = std::search(head.begin(), head.end(), wanted.begin(), wanted.end(), sameLetter);
    if (at == head.end()) return {};
    const auto start = at + static_cast<std::ptrdiff_t>(wanted.size());
    return {start, std::find(start, head.end(), '\r')};
  }
};

/// One request on a connection of its own. `target` goes out as it is; `headers` are whole lines with CR LF.
inline Answer ask(unsigned port, const std::string& method, const std::string& target,
                  const std::string& headers = "", const std::string& host = "localhost",
                  const char* address = "127.0.0.1") {
  const Connection connection(address, port);
  if (!connection.connected()) return {};
  const std::string bytes = connection.exchange(method + " " + target + " HTTP/1.1\r\nHost: " + host +
                                                "\r\nConnection: close\r\n" + headers + "\r\n");
  const std::size_t end = bytes.find("\r\n\r\n");
  if (!bytes.starts_with("HTTP/1.1 ") || end == std::string::npos) return {};
  return {std::stoi(bytes.substr(9)), bytes.substr(0, end + 2), bytes.substr(end + 4)};
}

}  // namespace orvalle::demo
