// The frame of the exported functions, and the pieces that only the inside can reach.
#include "api/frame/api_frame.h"

#include <gtest/gtest.h>
#include <kelvo.h>

#include <string>

#include "env/environment.h"
#include "env/params/param_numbers.h"

namespace kelvo {
namespace {

class Frame : public ::testing::Test {
 protected:
  Frame() { listen(env); }
  void listen(Environment& environment) {
    environment.channel(Channel::error).attach(&errors, [](void* handle, const char* text) {
      *static_cast<std::string*>(handle) += text;
    });
  }
  int fail(Status status) {
    errors.clear();
    return api_env(to_handle(&env), [&](Environment&) { return status; });
  }

  std::string errors;
  Environment env;
};

TEST_F(Frame, FailuresArePrintedOnceWithTheirText) {
  EXPECT_EQ(fail(Status::failure(1003)), 1003);
  EXPECT_EQ(errors, "KELVO Error  1003: Bad argument to Callable Library function.\n");
  EXPECT_EQ(fail(Status::reported(1003)), 1003);
  EXPECT_EQ(errors, "");
  EXPECT_EQ(fail(Status::failure(9999)), 9999);
  EXPECT_EQ(errors, "KELVO Error  9999:  Unknown error code.\n");
  EXPECT_EQ(fail(Status()), 0);
  EXPECT_EQ(errors, "");
  EXPECT_EQ(api_env(to_handle(&env), [](Environment&) -> Status { throw std::bad_alloc(); }), 1001);
  EXPECT_EQ(errors, "KELVO Error  1001: Out of memory.\n");
  EXPECT_EQ(api_env(nullptr, [](Environment&) { return Status(); }), 1002);
}

TEST_F(Frame, OutcomesOfPresolveAreHiddenOnRequest) {
  for (int code : {1101, 1106, 1117, 1118, 1123}) {
    ASSERT_TRUE(env.settings().set_int(param::PRINT_PRESOLVE_OUTCOMES, 1).ok());
    EXPECT_EQ(fail(Status::failure(code)), code);
    EXPECT_NE(errors, "");
    ASSERT_TRUE(env.settings().set_int(param::PRINT_PRESOLVE_OUTCOMES, 0).ok());
    EXPECT_EQ(fail(Status::failure(code)), code);
    EXPECT_EQ(errors, "");
  }
  EXPECT_EQ(fail(Status::failure(1103)), 1103);
  EXPECT_NE(errors, "");
}

TEST_F(Frame, IndexRangesAreReportedWithTheFunctionsName) {
  EXPECT_EQ(check_index_range(env, "KLVgetub", -1, 4, 0, 5).code(), 1200);
  EXPECT_EQ(errors, "KELVO Error  1205: KLVgetub: 'begin' value -1 is less than 0.\n");
  errors.clear();
  EXPECT_EQ(check_index_range(env, "KLVgetrows", -2, 5, -1, 5).code(), 1200);
  EXPECT_EQ(errors,
            "KELVO Error  1205: KLVgetrows: 'begin' value -2 is less than -1.\n"
            "KELVO Error  1206: KLVgetrows: 'end' value 5 is greater than 4.\n");
  errors.clear();
  EXPECT_TRUE(check_index_range(env, "KLVgetub", 5, 4, 0, 5).ok());
  EXPECT_TRUE(check_index_range(env, "KLVgetub", 0, 4, 0, 5).ok());
  EXPECT_EQ(errors, "");
}

TEST_F(Frame, InAnInformationalCallbackOnlyWorkersMayCall) {
  Environment* const child = env.add_child();
  Environment* const worker = env.add_worker(2);
  env.in_info_callback = true;
  EXPECT_EQ(KLVsetintparam(to_handle(&env), KLV_PARAM_ADVIND, 0), 1804);
  EXPECT_EQ(errors, "KELVO Error  1804: Calling routines from info callback.\n");
  EXPECT_EQ(KLVsetintparam(to_handle(child), KLV_PARAM_ADVIND, 0), 1804);
  EXPECT_EQ(KLVversion(to_handle(&env)), nullptr);
  EXPECT_EQ(KLVsetintparam(to_handle(worker), KLV_PARAM_ADVIND, 0), 0);
  EXPECT_EQ(KLVEgetThreadNumber(to_handle(worker)), 2);
  EXPECT_EQ(KLVsetterminate(to_handle(&env), nullptr), 0);  // a check of the environment only
  env.in_info_callback = false;
  EXPECT_EQ(KLVsetintparam(to_handle(&env), KLV_PARAM_ADVIND, 0), 0);
  EXPECT_EQ(resolve_root(*worker).root, &env);
  EXPECT_TRUE(check_membership(resolve_root(*child), &env).ok());
  EXPECT_EQ(check_membership(resolve_root(env), child).code(), 1806);
}

TEST(Objects, AreReleasedInTheOrderOfCreationOrAlone) {
  struct Item {
    std::string* order;
    char name;
    ObjectNode* node;
  };
  std::string order;
  Item items[] = {{&order, 'a', nullptr},
                  {&order, 'b', nullptr},
                  {&order, 'c', nullptr},
                  {&order, 'd', nullptr}};
  const ReleaseObject release = [](void* object) noexcept {
    auto* const item = static_cast<Item*>(object);
    *item->order += item->name;
    ObjectList::remove(item->node);
  };
  ObjectList list;
  for (Item& item : items) item.node = list.add(ObjectKind::problem, &item, release);
  ObjectList::remove(items[3].node);
  ObjectList::remove(items[0].node);
  items[0].node = list.add(ObjectKind::problem, &items[0], release);
  list.release_all();
  EXPECT_EQ(order, "bca");
  EXPECT_TRUE(list.empty());
}

TEST(TimerRing, SecondsOfRecordsThatLeaveStayWithTheEnvironment) {
  TimerRing ring;
  TimingRecord first, second;
  ring.enter(first);
  ring.enter(second);
  first.seconds = 1.5;
  second.seconds = 2.0;
  EXPECT_EQ(ring.sum(), 3.5);
  ring.leave(first);
  EXPECT_EQ(ring.sum(), 3.5);
  ring.reset();
  EXPECT_EQ(ring.sum(), 0.0);
  EXPECT_EQ(second.seconds, 0.0);
  ring.leave(second);
}

TEST(MessageChannel, AFileThroughAPointerIsWrittenOnlyWhileItIsSet) {
  MessageChannel channel;
  std::FILE* file = nullptr;
  channel.attach_pointer(&file);
  channel.send("dropped");
  channel.flush();
  char* text = nullptr;
  std::size_t size = 0;
  file = open_memstream(&text, &size);
  channel.send("written");
  channel.flush();
  EXPECT_STREQ(text, "written");
  channel.disconnect();
  std::fclose(file);
  std::free(text);
}

}  // namespace
}  // namespace kelvo
