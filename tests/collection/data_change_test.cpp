// News of changes of data.

#include "vorlane/collection/data_change.h"

#include <gtest/gtest.h>

#include <string>

#include "support/support.h"

namespace zyl::test {
namespace {

class Listener : public ZylDataChangeListenerI {
 public:
  Listener(ZylEnvI* env, char name, std::string* log)
      : ZylDataChangeListenerI(env), _name(name), _log(log) {}
  void change() override {
    if (_name == '!') throw ZylWrongUsage("no");
    *_log += _name;
  }

 private:
  char _name;
  std::string* _log;
};

class ZylDataChanges : public EnvTest {};

TEST_F(ZylDataChanges, ReachTheNewestListenerFirst) {
  std::string log;
  Listener a(impl, 'a', &log), b(impl, 'b', &log), refuses(impl, '!', &log);
  auto* notifier = new (impl) ZylDataChangeNotifierI(impl);
  notifier->change();
  for (Listener* each : {&a, &b, &a}) notifier->registerListener(each);
  notifier->change();
  EXPECT_EQ(log, "aba");
  notifier->unregisterListener(&a);
  notifier->unregisterListener(&refuses);
  notifier->change();
  EXPECT_EQ(log, "abab");
  notifier->registerListener(&refuses);
  notifier->registerListener(&a);
  EXPECT_THROW(notifier->change(), ZylWrongUsage);
  EXPECT_EQ(log, "ababa");
  EXPECT_THROW(notifier->registerListener(nullptr), ZylWrongUsage);
  delete notifier;
}

}  // namespace
}  // namespace zyl::test
