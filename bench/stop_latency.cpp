// How long an optimizer takes to stop after it was asked to.
//
//     kelvo_stop_latency [-n stops] [-m method] [-l] MODEL...
//
// Solves each model once to see how long that takes, then again and again while another thread
// sets the termination flag at a random moment of the run (-l: with a time limit there instead),
// and prints the longest delays with the moments at which they happened. `method` is a value of
// KLV_PARAM_LPMETHOD.
#include <kelvo.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <random>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

double seconds_since(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

struct Options {
  int stops = 20;
  int method = 0;
  bool by_limit = false;
};

struct Delay {
  double moment, seconds;
};

/// Runs the optimizer on a fresh start; returns the time it took.
double solve(KLVenv env, KLVprob lp) {
  const Clock::time_point start = Clock::now();
  const int code = KLVlpopt(env, lp);
  if (code != 0) std::printf("  KLVlpopt returned %d\n", code);
  return seconds_since(start);
}

/// The delay of a stop `moment` seconds into the run, or a negative number when the run was over.
double stop_at(KLVenv env, KLVprob lp, double moment, bool by_limit) {
  if (by_limit) {
    KLVsetdblparam(env, KLV_PARAM_TILIM, moment);
    const double took = solve(env, lp);
    KLVsetdblparam(env, KLV_PARAM_TILIM, 1e75);
    return KLVgetstat(env, lp) == KLV_STATUS_TIME_LIMIT ? took - moment : -1.0;
  }
  int flag = 0;
  KLVsetterminate(env, &flag);
  std::mutex mutex;
  std::condition_variable over;
  bool done = false;
  Clock::time_point asked;
  std::thread stopper([&] {
    std::unique_lock<std::mutex> lock(mutex);
    const auto wait = std::chrono::duration<double>(moment);
    if (over.wait_for(lock, wait, [&] { return done; })) return;
    asked = Clock::now();
    std::atomic_ref<int>(flag).store(1);
  });
  solve(env, lp);
  const Clock::time_point returned = Clock::now();
  {
    const std::lock_guard<std::mutex> lock(mutex);
    done = true;
  }
  over.notify_one();
  stopper.join();
  KLVsetterminate(env, nullptr);
  if (KLVgetstat(env, lp) != KLV_STATUS_USER_ABORTED) return -1.0;
  return std::chrono::duration<double>(returned - asked).count();
}

void measure(KLVenv env, const char* path, const Options& options) {
  int status = 0;
  KLVprob lp = KLVcreateprob(env, &status, "model");
  if (KLVreadcopyprob(env, lp, path, nullptr) == 0) {
    KLVsetintparam(env, KLV_PARAM_LPMETHOD, options.method);
    KLVsetintparam(env, KLV_PARAM_ADVIND, 0);
    constexpr double kLongestRun = 60.0;
    KLVsetdblparam(env, KLV_PARAM_TILIM, kLongestRun);
    const double whole = solve(env, lp);
    KLVsetdblparam(env, KLV_PARAM_TILIM, 1e75);
    std::mt19937 random(1);
    std::vector<Delay> delays;
    for (int k = 0; k < options.stops; ++k) {
      const double moment = whole * std::uniform_real_distribution<double>(0.0, 1.0)(random);
      const double delay = stop_at(env, lp, moment, options.by_limit);
      if (delay >= 0.0) delays.push_back({moment, delay});
    }
    std::sort(delays.begin(), delays.end(),
              [](const Delay& a, const Delay& b) { return a.seconds > b.seconds; });
    std::printf("%s: %.2f s, %zu stops; longest delays:", path, whole, delays.size());
    for (std::size_t k = 0; k < std::min<std::size_t>(3, delays.size()); ++k) {
      std::printf(" %.3f s (at %.2f)", delays[k].seconds, delays[k].moment);
    }
    std::printf("\n");
    std::fflush(stdout);
  }
  KLVfreeprob(env, &lp);
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  int first = 1;
  for (; first < argc && argv[first][0] == '-'; ++first) {
    if (std::strcmp(argv[first], "-l") == 0) {
      options.by_limit = true;
    } else if (std::strcmp(argv[first], "-n") == 0 && first + 1 < argc) {
      options.stops = std::atoi(argv[++first]);
    } else if (std::strcmp(argv[first], "-m") == 0 && first + 1 < argc) {
      options.method = std::atoi(argv[++first]);
    } else {
      break;
    }
  }
  if (first >= argc || argv[first][0] == '-') {
    std::fprintf(stderr, "usage: kelvo_stop_latency [-n stops] [-m method] [-l] MODEL...\n");
    return 2;
  }
  int status = 0;
  KLVenv env = KLVopenKELVO(&status);
  if (env == nullptr) return 1;
  for (int k = first; k < argc; ++k) measure(env, argv[k], options);
  KLVcloseKELVO(&env);
  return 0;
}
