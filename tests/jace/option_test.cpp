#include <gtest/gtest.h>

#include <list>
#include <memory>
#include <string>

#include "vorlane/jace.h"

namespace {

int print(FILE*, const char*, va_list) { return 0; }
void end(int) {}
void abandon() {}

TEST(JaceOption, HasTextAndPointerAndAClone) {
  const std::list<std::string> words = {"gc", "class", "jni", "x"};
  const struct {
    std::unique_ptr<jace::Option> option;
    const char* text;
    void* pointer = nullptr;
  } rows[] = {
      {std::make_unique<jace::SystemProperty>("a.b", "c=d"), "-Da.b=c=d"},
      {std::make_unique<jace::ClassPath>("x:y"), "-Djava.class.path=x:y"},
      {std::make_unique<jace::CustomOption>("-foo bar"), "-foo bar"},
      {std::make_unique<jace::Verbose>(jace::Verbose::Class), "-verbose:class"},
      {std::make_unique<jace::Verbose>(jace::Verbose::Gc, jace::Verbose::Jni), "-verbose:gc,jni"},
      {std::make_unique<jace::Verbose>("gc", "jni", "class"), "-verbose:gc,jni,class"},
      {std::make_unique<jace::Verbose>(words.begin(), words.end()), "-verbose:gc,class,jni,x"},
      {std::make_unique<jace::Verbose>(words.end(), words.end()), "-verbose:"},
      {std::make_unique<jace::VfprintfHook>(print), "vfprintf", reinterpret_cast<void*>(print)},
      {std::make_unique<jace::ExitHook>(end), "exit", reinterpret_cast<void*>(end)},
      {std::make_unique<jace::AbortHook>(abandon), "abort", reinterpret_cast<void*>(abandon)},
  };
  for (const auto& row : rows) {
    const std::unique_ptr<jace::Option> clone(row.option->clone());
    EXPECT_NE(clone, row.option);
    for (jace::Option* option : {row.option.get(), clone.get()}) {
      EXPECT_EQ(option->stringValue(), row.text);
      EXPECT_EQ(option->extraInfo(), row.pointer);
    }
  }
}

TEST(JaceOption, ClonesAClassPathAsAPlainProperty) {
  const jace::ClassPath path("x");
  const std::unique_ptr<jace::Option> clone(path.clone());
  EXPECT_EQ(dynamic_cast<const jace::ClassPath*>(clone.get()), nullptr);
  auto* property = dynamic_cast<jace::SystemProperty*>(clone.get());
  ASSERT_NE(property, nullptr);
  EXPECT_EQ(property->name() + " " + property->value(), "java.class.path x");
}

// Counts its clones and their ends.
class CountedOption : public jace::CustomOption {
 public:
  CountedOption() : CustomOption("counted") { ++alive; }
  CountedOption(const CountedOption& other) : CustomOption(other) { ++alive; }
  CountedOption& operator=(const CountedOption&) = delete;
  ~CountedOption() override { --alive; }
  std::string stringValue() override { return "counted"; }
  [[nodiscard]] jace::Option* clone() const override { return new CountedOption(*this); }
  inline static int alive = 0;
};

TEST(JaceOptionList, KeepsIndependentClonesInOrder) {
  jace::OptionList list;
  {
    const CountedOption option;
    list.push_back(option);
    list.push_back(jace::AbortHook(abandon));
    list.push_back(option);
  }
  EXPECT_EQ(CountedOption::alive, 2);
  EXPECT_EQ(list.size(), 3u);
  EXPECT_NE((*list.begin()).get(), (*--list.end()).get());

  std::string walked;
  for (auto i = list.begin(); i != list.end(); i++) walked += (*i)->stringValue() + " ";
  for (auto i = list.end(); i != list.begin();) walked += (*--i)->stringValue() + " ";
  EXPECT_EQ(walked, "counted abort counted counted abort counted ");

  JavaVMOption* first = list.createJniOptions();
  JavaVMOption* second = list.createJniOptions();
  EXPECT_STREQ(first[2].optionString, "counted");
  EXPECT_NE(first[2].optionString, second[2].optionString);
  EXPECT_EQ(first[1].extraInfo, reinterpret_cast<void*>(abandon));
  list.destroyJniOptions(first);
  list.destroyJniOptions(second);
  {
    const jace::OptionList copy = list;
    list = jace::OptionList();
    EXPECT_EQ(CountedOption::alive, 2);
  }
  EXPECT_EQ(CountedOption::alive, 0);
}

}  // namespace
