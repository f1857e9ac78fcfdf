// The environment: what every call of the library works in.
//
// It owns the settings, the four standard channels, the list of the objects created in it and the
// bookkeeping of time limits. A root environment is opened by the caller; it may have child
// environments (made by the caller) and workers (made by parallel optimizers), which start with a
// copy of its settings and have channels of their own. Parents outlive their children and workers.
//
// An environment and everything in it is used by one thread at a time. Workers run on threads of
// their own and reach upwards only through check_stop().
#pragma once

#include "base/containers.h"
#include "base/messages.h"
#include "base/status.h"
#include "base/stop_check.h"
#include "env/message_channel.h"
#include "env/object_list.h"
#include "env/params/settings.h"
#include "env/stop.h"
#include "env/timer_ring.h"

namespace kelvo {

/// Asked by every stop check with (environment, 0); the check returns its result.
using StopHook = int (*)(klv_env*, int);

class Environment {
 public:
  /// A root environment with all defaults. Throws std::bad_alloc.
  Environment();
  /// A child (thread number 0) or worker (above 0) with a copy of the parent's settings, host
  /// pointer and thread cap. The caller enters it in the parent's books: add_child, add_worker.
  Environment(Environment& parent, int thread_number);
  /// Frees the workers, then every object of the list, oldest first.
  ~Environment();
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

  /// False once the environment has been destroyed, as far as a stale pointer can tell.
  bool is_valid() const { return self_ == this; }

  Settings& settings() { return settings_; }
  const Settings& settings() const { return settings_; }
  int get_int(int number) const { return settings_.get_int(number); }
  double get_double(int number) const { return settings_.get_double(number); }
  const char* get_text(int number) const { return settings_.get_text(number); }

  MessageChannel& channel(Channel channel) { return channels_[static_cast<int>(channel)]; }
  /// The four channels as the engines see them.
  MessageSink& messages() { return sink_; }
  /// check_stop() as the engines see it.
  StopCheck& stop_check() { return stop_; }
  ObjectList& objects() { return objects_; }
  TimerRing& timers() { return timers_; }

  Environment* parent() const { return parent_; }
  Environment& root();
  int thread_number() const { return thread_number_; }
  int thread_cap() const { return thread_cap_; }
  int processors() const { return processors_; }

  /// Makes a child environment owned by the object list. Throws std::bad_alloc.
  Environment* add_child();
  int num_children() const { return num_children_; }

  /// Makes a worker environment with the given thread number (above 0), freed by remove_workers or
  /// with this environment. Throws std::bad_alloc.
  Environment* add_worker(int thread_number);
  int num_workers() const { return static_cast<int>(workers_.size()); }
  Environment& worker(int i) { return *workers_[i]; }
  /// Frees all workers; the log file of a worker is detached and, unless it is also this
  /// environment's, closed.
  void remove_workers() noexcept;

  /// Makes `file` (null: none) the destination of all four channels in place of the previous log
  /// file. The files stay the caller's. Throws std::bad_alloc, leaving everything as it was.
  void set_log_file(std::FILE* file);
  /// Attaches standard output to the results, warning and error channels, or detaches it. Throws
  /// std::bad_alloc, leaving everything as it was.
  void set_screen(bool on);
  /// Makes sure that the next set_screen(true) finds its memory.
  void reserve_screen();

  /// Seconds on the clock chosen by CLOCKTYPE: processor time for 1, elapsed time otherwise.
  double clock() const;
  /// Starts a timed computation, or joins the one that is running. Throws std::bad_alloc.
  void time_limit_begin();
  /// Ends what the matching time_limit_begin started.
  void time_limit_end() noexcept;
  /// Moves the deadline, if there is one, to `seconds` after its start.
  void time_limit_reset(double seconds);
  /// 0 to go on, 11 after the deadline, 13 when the termination flag is set, or the result of a
  /// stop hook; of this environment and then of its ancestors.
  int check_stop();

  void* host = nullptr;           // owned by a host layer
  StopHook stop_hook = nullptr;   // may be null
  bool in_info_callback = false;  // on a root: an informational callback is running

 private:
  class Sink final : public MessageSink {
   public:
    explicit Sink(Environment& environment) : environment_(environment) {}
    void send(Channel channel, const char* text) override {
      environment_.channel(channel).send(text);
    }
    void flush(Channel channel) override { environment_.channel(channel).flush(); }

   private:
    Environment& environment_;
  };

  class Stop final : public StopCheck {
   public:
    explicit Stop(Environment& environment) : environment_(environment) {}
    StopReason check() override {
      switch (environment_.check_stop()) {
        case 0:
          return StopReason::none;
        case kStopTimeLimit:
          return StopReason::time_limit;
        default:  // any other answer of the host's hook is an abort
          return StopReason::user_abort;
      }
    }

   private:
    Environment& environment_;
  };

  // Volatile, so that the destructor really clears it: nothing may read it afterwards by the rules
  // of the language, but a caller's stale handle is told apart by it as long as that is possible.
  const Environment* volatile self_ = this;
  Environment* const parent_ = nullptr;
  ObjectNode* node_ = nullptr;  // where the parent's object list holds a child
  const int thread_number_ = 0;
  const int processors_;
  const int thread_cap_;
  int num_children_ = 0;
  Settings settings_;
  MessageChannel channels_[4];  // by Channel
  Sink sink_{*this};
  Stop stop_{*this};
  TimerRing timers_;
  Owned<TimeLimit> time_limit_;
  Vector<Owned<Environment>> workers_;
  ObjectList objects_;
};

/// Keeps a timed computation going as long as it lives.
class TimeLimitScope {
 public:
  explicit TimeLimitScope(Environment& environment) : environment_(environment) {
    environment_.time_limit_begin();
  }
  ~TimeLimitScope() { environment_.time_limit_end(); }
  TimeLimitScope(const TimeLimitScope&) = delete;
  TimeLimitScope& operator=(const TimeLimitScope&) = delete;

 private:
  Environment& environment_;
};

}  // namespace kelvo
