// Options of a Java runtime that is about to be created.

#ifndef ZYL_JACE_OPTION_H
#define ZYL_JACE_OPTION_H

#include <concepts>
#include <cstdarg>
#include <cstdio>
#include <iterator>
#include <string>
#include <vector>

#include "vorlane/env/export.h"

namespace jace {
namespace detail {

template <class Iterator>
concept TextIterator = std::input_iterator<Iterator> &&
    std::convertible_to<std::iter_reference_t<Iterator>, std::string>;

}  // namespace detail

/// One option as the runtime's creation takes it: a text and, for hooks, a pointer.
///
/// Text and pointer are asked of the list's own clone and are not const: an option may make them up
/// when it is asked.
class ZYL_EXPORT Option {
 public:
  virtual ~Option();

  /// Returns the text that the runtime reads.
  [[nodiscard]] virtual std::string stringValue() = 0;
  /// Returns the function that a hook stands for; null for every other option.
  [[nodiscard]] virtual void* extraInfo() = 0;
  /// Returns a new option that the caller owns.
  [[nodiscard]] virtual Option* clone() const = 0;

 protected:
  Option() = default;
  Option(const Option&) = default;
  Option& operator=(const Option&) = default;
};

/// "-Dname=value".
class ZYL_EXPORT SystemProperty : public Option {
 public:
  SystemProperty(std::string name, std::string value);

  [[nodiscard]] std::string stringValue() override;
  [[nodiscard]] void* extraInfo() override;
  [[nodiscard]] Option* clone() const override;
  [[nodiscard]] virtual std::string name();
  [[nodiscard]] virtual std::string value();

 private:
  std::string _name;
  std::string _value;
};

/// The system property "java.class.path". Its clone is a plain `SystemProperty`.
class ZYL_EXPORT ClassPath : public SystemProperty {
 public:
  explicit ClassPath(const std::string& path);
};

/// Any text, handed on as it is.
class ZYL_EXPORT CustomOption : public Option {
 public:
  explicit CustomOption(std::string value);

  [[nodiscard]] std::string stringValue() override;
  [[nodiscard]] void* extraInfo() override;
  [[nodiscard]] Option* clone() const override;

 private:
  std::string _value;
};

/// "-verbose:" and what the runtime shall talk about, separated by commas.
class ZYL_EXPORT Verbose : public Option {
 public:
  static constexpr const char* Gc = "gc";
  static constexpr const char* Jni = "jni";
  static constexpr const char* Class = "class";

  explicit Verbose(const std::string& option);
  Verbose(const std::string& first, const std::string& second);
  Verbose(const std::string& first, const std::string& second, const std::string& third);

  /// Takes the texts of [first, last), which may be empty. Two literals are no such range: what
  /// they point to is no text, so they reach the constructor of two options.
  template <detail::TextIterator Iterator>
  Verbose(Iterator first, Iterator last) : _options(first, last) {}

  [[nodiscard]] std::string stringValue() override;
  [[nodiscard]] void* extraInfo() override;
  [[nodiscard]] Option* clone() const override;

 private:
  std::vector<std::string> _options;
};

/// A function that the runtime calls in place of its own.
class ZYL_EXPORT Hook : public Option {};

/// Takes over the runtime's messages.
class ZYL_EXPORT VfprintfHook : public Hook {
 public:
  using Function = int (*)(FILE*, const char*, va_list);
  explicit VfprintfHook(Function function);

  [[nodiscard]] std::string stringValue() override;
  [[nodiscard]] void* extraInfo() override;
  [[nodiscard]] Option* clone() const override;

 private:
  Function _function;
};

/// Called when the runtime ends the process.
class ZYL_EXPORT ExitHook : public Hook {
 public:
  using Function = void (*)(int);
  explicit ExitHook(Function function);

  [[nodiscard]] std::string stringValue() override;
  [[nodiscard]] void* extraInfo() override;
  [[nodiscard]] Option* clone() const override;

 private:
  Function _function;
};

/// Called when the runtime aborts the process.
class ZYL_EXPORT AbortHook : public Hook {
 public:
  using Function = void (*)();
  explicit AbortHook(Function function);

  [[nodiscard]] std::string stringValue() override;
  [[nodiscard]] void* extraInfo() override;
  [[nodiscard]] Option* clone() const override;

 private:
  Function _function;
};

}  // namespace jace

#endif
