#include "support/test_support.hpp"

#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <random>
#include <sstream>

#include "common/document_io.hpp"

namespace tessaly::testing {

TempDir::TempDir() {
  std::random_device rd;
  path_ = std::filesystem::temp_directory_path() / ("tessaly-test-" + std::to_string(rd()) + std::to_string(rd()));
  std::filesystem::create_directories(path_);
}

TempDir::~TempDir() {
  std::error_code ec;
  std::filesystem::permissions(path_, std::filesystem::perms::owner_all, std::filesystem::perm_options::add, ec);
  std::filesystem::remove_all(path_, ec);
}

std::string ReadFileBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream out;
  out << in.rdbuf();
  return std::move(out).str();
}

void WriteFileBytes(const std::string& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary);
  out << bytes;
}

namespace {

std::string Quote(const std::string& arg) {
  std::string q = "'";
  for (char c : arg) {
    if (c == '\'') q += "'\\''";
    else q += c;
  }
  return q + "'";
}

}  // namespace

CommandResult RunProgram(const std::string& path, const std::vector<std::string>& args) {
  TempDir dir;
  std::string command = Quote(path);
  for (const std::string& arg : args) command += " " + Quote(arg);
  command += " >" + Quote(dir.File("out")) + " 2>" + Quote(dir.File("err")) + " </dev/null";
  CommandResult result;
  int raw = std::system(command.c_str());
  result.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  result.out = ReadFileBytes(dir.File("out"));
  result.err = ReadFileBytes(dir.File("err"));
  return result;
}

void ParseText(pugi::xml_document& doc, const std::string& text) {
  std::string reason;
  ASSERT_TRUE(io::ParseUtf8(doc, text, reason)) << reason;
}

std::string NodeText(pugi::xml_node node) {
  std::ostringstream out;
  node.print(out, "", pugi::format_raw);
  return std::move(out).str();
}

}  // namespace tessaly::testing

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tessaly::testing {

LoopbackHttpServer::LoopbackHttpServer(int status, std::string body) : status_(status), body_(std::move(body)) {
  listener_ = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in addr{};
  addr.sin_family = AF_INET;
  addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  addr.sin_port = 0;
  ::bind(listener_, reinterpret_cast<sockaddr*>(&addr), sizeof addr);
  ::listen(listener_, 8);
  socklen_t len = sizeof addr;
  ::getsockname(listener_, reinterpret_cast<sockaddr*>(&addr), &len);
  port_ = ntohs(addr.sin_port);
  thread_ = std::thread([this] { Serve(); });
}

LoopbackHttpServer::~LoopbackHttpServer() {
  stop_ = true;
  thread_.join();
  ::close(listener_);
}

std::string LoopbackHttpServer::Url(const std::string& path) const {
  return "http://127.0.0.1:" + std::to_string(port_) + path;
}

void LoopbackHttpServer::Serve() {
  while (!stop_) {
    pollfd p{listener_, POLLIN, 0};
    if (::poll(&p, 1, 50) <= 0) continue;
    int client = ::accept(listener_, nullptr, nullptr);
    if (client < 0) continue;
    // Read the request head; its content does not matter.
    std::string request;
    char buf[1024];
    while (request.find("\r\n\r\n") == std::string::npos) {
      ssize_t n = ::recv(client, buf, sizeof buf, 0);
      if (n <= 0) break;
      request.append(buf, static_cast<std::size_t>(n));
    }
    std::string reply = "HTTP/1.0 " + std::to_string(status_) + (status_ == 200 ? " OK" : " Not Found") +
                        "\r\nContent-Type: text/xml\r\nContent-Length: " + std::to_string(body_.size()) +
                        "\r\nConnection: close\r\n\r\n" + body_;
    std::size_t sent = 0;
    while (sent < reply.size()) {
      ssize_t n = ::send(client, reply.data() + sent, reply.size() - sent, MSG_NOSIGNAL);
      if (n <= 0) break;
      sent += static_cast<std::size_t>(n);
    }
    ::close(client);
  }
}

}  // namespace tessaly::testing
