#include "env/environment.h"

#include <unistd.h>

#include <algorithm>
#include <cassert>

#include "base/clock.h"
#include "env/params/param_numbers.h"

namespace kelvo {
namespace {

/// Threads and child environments are not limited below this, however few processors there are.
constexpr int kMinimalThreadCap = 32;

constexpr int kProcessorTime = 1;  // a value of CLOCKTYPE

constexpr Channel kAllChannels[] = {Channel::results, Channel::warning, Channel::error,
                                    Channel::log};
constexpr Channel kScreenChannels[] = {Channel::results, Channel::warning, Channel::error};

int online_processors() {
  return std::max(static_cast<int>(sysconf(_SC_NPROCESSORS_ONLN)), 1);
}

}  // namespace

Environment::Environment()
    : processors_(online_processors()),
      thread_cap_(std::max(processors_, kMinimalThreadCap)),
      settings_(std::min(processors_, thread_cap_)) {}

Environment::Environment(Environment& parent, int thread_number)
    : host(parent.host),
      parent_(&parent),
      thread_number_(thread_number),
      processors_(parent.processors_),
      thread_cap_(parent.thread_cap_),
      settings_(parent.settings_) {}

Environment::~Environment() {
  remove_workers();
  objects_.release_all();
  if (node_ != nullptr) {
    assert(parent_ != nullptr);  // only children are in a list
    ObjectList::remove(node_);
    --parent_->num_children_;
  }
  self_ = nullptr;
}

Environment& Environment::root() {
  Environment* environment = this;
  while (environment->parent_ != nullptr) environment = environment->parent_;
  return *environment;
}

Environment* Environment::add_child() {
  Owned<Environment> child = make_owned<Environment>(*this, 0);
  child->node_ = objects_.add(ObjectKind::environment, child.get(), [](void* object) noexcept {
    Owned<Environment> owned(static_cast<Environment*>(object));
  });
  ++num_children_;
  return child.release();
}

Environment* Environment::add_worker(int thread_number) {
  Owned<Environment> worker = make_owned<Environment>(*this, thread_number);
  // The log file that came with the settings is the parent's.
  worker->settings_.log_file = nullptr;
  workers_.push_back(std::move(worker));
  return workers_.back().get();
}

void Environment::remove_workers() noexcept {
  for (Owned<Environment>& worker : workers_) {
    if (std::FILE* const file = worker->settings_.log_file; file != nullptr) {
      worker->set_log_file(nullptr);
      if (file != settings_.log_file) std::fclose(file);
    }
  }
  workers_.clear();
}

void Environment::set_log_file(std::FILE* file) {
  if (file != nullptr) {
    for (Channel c : kAllChannels) channel(c).reserve_one();
  }
  std::FILE*& log_file = settings_.log_file;
  for (Channel c : kAllChannels) {
    if (log_file != nullptr) channel(c).detach(log_file);
    if (file != nullptr) channel(c).attach(file);
  }
  log_file = file;
}

void Environment::set_screen(bool on) {
  if (on) reserve_screen();
  for (Channel c : kScreenChannels) {
    if (!on) {
      channel(c).detach(stdout);
    } else if (!channel(c).has(stdout)) {
      channel(c).attach(stdout);
    }
  }
}

void Environment::reserve_screen() {
  for (Channel c : kScreenChannels) channel(c).reserve_one();
}

double Environment::clock() const {
  return get_int(param::CLOCKTYPE) == kProcessorTime ? cpu_seconds() : wall_seconds();
}

void Environment::time_limit_begin() {
  if (time_limit_ != nullptr) {
    ++time_limit_->use_count;
  } else if (const double limit = get_double(param::TILIM); limit < kNoLimit) {
    time_limit_ = make_owned<TimeLimit>(clock(), limit);
  }
}

void Environment::time_limit_end() noexcept {
  if (time_limit_ == nullptr) return;
  if (time_limit_->use_count == 0) {
    time_limit_.reset();
  } else {
    --time_limit_->use_count;
  }
}

void Environment::time_limit_reset(double seconds) {
  if (time_limit_ != nullptr) time_limit_->reset(seconds);
}

int Environment::check_stop() {
  for (Environment* environment = this; environment != nullptr;
       environment = environment->parent_) {
    // A worker without a limit of its own has its parent's.
    Environment* timed = environment;
    if (timed->time_limit_ == nullptr && timed->parent_ != nullptr) timed = timed->parent_;
    if (timed->time_limit_ != nullptr &&
        timed->time_limit_->expired([&] { return timed->clock(); })) {
      return kStopTimeLimit;
    }
    if (environment->stop_hook != nullptr) {
      return environment->stop_hook(reinterpret_cast<klv_env*>(environment), 0);
    }
    int* const flag = environment->settings_.terminate_flag;
    if (flag != nullptr && std::atomic_ref<int>(*flag).load(std::memory_order_relaxed) != 0) {
      return kStopUserAbort;
    }
  }
  return 0;
}

}  // namespace kelvo
