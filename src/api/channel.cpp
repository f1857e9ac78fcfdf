// Message channels and the log file.
#include <algorithm>
#include <cstdarg>
#include <cstdio>

#include "api/frame/api_frame.h"

namespace kelvo {
namespace {

void release_channel(void* object) noexcept {
  Owned<MessageChannel> channel(static_cast<MessageChannel*>(object));
  channel->disconnect();
  ObjectList::remove(channel->node);
}

Status check_destination(KLVchannel channel, bool given, int code_if_not) {
  if (channel == nullptr) return Status::failure(error::kNoChannel);
  return given ? Status() : Status::failure(code_if_not);
}

}  // namespace
}  // namespace kelvo

using namespace kelvo;

int KLVgetchannels(KLVenv env, KLVchannel* results_p, KLVchannel* warning_p, KLVchannel* error_p,
                   KLVchannel* log_p) {
  return api_env(env, [&](Environment& environment) {
    const auto store = [&](KLVchannel* place, Channel channel) {
      if (place != nullptr) *place = to_handle(&environment.channel(channel));
    };
    store(results_p, Channel::results);
    store(warning_p, Channel::warning);
    store(error_p, Channel::error);
    store(log_p, Channel::log);
    return Status();
  });
}

int KLVflushstdchannels(KLVenv env) {
  return api_env(env, [](Environment& environment) {
    for (Channel c : {Channel::results, Channel::log, Channel::error, Channel::warning}) {
      environment.channel(c).flush();
    }
    return Status();
  });
}

KLVchannel KLVaddchannel(KLVenv env) {
  return api_env_value(env, KLVchannel(), [](Environment& environment, KLVchannel& result) {
    Owned<MessageChannel> channel = make_owned<MessageChannel>();
    channel->node = environment.objects().add(ObjectKind::channel, channel.get(), release_channel);
    result = to_handle(channel.release());
    return Status();
  });
}

void KLVdelchannel(KLVenv env, KLVchannel* channel_p) {
  if (to_environment(env) == nullptr || channel_p == nullptr || *channel_p == nullptr) return;
  MessageChannel* const channel = to_channel(*channel_p);
  if (channel->node == nullptr) return;  // a standard channel goes with its environment
  release_channel(channel);
  *channel_p = nullptr;
}

void KLVdisconnectchannel(KLVenv env, KLVchannel channel) {
  if (to_environment(env) != nullptr && channel != nullptr) to_channel(channel)->disconnect();
}

int KLVflushchannel(KLVenv env, KLVchannel channel) {
  return api_env_unguarded(env, [&](Environment&) {
    if (channel != nullptr) to_channel(channel)->flush();
    return Status();
  });
}

int KLVaddfpdest(KLVenv env, KLVchannel channel, FILE* file) {
  return api_env_unguarded(env, [&](Environment&) -> Status {
    KELVO_TRY(check_destination(channel, file != nullptr, error::kNoFileDestination));
    to_channel(channel)->attach(file);
    return Status();
  });
}

int KLVdelfpdest(KLVenv env, KLVchannel channel, FILE* file) {
  return api_env_unguarded(env, [&](Environment&) {
    const bool found = channel != nullptr && to_channel(channel)->detach(file);
    return check_destination(channel, found, error::kNoFileDestination);
  });
}

int KLVaddfuncdest(KLVenv env, KLVchannel channel, void* handle, KLVmsgfunction function) {
  return api_env_unguarded(env, [&](Environment&) -> Status {
    KELVO_TRY(check_destination(channel, function != nullptr, error::kNoFunctionDestination));
    to_channel(channel)->attach(handle, function);
    return Status();
  });
}

int KLVdelfuncdest(KLVenv env, KLVchannel channel, void* handle, KLVmsgfunction function) {
  return api_env_unguarded(env, [&](Environment&) {
    const bool found = channel != nullptr && to_channel(channel)->detach(handle, function);
    return check_destination(channel, found, error::kNoFunctionDestination);
  });
}

int KLVmsg(KLVchannel channel, const char* format, ...) {
  char text[kMessageSize] = "";
  if (format == nullptr) return 0;
  va_list arguments;
  va_start(arguments, format);
  const int length = std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  if (channel != nullptr) to_channel(channel)->send(text);
  return std::clamp(length, 0, kMessageSize - 1);
}

int KLVmsgstr(KLVchannel channel, const char* text) {
  return text != nullptr ? KLVmsg(channel, "%s", text) : 0;
}

int KLVsetlogfile(KLVenv env, FILE* file) {
  return api_env_unguarded(env, [&](Environment& environment) {
    environment.set_log_file(file);
    return Status();
  });
}

int KLVgetlogfile(KLVenv env, FILE** file_p) {
  return api_env(env, [&](Environment& environment) -> Status {
    KELVO_TRY(check_pointers(file_p));
    *file_p = environment.settings().log_file;
    return Status();
  });
}
