#include "session.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "failure.h"

namespace kelvo::command {
namespace {

/// A message must fit the library's buffer; longer texts go in pieces.
constexpr std::size_t kLongestMessage = 1000;

/// The words of a status code that no line on the error channel explained.
std::string words_of(KLVenv env, int status) {
  char buffer[1024];
  if (KLVgeterrorstring(env, status, buffer) == nullptr) return "error " + std::to_string(status);
  std::string text = buffer;
  const std::size_t colon = text.find(": ");
  if (colon != std::string::npos) text.erase(0, colon + 2);
  while (!text.empty() && (text.back() == '\n' || text.back() == '.')) text.pop_back();
  return text + " (error " + std::to_string(status) + ")";
}

/// "KELVO Error  1423: Could not open file.\n" becomes "Could not open file (error 1423)".
std::string without_decoration(const std::string& line) {
  int code = 0;
  int words = 0;
  if (std::sscanf(line.c_str(), "KELVO Error %d: %n", &code, &words) < 1 || words == 0) return line;
  std::string text = line.substr(static_cast<std::size_t>(words));
  while (!text.empty() && text.back() == '.') text.pop_back();
  return text + " (error " + std::to_string(code) + ")";
}

/// Finds the plain faults before the library does, without opening what may be a pipe.
void check_readable(const std::string& path) {
  struct stat info = {};
  int fault = 0;
  if (stat(path.c_str(), &info) != 0 || access(path.c_str(), R_OK) != 0) fault = errno;
  if (fault == 0 && S_ISDIR(info.st_mode)) fault = EISDIR;
  if (fault != 0) throw Failure("cannot read " + path + ": " + std::strerror(fault));
}

}  // namespace

std::string library_version() {
  Session session;
  return KLVversion(session.env());
}

Session::Session() {
  int status = 0;
  env_ = KLVopenKELVO(&status);
  if (env_ == nullptr)
    throw Failure("cannot open the library (error " + std::to_string(status) + ")");
  status = KLVgetchannels(env_, &results_, &warnings_, &errors_, &log_);
  if (status == 0) status = KLVaddfuncdest(env_, errors_, this, collect);
  if (status != 0) {
    KLVcloseKELVO(&env_);
    throw Failure("cannot set up the library's messages (error " + std::to_string(status) + ")");
  }
}

Session::~Session() {
  if (log_file_ != nullptr) {
    KLVsetlogfile(env_, nullptr);
    std::fclose(log_file_);
  }
  KLVcloseKELVO(&env_);
}

void Session::show_on(std::FILE* stream) {
  for (KLVchannel channel : {results_, warnings_, log_}) {
    check(KLVaddfpdest(env_, channel, stream), "cannot show messages");
  }
}

void Session::open_log(const std::string& path) {
  log_file_ = std::fopen(path.c_str(), "w");
  if (log_file_ == nullptr) throw Failure("cannot write " + path + ": " + std::strerror(errno));
  std::setvbuf(log_file_, nullptr, _IOLBF, 0);
  check(KLVsetlogfile(env_, log_file_), "cannot set the log file");
}

void Session::read(const std::string& path) {
  check_readable(path);
  int status = 0;
  KLVprob problem = KLVcreateprob(env_, &status, "");
  check(status, "cannot create a problem");
  if (problem_ != nullptr) KLVfreeprob(env_, &problem_);
  problem_ = problem;
  check(KLVreadcopyprob(env_, problem_, path.c_str(), nullptr), "cannot read " + path);
}

void Session::read_network(const std::string& path) {
  check_readable(path);
  int status = 0;
  KLVnet network = KLVNETcreateprob(env_, &status, "");
  check(status, "cannot create a network");
  if (network_ != nullptr) KLVNETfreeprob(env_, &network_);
  network_ = network;
  check(KLVNETreadcopyprob(env_, network_, path.c_str()), "cannot read " + path);
}

void Session::say(const std::string& text) {
  for (std::size_t from = 0; from < text.size(); from += kLongestMessage) {
    KLVmsgstr(results_, text.substr(from, kLongestMessage).c_str());
  }
}

void Session::check(int status, const std::string& what) {
  if (status == 0) return;
  std::string words = take_errors();
  if (words.empty()) words = words_of(env_, status);
  throw Failure(what + ": " + words);
}

std::string Session::take_errors() {
  std::string told;
  std::size_t from = 0;
  while (from < said_.size()) {
    std::size_t to = said_.find('\n', from);
    if (to == std::string::npos) to = said_.size();
    if (to > from)
      told += (told.empty() ? "" : "; ") + without_decoration(said_.substr(from, to - from));
    from = to + 1;
  }
  said_.clear();
  return told;
}

void Session::collect(void* session, const char* text) {
  static_cast<Session*>(session)->said_ += text;
}

}  // namespace kelvo::command
