// Helpers shared by the unit tests.
#ifndef TESSALY_TESTS_SUPPORT_TEST_SUPPORT_HPP_
#define TESSALY_TESTS_SUPPORT_TEST_SUPPORT_HPP_

#include <gtest/gtest.h>
#include <pugixml.hpp>

#include <atomic>
#include <filesystem>
#include <thread>
#include <string>
#include <utility>
#include <vector>

#include "tessaly/common/error.hpp"
#include "tessaly/common/event_log.hpp"

namespace tessaly::testing {

// Runs `statement` and checks that it throws tessaly::Error with this number, source and
// description.
#define EXPECT_TESSALY_ERROR(statement, number, source, description)                     \
  do {                                                                                   \
    bool thrown_ = false;                                                                \
    try {                                                                                \
      statement;                                                                         \
    } catch (const ::tessaly::Error& e_) {                                               \
      thrown_ = true;                                                                    \
      EXPECT_EQ(e_.Number(), (number));                                                  \
      EXPECT_EQ(e_.Source(), (source));                                                  \
      EXPECT_EQ(e_.Description(), (description));                                       \
    }                                                                                    \
    EXPECT_TRUE(thrown_) << "expected tessaly::Error from " #statement;                  \
  } while (false)

// Checks that the calling thread's pending error has this number, source and description.
#define EXPECT_PENDING_ERROR(number, source, description)   \
  do {                                                      \
    EXPECT_EQ(::tessaly::Err().Number(), (number));         \
    EXPECT_EQ(::tessaly::Err().Source(), (source));         \
    EXPECT_EQ(::tessaly::Err().Description(), (description)); \
  } while (false)

// A fresh directory below the system's temporary directory, removed with the object.
class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;
  const std::filesystem::path& path() const { return path_; }
  std::string File(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

std::string ReadFileBytes(const std::string& path);
void WriteFileBytes(const std::string& path, const std::string& bytes);

struct CommandResult {
  int status = -1;
  std::string out;
  std::string err;
};

// Runs the program at `path` with `args` (each quoted for the shell) and returns its exit
// status, standard output and standard error.
CommandResult RunProgram(const std::string& path, const std::vector<std::string>& args);

// Parses `text` (UTF-8) with the options the library loads documents with.
void ParseText(pugi::xml_document& doc, const std::string& text);

// Serializes `node` the way the library writes documents (raw, no indentation).
std::string NodeText(pugi::xml_node node);

// An event-log sink that records its entries.
class RecordingEventLog : public EventLog {
 public:
  void Error(const std::string& text) override { entries.push_back(text); }
  std::vector<std::string> entries;
};

}  // namespace tessaly::testing

namespace tessaly::testing {

// A minimal HTTP/1.0 server on 127.0.0.1 (an ephemeral port) that answers every request with
// the same status and body, until it is destroyed.
class LoopbackHttpServer {
 public:
  LoopbackHttpServer(int status, std::string body);
  ~LoopbackHttpServer();
  LoopbackHttpServer(const LoopbackHttpServer&) = delete;
  LoopbackHttpServer& operator=(const LoopbackHttpServer&) = delete;
  // "http://127.0.0.1:PORT" + path.
  std::string Url(const std::string& path) const;

 private:
  void Serve();
  int listener_ = -1;
  int port_ = 0;
  int status_;
  std::string body_;
  std::thread thread_;
  std::atomic<bool> stop_{false};
};

}  // namespace tessaly::testing

#endif  // TESSALY_TESTS_SUPPORT_TEST_SUPPORT_HPP_
